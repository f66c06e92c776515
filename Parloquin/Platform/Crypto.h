#pragma once

#include <QtCore/QByteArray>

#include <optional>

/// \brief The standard algorithms of bodies and signatures, by libnettle.
///
/// Any thread; no state.
namespace parloquin::Crypto {

/// \return whether a key of this many bytes selects a cipher: 16, 24 or 32
[[nodiscard]] bool isAesKeySize(qsizetype bytes);

/// \brief AES in ECB mode with PKCS#7 padding; the key's length selects 128, 192 or 256 bits.
/// \return nothing when the key has another length
[[nodiscard]] std::optional<QByteArray> aesEncrypt(
    const QByteArray &plainText, const QByteArray &key);

/// \brief Decrypts a text, in its own place where nobody else holds it.
/// \return nothing on any failure. Which one is not told: an answer that differs by the kind of
/// failure is what padding attacks feed on.
[[nodiscard]] std::optional<QByteArray> aesDecrypt(QByteArray text, const QByteArray &key);

/// \return the code's 32 bytes
[[nodiscard]] QByteArray hmacSha256(const QByteArray &text, const QByteArray &key);

/// \brief Standard alphabet, padded, in one line.
[[nodiscard]] QByteArray toBase64(const QByteArray &bytes);

/// \brief Strict reverse of toBase64(): no blanks or line breaks, padding required, no stray bits.
/// \return the bytes, with room behind them for parsers that read in blocks; nothing for any other
/// text
[[nodiscard]] std::optional<QByteArray> fromBase64(QByteArrayView text);

} // namespace parloquin::Crypto
