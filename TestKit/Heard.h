#pragma once

#include "Parloquin/Protocol/ParloquinDelegate.h"

#include <QtCore/QList>
#include <QtCore/QMutex>

#include <chrono>
#include <optional>

namespace ParloquinTest {

/// \brief A delegate that waits: for a test of the container itself. An app's tests rather look at
/// what the app makes of the outcome.
///
/// Hears on any thread; ask it on the main thread. Give it to the container by `std::make_shared`.
/// \since 1.1
class Heard : public ParloquinDelegate {
public:
    Heard();
    ~Heard() override;

    /// \brief Waits for the next outcome that was not waited for yet.
    /// \return whether it came in time and is a success, which sessionId() then tells; says on
    /// standard error what came instead
    [[nodiscard]] bool success(std::chrono::milliseconds patience = std::chrono::seconds(10));
    /// \brief Likewise for a failure with that reason.
    [[nodiscard]] bool failure(
        ParloquinError error, std::chrono::milliseconds patience = std::chrono::seconds(10));

    /// \return of the success last waited for; empty before
    [[nodiscard]] QString sessionId() const;
    /// \return how many outcomes came so far
    [[nodiscard]] int count() const;

    void verificationDidSucceed(const QString &sessionId) override;
    void verificationDidFail(ParloquinError error) override;

private:
    struct Outcome {
        std::optional<ParloquinError> error;
        QString sessionId;
    };
    [[nodiscard]] bool waits(
        std::optional<ParloquinError> wanted, std::chrono::milliseconds patience);
    void hear(const Outcome &outcome);

    mutable QMutex m_mutex; // of the outcomes
    QList<Outcome> m_outcomes;
    int m_taken = 0;
    QString m_sessionId;
};

} // namespace ParloquinTest
