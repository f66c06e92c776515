#pragma once

#include "Parloquin/Platform/UrlSession.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <functional>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace parloquin {

/// \brief One request on its way, on the session's thread. Goes by itself once the handler has run;
/// deleting it before aborts in silence.
class UrlCall : public QObject {
public:
    UrlCall(UrlRequest request, UrlSession::Handler handler, qint64 maximumBytes, QObject *parent);
    ~UrlCall() override;
    Q_DISABLE_COPY_MOVE(UrlCall)

    /// Sends the request; once.
    /// \param spoilt runs when the connection may be left open: the manager would give it to a call
    /// that comes later, and a peer that sends for ever would keep the manager's thread from that
    void start(std::shared_ptr<QNetworkAccessManager> manager, std::function<void()> spoilt);
    void cancel();

private:
    void read();
    void finish(std::optional<TransportError> error);
    void release();

    const UrlRequest m_request;
    UrlSession::Handler m_handler; ///< until it has run
    const qint64 m_maximumBytes;
    QTimer m_deadline;
    int m_connections = 0; ///< tried so far
    QByteArray m_data;
    std::shared_ptr<QNetworkAccessManager> m_manager;
    std::function<void()> m_spoilt;
    QNetworkReply *m_reply = nullptr; ///< owned; its own signal may lead to finish()
};

} // namespace parloquin
