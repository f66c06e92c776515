#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtNetwork/QNetworkAccessManager>

namespace messenger {

/// \brief Carries a message to the service.
///
/// Main thread. One message at a time; each send() ends in exactly one of the signals.
class MessageSender : public QObject {
    Q_OBJECT

public:
    /// \param service host and port
    explicit MessageSender(QString service, QObject *parent = nullptr);

    void send(const QString &app, const QString &text);

Q_SIGNALS:
    void sent();
    /// \param complaint a sentence for the user
    void failed(const QString &complaint);

private:
    QString m_service;
    QNetworkAccessManager m_network;
};

}
