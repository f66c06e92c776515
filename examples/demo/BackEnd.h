#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtNetwork/QNetworkAccessManager>

#include <functional>

namespace demo {

/// \brief The host's own back end; in this demo the sandbox plays it.
///
/// A session id from the kit is a claim made on the user's device. Only the back end, which asks
/// the verification service itself, can believe it. Main thread only; every answer comes once,
/// within five seconds, on the main thread.
class BackEnd : public QObject {
    Q_OBJECT
public:
    BackEnd();

    void askHealth(std::function<void(bool running)> done);

    /// Asks the service by its `result` call, as a real back end would.
    /// \param done gets why the session is not confirmed; empty: it is
    void confirm(const QString &sessionId, std::function<void(const QString &fault)> done);

    /// \brief The code that was "sent by SMS": only a sandbox tells.
    /// \param number full number, digits
    /// \param done gets an empty code while there is none
    void askCode(const QString &number, std::function<void(const QString &code)> done);

private:
    using Done = std::function<void(int status, const QJsonObject &body)>;
    void get(const QString &path, Done done);

    QNetworkAccessManager m_network;
};

} // namespace demo
