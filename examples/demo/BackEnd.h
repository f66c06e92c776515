#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtNetwork/QNetworkAccessManager>

#include <functional>

namespace demo {

/// \brief What this host's own back end knows of a verified session.
struct Confirmation {
    QString sessionId;
    QString method;
    QString app; // empty: no messaging app was used
    QDateTime confirmedAt;
};

/// \brief The host's own back end; in this demo the sandbox plays it.
///
/// A session id from the kit is a claim made on the user's device. Only the back end, which asks
/// the verification service itself, can believe it. Main thread only; every answer comes once,
/// within five seconds, on the main thread.
class BackEnd : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    void askHealth(std::function<void(bool running)> done);

    /// \param done gets the confirmation, or why there is none
    void confirm(const QString &sessionId,
        std::function<void(const Confirmation &, const QString &fault)> done);

    /// \brief The code that was "sent by SMS": only a sandbox tells.
    /// \param number full number, digits
    /// \param done gets an empty code while there is none
    void askCode(const QString &number, std::function<void(const QString &code)> done);

private:
    using Done = std::function<void(int status, const QJsonObject &body, const QString &fault)>;
    void get(const QString &path, Done done);

    QNetworkAccessManager m_network;
};

} // namespace demo
