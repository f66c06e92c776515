#pragma once

#include "Parloquin/Platform/GLibPointers.h"
#include "Parloquin/Transport/HttpAnswer.h"
#include "Parloquin/Transport/UrlSession.h"

#include <functional>
#include <memory>
#include <optional>

namespace parloquin {

/// \brief One request on its way, on the session's thread and on a connection of its own.
///
/// The sockets, names, proxies and TLS are GIO's: it tries the addresses of a name side by side and
/// lets go of a look-up. The HTTP/1.1 in them is ours: the clients at hand send a request again
/// when a peer closes early, add headers by the locale, take a cut answer for a whole one, or never
/// come back from a peer whose head or chunks do not end.
class UrlCall : public std::enable_shared_from_this<UrlCall> {
public:
    using Ended = std::function<void(UrlCall *)>;

    /// The deadline runs from here on.
    /// \param ended runs once the handler has; who keeps the call may let go of it then. Letting go
    /// before aborts in silence.
    UrlCall(UrlRequest request, UrlSession::Handler handler, qint64 maximumBytes, Ended ended);
    ~UrlCall();
    Q_DISABLE_COPY_MOVE(UrlCall)

    /// Lets GIO make the classes that a call needs, so that the first one need not wait for them.
    static void prepare();

    /// Sends the request; once.
    void start();
    void cancel();

private:
    void connect(const QUrl &proxy);
    void send(GLibPointer<GSocketConnection> connection);
    gboolean read();
    void finish(std::optional<TransportError> error);
    void release();

    [[nodiscard]] bool isSecure() const;

    const UrlRequest m_request;
    UrlSession::Handler m_handler; ///< until it has run
    const Ended m_ended;
    HttpAnswer m_answer;

    // Sources and operations hold a bare pointer to the call: none of them outlives release(), and
    // one that was cancelled leaves the call alone.
    const GLibPointer<GCancellable> m_cancelled { g_cancellable_new() };
    GLibPointer<GSource> m_deadline;
    GLibPointer<GSource> m_patience; ///< with the system's settings, while they are asked
    GLibPointer<GSocketConnection> m_connection;
    GLibPointer<GSource> m_readable;
    QByteArray m_message; ///< as it is sent
};

} // namespace parloquin
