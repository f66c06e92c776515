#include "Parloquin/Platform/Crypto.h"

#include <openssl/err.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>

namespace parloquin::Crypto {

namespace {

constexpr qsizetype blockSize = 16; // bytes
constexpr qsizetype macSize = 32; // bytes
constexpr qsizetype spareSize = 64; // bytes behind a text, for parsers that read in blocks
// libcrypto counts in int; the room that Base64 or padding add stays inside it too.
constexpr qsizetype sizeLimit = std::numeric_limits<int>::max() / 2;

struct CipherContextDeleter {
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};
using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, CipherContextDeleter>;

/// Drops the errors that arise in its scope, and only those.
class ErrorScope {
public:
    ErrorScope() { ERR_set_mark(); }
    ~ErrorScope() { ERR_pop_to_mark(); }
    Q_DISABLE_COPY_MOVE(ErrorScope)
};

unsigned char *writable(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

template <class Bytes> const unsigned char *readable(const Bytes &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

const EVP_CIPHER *cipherFor(qsizetype keySize)
{
    switch (keySize) {
    case 16:
        return EVP_aes_128_ecb();
    case 24:
        return EVP_aes_192_ecb();
    case 32:
        return EVP_aes_256_ecb();
    default:
        return nullptr;
    }
}

enum class Direction { decrypt = 0, encrypt = 1 };

std::optional<QByteArray> aes(const QByteArray &text, const QByteArray &key, Direction direction)
{
    const ErrorScope errors;
    const EVP_CIPHER *cipher = cipherFor(key.size());
    const CipherContext context(EVP_CIPHER_CTX_new());
    if (!cipher || !context || text.size() > sizeLimit)
        return {};

    QByteArray out;
    out.reserve(text.size() + blockSize + spareSize);
    out.resize(text.size() + blockSize);
    int size = 0;
    int lastSize = 0;
    if (EVP_CipherInit_ex(
            context.get(), cipher, nullptr, readable(key), nullptr, static_cast<int>(direction))
            != 1
        || EVP_CipherUpdate(
               context.get(), writable(out), &size, readable(text), static_cast<int>(text.size()))
            != 1
        || EVP_CipherFinal_ex(context.get(), writable(out) + size, &lastSize) != 1)
        return {};
    out.resize(size + lastSize);
    return out;
}

constexpr std::array<signed char, 256> base64Values()
{
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<signed char, 256> values {};
    values.fill(-1);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<signed char>(i);
    return values;
}

/// Writes the three bytes of four digits. \return their bits; negative where one is no digit
int decodeBase64(const char *digits, char *to)
{
    static constexpr auto values = base64Values();
    const auto value = [digits](int i) -> int { return values[static_cast<uchar>(digits[i])]; };
    const int bits = value(0) * (1 << 18) | value(1) * (1 << 12) | value(2) * (1 << 6) | value(3);
    to[0] = static_cast<char>(bits >> 16);
    to[1] = static_cast<char>(bits >> 8);
    to[2] = static_cast<char>(bits);
    return bits;
}

} // namespace

void warmUp()
{
    const QByteArray key(32, '\0');
    static_cast<void>(hmacSha256({}, key));
    static_cast<void>(aesEncrypt({}, key));
}

bool isAesKeySize(qsizetype bytes) { return cipherFor(bytes) != nullptr; }

std::optional<QByteArray> aesEncrypt(const QByteArray &plainText, const QByteArray &key)
{
    return aes(plainText, key, Direction::encrypt);
}

std::optional<QByteArray> aesDecrypt(const QByteArray &cipherText, const QByteArray &key)
{
    return aes(cipherText, key, Direction::decrypt);
}

std::optional<QByteArray> hmacSha256(const QByteArray &text, const QByteArray &key)
{
    const ErrorScope errors;
    QByteArray mac(macSize, Qt::Uninitialized);
    std::size_t written = 0;
    const bool done = EVP_Q_mac(nullptr, "HMAC", nullptr, "SHA256", nullptr, key.constData(),
        static_cast<std::size_t>(key.size()), readable(text), static_cast<std::size_t>(text.size()),
        writable(mac), static_cast<std::size_t>(mac.size()), &written);
    if (!done || written != static_cast<std::size_t>(macSize))
        return {};
    return mac;
}

QByteArray toBase64(const QByteArray &bytes)
{
    if (bytes.size() > sizeLimit)
        return {};
    QByteArray text((bytes.size() + 2) / 3 * 4 + 1, Qt::Uninitialized); // and libcrypto's own NUL
    const int size =
        EVP_EncodeBlock(writable(text), readable(bytes), static_cast<int>(bytes.size()));
    text.resize(size);
    return text;
}

std::optional<QByteArray> fromBase64(QByteArrayView text)
{
    // libcrypto's decoder passes over blanks at both ends, reads "=" as a digit anywhere and drops
    // bits that the padding leaves over; what the service sends is read to the letter.
    if (text.size() % 4 != 0 || text.size() > sizeLimit)
        return {};
    if (text.isEmpty())
        return QByteArray("", 0);
    const qsizetype padding = text.endsWith("==") ? 2 : text.endsWith('=') ? 1 : 0;
    const QByteArray last = text.last(4).chopped(padding).toByteArray() + QByteArray(padding, 'A');

    QByteArray bytes(text.size() / 4 * 3, Qt::Uninitialized);
    char *to = bytes.data();
    int seen = 0; // negative once something was no digit
    for (qsizetype i = 0; i < text.size() - 4; i += 4, to += 3)
        seen |= decodeBase64(text.data() + i, to);
    const int lastBits = decodeBase64(last.constData(), to);
    const int leftOver = lastBits & ((1 << 8 * padding) - 1);
    if (seen < 0 || lastBits < 0 || leftOver != 0)
        return {};
    bytes.chop(padding); // zeros that stand for the padding
    return bytes;
}

} // namespace parloquin::Crypto
