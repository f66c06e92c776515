#include "ResultCall.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMessageAuthenticationCode>
#include <QtCore/QUrl>

#include <nettle/aes.h>

namespace demo {

namespace {

// A real back end has these two in its settings; they are those of the app's Info.plist.
constexpr auto clientKey = "parloquin-demo";
constexpr auto secret = "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e";
// Every host signs with the same one.
constexpr auto signingKey = "GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/";

const uint8_t *bytesOf(const QByteArray &text)
{
    return reinterpret_cast<const uint8_t *>(text.constData());
}

/// AES-256 in ECB mode, PKCS#7 padding.
QByteArray encrypted(QByteArray text)
{
    const qsizetype missing = AES_BLOCK_SIZE - text.size() % AES_BLOCK_SIZE;
    text.append(missing, char(missing));
    aes256_ctx cipher;
    aes256_set_encrypt_key(&cipher, bytesOf(QByteArray::fromHex(secret)));
    QByteArray cipherText(text.size(), '\0');
    aes256_encrypt(&cipher, size_t(text.size()), reinterpret_cast<uint8_t *>(cipherText.data()),
        bytesOf(text));
    return cipherText;
}

/// \return empty when \p cipherText was made with another secret
QByteArray decrypted(const QByteArray &cipherText)
{
    if (cipherText.isEmpty() || cipherText.size() % AES_BLOCK_SIZE != 0)
        return {};
    aes256_ctx cipher;
    aes256_set_decrypt_key(&cipher, bytesOf(QByteArray::fromHex(secret)));
    QByteArray text(cipherText.size(), '\0');
    aes256_decrypt(&cipher, size_t(text.size()), reinterpret_cast<uint8_t *>(text.data()),
        bytesOf(cipherText));
    const auto padding = static_cast<unsigned char>(text.back());
    return padding > 0 && padding <= AES_BLOCK_SIZE ? text.chopped(padding) : QByteArray();
}

} // namespace

ResultCall::ResultCall(const QString &service, QString sessionId)
    : m_sessionId(std::move(sessionId))
    , m_request(QUrl(QStringLiteral("http://%1/v1.0/result").arg(service)))
{
    const QJsonObject parameters { { QStringLiteral("session_id"), m_sessionId } };
    QByteArray plain = QJsonDocument(parameters).toJson(QJsonDocument::Compact);
    const QByteArray time = QByteArray::number(QDateTime::currentSecsSinceEpoch()) + "000";
    const QByteArray signature = QMessageAuthenticationCode::hash(
        time + '-' + plain, signingKey, QCryptographicHash::Sha256);
    const QByteArray cipherText = encrypted(plain.replace("/", "\\/"));
    m_body = R"({"data":")" + cipherText.toBase64() + R"("})";

    m_request.setRawHeader("Content-Type", "application/json; charset=utf-8");
    m_request.setRawHeader("User-Agent", "iOS");
    m_request.setRawHeader("X-TRZ-Os", "ios 1");
    m_request.setRawHeader("X-TRZ-Sdk-Version", "1.0");
    m_request.setRawHeader("X-TRZ-Client-Key", clientKey);
    m_request.setRawHeader("X-TRZ-Encrypted", "1");
    m_request.setRawHeader("X-TRZ-Req-Timestamp", time);
    m_request.setRawHeader("X-TRZ-Req-Signature", signature.toBase64());
}

ResultCall::Answer ResultCall::answerIn(QNetworkReply &reply) const
{
    // One that was given up is closed already, and Qt complains of who reads it.
    const QByteArray body = reply.isOpen() ? reply.readAll() : QByteArray();
    QJsonObject envelope = QJsonDocument::fromJson(body).object();
    if (reply.rawHeader("X-TRZ-Encrypted") == "1") {
        const QString data = envelope[QStringLiteral("data")].toString();
        envelope =
            QJsonDocument::fromJson(decrypted(QByteArray::fromBase64(data.toLatin1()))).object();
    }
    const int status = envelope[QStringLiteral("meta")][QStringLiteral("httpStatusCode")].toInt();
    const QJsonValue result = envelope[QStringLiteral("result")];
    if (status == 0 || status >= 500)
        return Answer::none;
    if (status == 404)
        return Answer::unknown;
    const bool verified = (status == 200 || status == 201)
        && result[QStringLiteral("sessionId")].toString() == m_sessionId
        && result[QStringLiteral("validationStatus")].toBool();
    return verified ? Answer::verified : Answer::notVerified;
}

} // namespace demo
