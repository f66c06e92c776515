#pragma once

#include "Faults/Cell.h"
#include "Faults/Yardstick.h"
#include "Sandbox/Client.h"
#include "Screens/Container.h"
#include "support/Hands.h"

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <chrono>

using namespace Qt::StringLiterals;

/// \brief The driver: a container, its device, the real service, and the steps between them.
///
/// Every cell is played twice in its process: what the first round warms up, the second finds
/// there, and leaves nothing behind. When it does, or holds the main thread, further rounds tell
/// the kit's fault, which comes with each, from a cache that fills up and a busy machine.
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
    /// The steps between the answer before and that tap. \return whether the screen for it shows
    [[nodiscard]] bool leadTo(const QByteArray &call);
    void make(const QByteArray &call); ///< the tap itself
    void waitForRequest() const; ///< of the last make()
    void waitForAnswers(); ///< until the main thread has dealt with the completion of each request
    void makeAndWait(const QByteArray &call);
    /// What the user sees: "apps 2", "phone", "countries 12", "code", each with " link" behind it
    /// when the messaging app was opened; "closed".
    [[nodiscard]] QByteArray scene() const;
    [[nodiscard]] bool waitForScene(const QByteArray &wanted,
        std::chrono::milliseconds patience = std::chrono::seconds(5)) const;
    [[nodiscard]] static bool waitForLink();

    /// How the service answers a call from now on: an outcome as in its scenario, or a text of its
    /// fault language, where OTHER stands for another host.
    void setOutcome(const QByteArray &call, const json &outcome);
    void setFault(const QByteArray &call, QByteArray text);
    void setDeadline(std::chrono::milliseconds deadline);
    [[nodiscard]] int posts(const QByteArray &call); ///< that came since its outcome was set

    void playInRounds(const Cell &cell);

    Sandbox service; // `server` is another host, where no request may ever come
    Yardstick yardstick;
    std::unique_ptr<ParloquinViewController> other; ///< where a cell has two containers

protected:
    void SetUp() override;
    /// A GET where there is no body.
    json askService(const std::string &path, const json &body = {});

private:
    void play(const Cell &cell);
    bool send(const QString &message);

    std::chrono::milliseconds m_deadline {};
    qsizetype m_awaited = 0; // requests, the last one made included
};
