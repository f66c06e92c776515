#include "Parloquin/Platform/Crypto.h"

#include <QtCore/QtEndian>

#include <nettle/aes.h>
#include <nettle/base64.h>
#include <nettle/hmac.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace parloquin::Crypto {

namespace {

constexpr qsizetype blockSize = AES_BLOCK_SIZE; // bytes
constexpr qsizetype spareSize = 64; // bytes behind a text, for parsers that read in blocks

std::uint8_t *writable(QByteArray &bytes) { return reinterpret_cast<std::uint8_t *>(bytes.data()); }

const std::uint8_t *readable(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

/// Whole blocks, each by itself.
using Blocks = void (*)(const QByteArray &key, const QByteArray &from, QByteArray &to);

template <class Context, auto setKey, auto run>
void blocks(const QByteArray &key, const QByteArray &from, QByteArray &to)
{
    Context context;
    setKey(&context, readable(key));
    run(&context, static_cast<std::size_t>(from.size()), writable(to), readable(from));
}

struct Cipher {
    qsizetype keySize; ///< bytes
    Blocks encrypt;
    Blocks decrypt;
};

constexpr Cipher ciphers[] = {
    { AES128_KEY_SIZE, blocks<aes128_ctx, aes128_set_encrypt_key, aes128_encrypt>,
        blocks<aes128_ctx, aes128_set_decrypt_key, aes128_decrypt> },
    { AES192_KEY_SIZE, blocks<aes192_ctx, aes192_set_encrypt_key, aes192_encrypt>,
        blocks<aes192_ctx, aes192_set_decrypt_key, aes192_decrypt> },
    { AES256_KEY_SIZE, blocks<aes256_ctx, aes256_set_encrypt_key, aes256_encrypt>,
        blocks<aes256_ctx, aes256_set_decrypt_key, aes256_decrypt> },
};

const Cipher *cipherFor(qsizetype keySize)
{
    const auto *const cipher = std::find_if(std::begin(ciphers), std::end(ciphers),
        [keySize](const Cipher &each) { return each.keySize == keySize; });
    return cipher == std::end(ciphers) ? nullptr : cipher;
}

/// Room for that many bytes, and what parsers want behind them.
QByteArray room(qsizetype size)
{
    QByteArray bytes;
    bytes.reserve(size + spareSize);
    bytes.resize(size);
    return bytes;
}

// Wherever a digit's bits are moved to, some of these come to stand in the lowest of all bits.
constexpr quint32 noDigit = 1 | 1 << 6 | 1 << 12 | 1 << 18;

/// Of each digit: its bits, highest in the number.
constexpr std::array<quint32, 256> base64Bits()
{
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<quint32, 256> bits {};
    bits.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        bits[static_cast<uchar>(alphabet[i])] = static_cast<quint32>(i) << 26;
    return bits;
}

/// Writes the three bytes of four digits, and one more. \return the three, highest in the number;
/// odd where one is no digit
quint32 decodeBase64(const char *digits, char *to)
{
    static constexpr auto bits = base64Bits();
    const auto digit = [digits](int i) { return bits[static_cast<uchar>(digits[i])]; };
    const quint32 bytes = digit(0) | digit(1) >> 6 | digit(2) >> 12 | digit(3) >> 18;
    qToBigEndian(bytes, to);
    return bytes;
}

} // namespace

bool isAesKeySize(qsizetype bytes) { return cipherFor(bytes) != nullptr; }

std::optional<QByteArray> aesEncrypt(const QByteArray &plainText, const QByteArray &key)
{
    const Cipher *const cipher = cipherFor(key.size());
    if (!cipher)
        return {};
    const qsizetype padding = blockSize - plainText.size() % blockSize;
    const QByteArray padded = plainText + QByteArray(padding, static_cast<char>(padding));
    QByteArray cipherText(padded.size(), Qt::Uninitialized);
    cipher->encrypt(key, padded, cipherText);
    return cipherText;
}

std::optional<QByteArray> aesDecrypt(QByteArray text, const QByteArray &key)
{
    const Cipher *const cipher = cipherFor(key.size());
    if (!cipher || text.isEmpty() || text.size() % blockSize != 0)
        return {};
    text.detach();
    cipher->decrypt(key, text, text);
    const char padding = text.back();
    if (padding < 1 || padding > blockSize
        || !std::all_of(
            text.cend() - padding, text.cend(), [padding](char byte) { return byte == padding; }))
        return {};
    text.chop(padding);
    return text;
}

QByteArray hmacSha256(const QByteArray &text, const QByteArray &key)
{
    hmac_sha256_ctx context;
    hmac_sha256_set_key(&context, static_cast<std::size_t>(key.size()), readable(key));
    hmac_sha256_update(&context, static_cast<std::size_t>(text.size()), readable(text));
    QByteArray mac(SHA256_DIGEST_SIZE, Qt::Uninitialized);
    hmac_sha256_digest(&context, SHA256_DIGEST_SIZE, writable(mac));
    return mac;
}

QByteArray toBase64(const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    QByteArray text(static_cast<qsizetype>(BASE64_ENCODE_RAW_LENGTH(size)), Qt::Uninitialized);
    base64_encode_raw(text.data(), size, readable(bytes));
    return text;
}

std::optional<QByteArray> fromBase64(QByteArrayView text)
{
    // Libraries pass over blanks, and drop bits that the padding leaves over; what the service
    // sends is read to the letter.
    if (text.size() % 4 != 0)
        return {};
    if (text.isEmpty())
        return QByteArray("", 0);
    const qsizetype padding = text.endsWith("==") ? 2 : text.endsWith('=') ? 1 : 0;
    const QByteArray last = text.last(4).chopped(padding).toByteArray() + QByteArray(padding, 'A');

    QByteArray bytes = room(text.size() / 4 * 3);
    char *to = bytes.data();
    quint32 seen = 0;
    for (qsizetype i = 0; i < text.size() - 4; i += 4, to += 3)
        seen |= decodeBase64(text.data() + i, to);
    const quint32 lastBits = decodeBase64(last.constData(), to);
    const quint32 leftOver = (lastBits >> 8) & ((1U << 8 * padding) - 1);
    if (((seen | lastBits) & 1) != 0 || leftOver != 0)
        return {};
    bytes.chop(padding); // zeros that stand for the padding
    return bytes;
}

} // namespace parloquin::Crypto
