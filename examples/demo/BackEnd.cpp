#include "BackEnd.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

namespace demo {

namespace {

constexpr int patience = 5000; // ms

} // namespace

void BackEnd::get(const QString &path, Done done)
{
    // A proxy of the machine has no way to this machine's own loopback.
    m_network.setProxy(QNetworkProxy::NoProxy);
    // Where the kit in this process is pointed for a rehearsal, the service has moved.
    const QString service =
        qEnvironmentVariable("PARLOQUIN_SERVICE_HOST", QStringLiteral(DEMO_BACK_END));
    QNetworkRequest request(QUrl(QStringLiteral("http://%1%2").arg(service, path)));
    request.setTransferTimeout(patience);
    QNetworkReply *reply = m_network.get(request);
    connect(reply, &QNetworkReply::finished, this, [reply, done = std::move(done)] {
        reply->deleteLater();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        done(status, QJsonDocument::fromJson(reply->readAll()).object(), reply->errorString());
    });
}

void BackEnd::askHealth(std::function<void(bool)> done)
{
    get(QStringLiteral("/sandbox/health"),
        [done = std::move(done)](int status, const QJsonObject &body, const QString &) {
            done(status == 200
                && body[QStringLiteral("status")].toString() == QStringLiteral("running"));
        });
}

void BackEnd::confirm(
    const QString &sessionId, std::function<void(const Confirmation &, const QString &)> done)
{
    const QString id = QString::fromLatin1(QUrl::toPercentEncoding(sessionId));
    get(QStringLiteral("/sandbox/sessions/") + id,
        [sessionId, done = std::move(done)](
            int status, const QJsonObject &body, const QString &fault) {
            if (status == 404)
                return done({}, tr("The back end does not know this session."));
            if (status != 200)
                return done({}, tr("The back end did not answer: %1").arg(fault));
            if (!body[QStringLiteral("confirmed")].toBool()
                || body[QStringLiteral("sessionId")].toString() != sessionId)
                return done({}, tr("The back end does not confirm this session."));
            done({ sessionId, body[QStringLiteral("method")].toString(),
                     body[QStringLiteral("app")].toString(),
                     QDateTime::fromString(
                         body[QStringLiteral("confirmedAt")].toString(), Qt::ISODateWithMs) },
                {});
        });
}

void BackEnd::askCode(const QString &number, std::function<void(const QString &)> done)
{
    get(QStringLiteral("/sandbox/codes/") + number,
        [done = std::move(done)](int status, const QJsonObject &body, const QString &) {
            done(status == 200 ? body[QStringLiteral("code")].toString() : QString());
        });
}

} // namespace demo
