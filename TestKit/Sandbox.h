#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <chrono>
#include <memory>

/// What an app's own tests need to play a verification: a service, a person, a delegate.
namespace ParloquinTest {

/// \brief The sandbox as a process of its own on a free port, with this program's kit pointed at
/// it.
///
/// Points by the environment of this process alone (`PARLOQUIN_SERVICE_HOST`, `PARLOQUIN_ROUTE`,
/// `PARLOQUIN_DESKTOP`), which a kit hears that is built for a loopback address, and no other. Make
/// it before the kit is used; one at a time in a program, any number on a machine. The process goes
/// with the object, and with this program. Main thread only. What goes wrong stops the test program
/// with a message, as it would make every case after it fail.
/// \since 1.1
class Sandbox {
public:
#if defined(PARLOQUIN_SANDBOX_PROGRAM)
    /// The program that was installed, or built, beside this kit.
    Sandbox()
        : Sandbox(QStringLiteral(PARLOQUIN_SANDBOX_PROGRAM))
    {
    }
#endif
    /// \param program path of parloquin-sandbox
    /// \param arguments besides the port: a scenario, say
    explicit Sandbox(const QString &program, const QStringList &arguments = {});
    ~Sandbox();
    Q_DISABLE_COPY_MOVE(Sandbox)

    /// \brief Says how a call is answered from now on.
    /// \param call `init`, `start`, `check`, `send-otp`, `check-otp` or `country`
    /// \param outcome as in a scenario: a name (`success`, `limit`, `wrongCode`, ...), an object,
    /// or a list for one request after the other
    void answers(const QString &call, const QJsonValue &outcome);

    /// \brief The usual answer, this much later.
    void delays(const QString &call, std::chrono::milliseconds delay);

    /// \brief As on a device without a default route; again, as with one.
    void goesOffline(bool isOffline = true);

    /// \brief Which messaging apps the device has, by the scheme of their links; all by default.
    void hasApps(const QStringList &schemes);

    /// \return the code that was sent last, whoever it went to; empty where none was
    [[nodiscard]] QString lastCode() const;

    /// \return the sessions so far: `sessionId`, `confirmed`, `method`, `app`, ...
    [[nodiscard]] QJsonArray sessions() const;
    /// \return whether the service would tell a back end that this session is verified
    [[nodiscard]] bool confirms(const QString &sessionId) const;

    /// \return how many requests of that call have come
    [[nodiscard]] int requests(const QString &call) const;

    /// \return what came so far, decrypted, each with its verdict
    [[nodiscard]] QJsonArray journal() const;
    /// \return the same in a few lines, for the message of a test that fails
    [[nodiscard]] QString report() const;

    /// \brief Forgets all that happened, and answers as at first.
    void reset();

    /// \return `127.0.0.1:` and the port
    [[nodiscard]] QString host() const;

private:
    friend class Person;
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ParloquinTest
