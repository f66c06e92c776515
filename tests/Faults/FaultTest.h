#pragma once

#include "Faults/Cell.h"
#include "Faults/Yardstick.h"
#include "Sandbox/Client.h"
#include "Screens/Container.h"

#include <chrono>

/// \brief The driver: a container, its device, the real service, and the steps between them.
///
/// Every cell is played twice in its process: what the first round warms up, threads, fonts and
/// caches of libraries, the second finds there, and leaves nothing behind. When it does, or holds
/// the main thread, further rounds tell the kit's fault, which comes with each, from a cache that
/// fills up and a machine that is busy.
class FaultTest : public ContainerTest, public testing::WithParamInterface<Cell> {
public:
    /// \param sandboxOptions for the command line of the service
    explicit FaultTest(const std::vector<std::string> &sandboxOptions = {});

    static constexpr auto number = "5550123487"; ///< that the user enters
    static constexpr auto code = "#Q7"; ///< that the service sends
    static constexpr std::chrono::milliseconds shortDeadline { 400 };
    static const QList<QByteArray> roadByApp; ///< the calls of each road, in order
    static const QList<QByteArray> roadBySms;

    /// Everything up to the tap (or the return) that makes the call; the answers so far are usual.
    void goTo(const QByteArray &call);
    /// What the user does between the answer of the call before and the tap that makes this one.
    /// \return false when the screen for it does not show
    [[nodiscard]] bool leadTo(const QByteArray &call);
    /// The tap itself.
    void make(const QByteArray &call);
    /// Until the request of the last make() is on its way.
    void waitForRequest() const;
    /// Until every request has had its completion and the main thread has dealt with it.
    void waitForAnswers();
    void makeAndWait(const QByteArray &call);
    /// What the user sees: "apps 2", "phone", "countries 12", "code", each with " link" behind it
    /// when the messaging app was opened; "closed".
    [[nodiscard]] QByteArray scene() const;
    [[nodiscard]] bool waitForScene(const QByteArray &wanted,
        std::chrono::milliseconds patience = std::chrono::seconds(5)) const;
    [[nodiscard]] static bool waitForLink();

    /// How the service answers a call from now on: an outcome as in its scenario.
    void setOutcome(const QByteArray &call, const nlohmann::json &outcome);
    /// The same for a text of its fault language, where OTHER stands for another host.
    void setFault(const QByteArray &call, QByteArray text);
    void setDeadline(std::chrono::milliseconds deadline);
    /// POSTs of a call that reached the service since its outcome was set.
    [[nodiscard]] int posts(const QByteArray &call);

    void playInRounds(const Cell &cell);

    Sandbox service; // `server` is another host, where no request may ever come
    Yardstick yardstick;
    std::unique_ptr<ParloquinViewController> other; ///< where a cell has two containers

protected:
    void SetUp() override;

private:
    void play(const Cell &cell);
    /// A GET where there is no body.
    nlohmann::json askService(const char *path, const nlohmann::json &body = {});
    bool send(const QString &message);

    std::chrono::milliseconds m_deadline {};
    qsizetype m_awaited = 0; // requests, the last one made included
};
