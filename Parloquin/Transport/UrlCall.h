#pragma once

#include "Parloquin/Transport/HttpAnswer.h"
#include "Parloquin/Transport/UrlSession.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <optional>

class QTcpSocket;

namespace parloquin {

/// \brief One request on its way, on the session's thread and on a connection of its own. Goes by
/// itself once the handler has run; deleting it before aborts in silence.
///
/// The sockets, names, proxies and TLS are Qt's, the HTTP/1.1 in them is not: Qt's client sends a
/// request again when a peer closes early, adds headers by the locale, and never comes back from a
/// peer whose head or chunks do not end.
class UrlCall : public QObject {
public:
    /// The deadline runs from here on.
    UrlCall(UrlRequest request, UrlSession::Handler handler, qint64 maximumBytes, QObject *parent);
    ~UrlCall() override;
    Q_DISABLE_COPY_MOVE(UrlCall)

    /// Sends the request; once.
    void start();
    void cancel();

private:
    void send(const QByteArray &proxyAuthorization, bool isProxied);
    void read();
    void end();
    void finish(std::optional<TransportError> error);
    void release();

    const UrlRequest m_request;
    UrlSession::Handler m_handler; ///< until it has run
    QTimer m_deadline;
    QTcpSocket *m_socket = nullptr; ///< owned; its own signal may lead to finish()
    HttpAnswer m_answer;
};

} // namespace parloquin
