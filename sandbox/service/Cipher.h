#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Bytes on their way over the wire. Any thread; every function is pure.
namespace sandbox {

/// \return the cipher text of AES-256 in ECB mode with PKCS#7 padding; \p key has 32 bytes
std::string encrypt(std::string_view plain, std::string_view key);
/// \return nothing when the length or the padding is not that of a text encrypted with \p key
std::optional<std::string> decrypt(std::string_view cipherText, std::string_view key);
/// \return the 32 bytes of HMAC with SHA-256
std::string hmacSha256(std::string_view text, std::string_view key);

std::string toBase64(std::string_view bytes);
/// Strict: padded, no blanks, no line breaks, no stray bits. \return nothing otherwise
std::optional<std::string> fromBase64(std::string_view text);
/// \return nothing unless \p text is an even run of hexadecimal digits
std::optional<std::string> fromHex(std::string_view text);

/// Draws from the system's generator. \return \p length characters of \p alphabet
std::string randomText(std::size_t length, std::string_view alphabet);
/// \return a random identifier, as 8-4-4-4-12 lower-case hexadecimal digits
std::string randomUuid();

}
