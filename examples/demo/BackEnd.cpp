#include "BackEnd.h"

#include "ResultCall.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

namespace demo {

namespace {

constexpr int patience = 5000; // ms

QString serviceHost()
{
    // Where the kit in this process is pointed for a rehearsal, the service has moved.
    return qEnvironmentVariable("PARLOQUIN_SERVICE_HOST", QStringLiteral(DEMO_BACK_END));
}

} // namespace

BackEnd::BackEnd()
{
    // A proxy of the machine has no way to this machine's own loopback.
    m_network.setProxy(QNetworkProxy::NoProxy);
}

void BackEnd::get(const QString &path, Done done)
{
    QNetworkRequest request(QUrl(QStringLiteral("http://%1%2").arg(serviceHost(), path)));
    request.setTransferTimeout(patience);
    QNetworkReply *reply = m_network.get(request);
    connect(reply, &QNetworkReply::finished, this, [reply, done = std::move(done)] {
        reply->deleteLater();
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const QByteArray body =
            reply->isOpen() ? reply->readAll() : QByteArray(); // given up: closed
        done(status, QJsonDocument::fromJson(body).object());
    });
}

void BackEnd::askHealth(std::function<void(bool)> done)
{
    get(QStringLiteral("/sandbox/health"),
        [done = std::move(done)](int status, const QJsonObject &body) {
            done(status == 200
                && body[QStringLiteral("status")].toString() == QStringLiteral("running"));
        });
}

void BackEnd::confirm(const QString &sessionId, std::function<void(const QString &)> done)
{
    const ResultCall call(serviceHost(), sessionId);
    QNetworkRequest request = call.request();
    request.setTransferTimeout(patience);
    QNetworkReply *reply = m_network.post(request, call.body());
    connect(reply, &QNetworkReply::finished, this, [reply, call, done = std::move(done)] {
        reply->deleteLater();
        switch (call.answerIn(*reply)) {
        case ResultCall::Answer::verified:
            return done({});
        case ResultCall::Answer::notVerified:
            return done(tr("The back end does not confirm this session."));
        case ResultCall::Answer::unknown:
            return done(tr("The back end does not know this session."));
        case ResultCall::Answer::none:
            return done(tr("The back end did not answer: %1").arg(reply->errorString()));
        }
    });
}

void BackEnd::askCode(const QString &number, std::function<void(const QString &)> done)
{
    get(QStringLiteral("/sandbox/codes/") + number,
        [done = std::move(done)](int status, const QJsonObject &body) {
            done(status == 200 ? body[QStringLiteral("code")].toString() : QString());
        });
}

} // namespace demo
