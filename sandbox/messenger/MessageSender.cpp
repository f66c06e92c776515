#include "sandbox/messenger/MessageSender.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

namespace messenger {
namespace {
constexpr int patience = 5000; // ms; the service runs on this machine
}

MessageSender::MessageSender(QString service, QObject *parent)
    : QObject(parent)
    , m_service(std::move(service))
{
    // The service is a neighbour: a proxy of the desktop would not find it.
    m_network.setProxy(QNetworkProxy::NoProxy);
}

void MessageSender::send(const QString &app, const QString &text)
{
    QNetworkRequest request(QUrl(QStringLiteral("http://%1/sandbox/messages").arg(m_service)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setTransferTimeout(patience);
    const QJsonObject message { { QStringLiteral("app"), app }, { QStringLiteral("text"), text } };
    auto *reply = m_network.post(request, QJsonDocument(message).toJson(QJsonDocument::Compact));
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        const auto status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status == 202) {
            Q_EMIT sent();
        } else if (status == 0) {
            Q_EMIT failed(tr("The service at %1 does not answer.").arg(m_service));
        } else {
            const auto answer = QJsonDocument::fromJson(reply->readAll()).object();
            Q_EMIT failed(tr("Not taken: %1.")
                              .arg(answer.value(QStringLiteral("error"))
                                       .toString(tr("status %1").arg(status))));
        }
    });
}

}
