#pragma once

#include "Parloquin/Transport/UrlRequest.h"

#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

namespace parloquin {

/// \brief Head of an HTTP answer, whatever its status.
struct UrlResponse {
    int statusCode = 0;
    HeaderFields headers; ///< as they came
    QByteArray mimeType; ///< lower case, without parameters; empty where the answer names none
};

/// \brief What the transport says of a call that brought no whole answer.
struct TransportError {
    // clang-format off
    static constexpr int cancelled              = -999;
    static constexpr int timedOut               = -1001; ///< the deadline of the call is over
    static constexpr int unsupportedUrl         = -1002; ///< neither http nor https
    static constexpr int cannotFindHost         = -1003; ///< or the proxy
    static constexpr int cannotConnectToHost    = -1004; ///< refused, by the host or the proxy
    static constexpr int networkConnectionLost  = -1005; ///< closed, reset, or more than the call takes
    static constexpr int notConnectedToInternet = -1009; ///< no way to that network
    static constexpr int cannotParseResponse    = -1017; ///< what came is no HTTP
    static constexpr int secureConnectionFailed = -1200;
    // clang-format on

    int code = 0;
    QString localizedDescription;
};

class UrlSessionTask;

/// \brief The platform's shared session: sends HTTP requests and collects their answers.
///
/// Any thread. Handlers run one after another on the session's own thread, which lives until the
/// application object goes; what is under way then is aborted, and its handlers never run.
///
/// One task is one request on the wire: nothing is sent twice, no redirect followed, no cookie kept
/// or sent, nothing cached, no newer protocol than HTTP/1.1 offered, and no header depends on the
/// locale. The proxies that the host or the system has set are used.
class UrlSession {
public:
    /// Which of the three are there tells the cases apart:
    /// - data and response: a whole answer, also one with a status of 400 and above
    /// - response and error: an answer cut off, too long, or not there in time
    /// - error alone: no answer
    using Handler = std::function<void(std::optional<QByteArray> data,
        std::optional<UrlResponse> response, std::optional<TransportError> error)>;

    static constexpr qint64 defaultMaximumBytes = qint64 { 16 } * 1024 * 1024;

    static UrlSession &shared();
    ~UrlSession();
    Q_DISABLE_COPY_MOVE(UrlSession)

    /// \param request its timeout is a deadline for the whole call
    /// \param handler runs exactly once after resume() or cancel()
    /// \param maximumBytes of the body; a longer one counts as a lost connection
    /// \return a task that waits for its resume(); it may be dropped then and still goes on
    [[nodiscard]] std::shared_ptr<UrlSessionTask> dataTask(
        UrlRequest request, Handler handler, qint64 maximumBytes = defaultMaximumBytes);

private:
    friend class UrlSessionTask;
    UrlSession();

    struct Private;
    std::unique_ptr<Private> d;
};

/// \brief One request of the session. Any thread.
class UrlSessionTask {
public:
    /// Sends the request; a second call does nothing.
    void resume();

    /// Ends the call with the error `cancelled`, unless it has ended already.
    void cancel();

private:
    friend class UrlSession;
    struct State;
    UrlSessionTask() = default;

    std::shared_ptr<State> d;
};

} // namespace parloquin
