#include "Parloquin/Manager/EncryptManager.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/String+Extension.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Platform/Crypto.h"
#include "Parloquin/Platform/InfoDictionary.h"

#include <simdjson.h>

namespace parloquin {

namespace {

void logError(const QString &operation, const QString &reason)
{
    LogManager::shared().log(QStringLiteral("%1 Error: '%2'").arg(operation, reason), true);
}

bool isUtf8(const QByteArray &text)
{
    return simdjson::validate_utf8(text.constData(), static_cast<std::size_t>(text.size()));
}

} // namespace

EncryptManager &EncryptManager::shared()
{
    static EncryptManager instance;
    return instance;
}

QString EncryptManager::AES256Key()
{
    return infoDictionaryText(QStringLiteral("ParloquinSecret")).value_or(QString());
}

std::optional<QByteArray> EncryptManager::aes256()
{
    const std::optional<QByteArray> key = hexadecimal(AES256Key());
    return key && Crypto::isAesKeySize(key->size()) ? key : std::nullopt;
}

std::optional<QString> EncryptManager::encrypt(const QJsonObject &parameters) const
{
    const std::optional<QByteArray> key = aes256();
    if (!key) {
        logError(QStringLiteral("Encrypt"), QStringLiteral("Encrypt key null"));
        return {};
    }
    const std::optional<QByteArray> cipherText = Crypto::aesEncrypt(jsonText(parameters), *key);
    if (!cipherText) {
        logError(QStringLiteral("Encrypt"), QStringLiteral("The parameters cannot be encrypted"));
        return {};
    }
    return QString::fromLatin1(Crypto::toBase64(*cipherText));
}

std::optional<QByteArray> EncryptManager::decrypt(QByteArrayView value) const
{
    const std::optional<QByteArray> key = aes256();
    if (!key) {
        logError(QStringLiteral("Decrypt"), QStringLiteral("Decrypt key null"));
        return {};
    }
    std::optional<QByteArray> plainText;
    if (std::optional<QByteArray> cipherText = Crypto::fromBase64(value))
        plainText = Crypto::aesDecrypt(*std::move(cipherText), *key);
    if (!plainText || !isUtf8(*plainText)) {
        logError(QStringLiteral("Decrypt"), QStringLiteral("The value cannot be decrypted"));
        return {};
    }
    return plainText;
}

} // namespace parloquin
