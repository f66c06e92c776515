#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace parloquin {

/// \brief Encrypts request bodies and decrypts answers with the host's key.
///
/// Any thread; no state: the key is read from the host's property list on every use.
/// ECB keeps no one from swapping blocks: a text that decrypts is not proven to be genuine.
class EncryptManager {
public:
    static EncryptManager &shared();

    /// \return Base64 of the encrypted JSON text; nothing, and a logged reason, without a usable
    /// key
    [[nodiscard]] std::optional<QString> encrypt(const QJsonObject &parameters) const;

    /// \param value Base64 of the encrypted text
    /// \return the UTF-8 plain text; nothing, and a logged error, without a usable key or when the
    /// value cannot be decrypted: bad Base64, length, padding and text all read the same
    [[nodiscard]] std::optional<QByteArray> decrypt(QByteArrayView value) const;

private:
    EncryptManager() = default;

    [[nodiscard]] static QString AES256Key();
    /// The key's bytes, when they select a cipher.
    [[nodiscard]] static std::optional<QByteArray> aes256();
};

} // namespace parloquin
