#include "sandbox/service/Cipher.h"

#include <gcrypt.h>

#include <array>
#include <memory>
#include <stdexcept>

namespace sandbox {
namespace {
constexpr std::size_t blockSize = 16;
constexpr std::string_view base64Letters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void check(gcry_error_t error)
{
    if (error != 0)
        throw std::runtime_error(std::string("libgcrypt: ") + gcry_strerror(error));
}

void prepareLibrary()
{
    static const bool once = [] {
        if (gcry_check_version(GCRYPT_VERSION) == nullptr)
            throw std::runtime_error("libgcrypt: older than " GCRYPT_VERSION);
        // Development keys only: memory that never reaches the swap is not worth its privileges.
        check(gcry_control(GCRYCTL_DISABLE_SECMEM, 0));
        check(gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0));
        return true;
    }();
    static_cast<void>(once);
}

struct CipherClose {
    void operator()(gcry_cipher_hd_t handle) const { gcry_cipher_close(handle); }
};
using CipherHandle = std::unique_ptr<gcry_cipher_handle, CipherClose>;

struct DigestClose {
    void operator()(gcry_md_hd_t handle) const { gcry_md_close(handle); }
};
using DigestHandle = std::unique_ptr<gcry_md_handle, DigestClose>;

CipherHandle openCipher(std::string_view key)
{
    prepareLibrary();
    gcry_cipher_hd_t handle = nullptr;
    check(gcry_cipher_open(&handle, GCRY_CIPHER_AES256, GCRY_CIPHER_MODE_ECB, 0));
    CipherHandle owner(handle);
    check(gcry_cipher_setkey(handle, key.data(), key.size()));
    return owner;
}
}

std::string encrypt(std::string_view plain, std::string_view key)
{
    const auto padding = blockSize - plain.size() % blockSize;
    std::string bytes(plain);
    bytes.append(padding, static_cast<char>(padding));
    check(gcry_cipher_encrypt(openCipher(key).get(), bytes.data(), bytes.size(), nullptr, 0));
    return bytes;
}

std::optional<std::string> decrypt(std::string_view cipherText, std::string_view key)
{
    if (cipherText.empty() || cipherText.size() % blockSize != 0)
        return std::nullopt;
    std::string bytes(cipherText);
    check(gcry_cipher_decrypt(openCipher(key).get(), bytes.data(), bytes.size(), nullptr, 0));

    const auto padding = static_cast<unsigned char>(bytes.back());
    if (padding == 0 || padding > blockSize)
        return std::nullopt;
    if (bytes.find_last_not_of(bytes.back()) != std::string::npos
        && bytes.size() - bytes.find_last_not_of(bytes.back()) - 1 < padding)
        return std::nullopt;
    bytes.resize(bytes.size() - padding);
    return bytes;
}

std::string hmacSha256(std::string_view text, std::string_view key)
{
    prepareLibrary();
    gcry_md_hd_t handle = nullptr;
    check(gcry_md_open(&handle, GCRY_MD_SHA256, GCRY_MD_FLAG_HMAC));
    const DigestHandle owner(handle);
    check(gcry_md_setkey(handle, key.data(), key.size()));
    gcry_md_write(handle, text.data(), text.size());
    const auto *mac = gcry_md_read(handle, GCRY_MD_SHA256);
    return { mac, mac + gcry_md_get_algo_dlen(GCRY_MD_SHA256) };
}

std::string toBase64(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const auto count = std::min<std::size_t>(3, bytes.size() - at);
        unsigned group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8U | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= count ? base64Letters[group >> (18U - 6U * i) & 63U] : '=';
    }
    return text;
}

std::optional<std::string> fromBase64(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    unsigned group = 0;
    for (std::size_t at = 0; at < text.size() && text[at] != '='; ++at) {
        const auto value = base64Letters.find(text[at]);
        if (value == std::string_view::npos)
            return std::nullopt;
        group = group << 6U | static_cast<unsigned>(value);
        if (at % 4 != 0)
            bytes += static_cast<char>(group >> (6U - 2U * (at % 4)) & 255U);
    }
    // Only one spelling of a run of bytes is right: the one that comes out again.
    if (toBase64(bytes) != text)
        return std::nullopt;
    return bytes;
}

std::optional<std::string> fromHex(std::string_view text)
{
    constexpr std::string_view digits = "0123456789abcdef0123456789ABCDEF";
    std::string bytes;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        const auto high = digits.find(text[at]);
        const auto low = digits.find(text[at + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos)
            return std::nullopt;
        bytes += static_cast<char>((high % 16) * 16 + low % 16);
    }
    if (text.empty() || text.size() % 2 != 0)
        return std::nullopt;
    return bytes;
}

namespace {
unsigned randomBelow(unsigned limit)
{
    prepareLibrary();
    unsigned number = 0;
    gcry_create_nonce(&number, sizeof number);
    return number % limit; // a bias of one in 2^26 shows nobody's code
}
}

std::string randomText(std::size_t length, std::string_view alphabet)
{
    std::string text;
    while (text.size() < length)
        text += alphabet[randomBelow(static_cast<unsigned>(alphabet.size()))];
    return text;
}

std::string randomUuid()
{
    auto text = randomText(36, "0123456789abcdef");
    for (const auto dash : std::array { 8U, 13U, 18U, 23U })
        text[dash] = '-';
    text[14] = '4'; // a random one
    text[19] = "89ab"[randomBelow(4)];
    return text;
}

}
