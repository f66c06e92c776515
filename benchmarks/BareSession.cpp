#include "BareSession.h"

#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>

#include <utility>

BareSession::BareSession()
    : m_manager(new QNetworkAccessManager)
{
    m_manager->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_manager, &QObject::deleteLater);
    m_thread.start();
}

BareSession::~BareSession()
{
    m_thread.quit();
    m_thread.wait();
}

void BareSession::post(const QByteArray &body, std::function<void(QByteArray)> done)
{
    QMetaObject::invokeMethod(m_manager, [this, body, done = std::move(done)] {
        QNetworkRequest request(
            QUrl(QStringLiteral("http://" PARLOQUIN_SERVICE_HOST "/v1.0/start")));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
        // A connection a call, as the kit does and the responder ends it: the same on the wire.
        request.setRawHeader("Connection", "close");
        QNetworkReply *const reply = m_manager->post(request, body);
        QObject::connect(reply, &QNetworkReply::finished, reply, [reply, done] {
            done(reply->readAll());
            reply->deleteLater();
        });
    });
}
