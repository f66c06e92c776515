#pragma once

#include "Parloquin/Platform/UrlSession.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

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
    void start(QNetworkAccessManager &manager);
    void cancel();

private:
    void read();
    void finish(std::optional<TransportError> error);
    void release();

    const UrlRequest m_request;
    UrlSession::Handler m_handler; ///< until it has run
    const qint64 m_maximumBytes;
    QTimer m_deadline;
    QByteArray m_data;
    QNetworkReply *m_reply = nullptr; ///< owned; goes by deleteLater()
};

} // namespace parloquin
