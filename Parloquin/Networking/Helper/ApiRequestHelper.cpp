#include "Parloquin/Networking/Helper/ApiRequestHelper.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Extension/String+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Platform/Crypto.h"

#include <utility>

namespace parloquin {

namespace {

// Of the protocol, not of a host: the service checks every host's signature with the same text.
QByteArray signingKey()
{
    return QByteArrayLiteral("GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/");
}

// The top level alone: what is empty further down is the caller's to judge.
std::optional<QJsonObject> cleaned(std::optional<QJsonObject> parameters)
{
    if (!parameters)
        return {};
    const QJsonObject given = *parameters;
    for (auto it = given.begin(); it != given.end(); ++it) {
        const QJsonValue value = *it;
        if (value.isNull() || (value.isString() && value.toString().isEmpty()))
            parameters->remove(it.key());
    }
    return parameters;
}

} // namespace

ApiRequestHelper::ApiRequestHelper(
    std::optional<QJsonObject> parametersToSend, std::optional<QJsonObject> headersToSend)
    : parameters(cleaned(std::move(parametersToSend)))
    , headers(std::move(headersToSend))
{
}

std::optional<QJsonObject> ApiRequestHelper::requestHeaders() const
{
    const std::optional<QString> signature = requestSignature();
    if (!headers || !signature)
        return {};
    QJsonObject signedHeaders = *headers;
    signedHeaders.insert(QStringLiteral("X-TRZ-Req-Signature"), *signature);
    return signedHeaders;
}

std::optional<QJsonObject> ApiRequestHelper::requestParameters() const
{
    return encryptStatus() == EncryptedState::active ? encryptedParameters() : parameters;
}

std::optional<EncryptedState> ApiRequestHelper::encryptStatus() const
{
    if (!headers)
        return {};
    return fromRaw<EncryptedState>(headers->value(u"X-TRZ-Encrypted").toString());
}

std::optional<QJsonObject> ApiRequestHelper::encryptedParameters() const
{
    if (!parameters)
        return {};
    // Without a key the body says so by null, and the service refuses in its own words.
    const std::optional<QString> cipherText = EncryptManager::shared().encrypt(*parameters);
    return QJsonObject {
        { QStringLiteral("data"), cipherText ? QJsonValue(*cipherText) : QJsonValue() },
    };
}

std::optional<QString> ApiRequestHelper::requestSignature() const
{
    if (!parameters || !headers)
        return {};
    const QJsonValue timeStamp = headers->value(u"X-TRZ-Req-Timestamp");
    if (!timeStamp.isString())
        return {};

    // Slashes are signed as they are, although they travel escaped.
    const QByteArray text = timeStamp.toString().toUtf8() + '-' + plainJsonText(*parameters);
    const QByteArray mac = Crypto::hmacSha256(text, signingKey());
    const QString signature = QString::fromLatin1(Crypto::toBase64(mac));
    logHMAC(QString::fromUtf8(text), signature);
    return signature;
}

void ApiRequestHelper::logHMAC(const QString &text, const std::optional<QString> &signature)
{
    const QString cyclones = QStringLiteral("\U0001F300").repeated(5);
    print(QStringLiteral("\n\n\n") + cyclones);
    print(QStringLiteral("[HMAC/SIGNATURE Start]"));
    print(QStringLiteral("HMAC: ") + text);
    print(QStringLiteral("HMAC with SHA: ") + optionalDescription(signature));
    print(QStringLiteral("[HMAC/SIGNATURE End]"));
    print(cyclones + QStringLiteral("\n\n\n"));
}

} // namespace parloquin
