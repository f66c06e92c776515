#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <array>
#include <chrono>
#include <memory>

/// \brief What holds in every cell, whatever the fault. Main thread; one at a time.
///
/// From the constructor on, a heartbeat of 10 ms finds whatever holds the main thread, and what the
/// process writes is captured. It comes out on the real output when the yardstick goes after a
/// failure, or when the program dies.
class Yardstick {
public:
    /// What a call may take beyond its deadline.
    static std::chrono::milliseconds slack(std::chrono::milliseconds deadline);

    Yardstick();
    ~Yardstick();
    Q_DISABLE_COPY_MOVE(Yardstick)

    /// While this lives, holds of the main thread are the test's own.
    [[nodiscard]] std::shared_ptr<void> pause();

    [[nodiscard]] static QByteArray output(); ///< so far
    /// Calls of the service that were made, and those whose completion has run, by the output.
    [[nodiscard]] static qsizetype requests();
    [[nodiscard]] static qsizetype completions();

    /// Forgets what was written and held so far: a long run is judged in parts.
    void beginAnew();
    /// Notes descriptors, threads, QObjects (timers among them) and widgets once they are at rest,
    /// and forgets the holds so far.
    void noteResources();
    /// \return what there is beyond that; empty when all has come back, if need be after a while
    [[nodiscard]] QString leftOver() const;
    /// Whether the main thread was held too long since then.
    [[nodiscard]] bool wasHeld() const;
    /// \return what else does not hold. \param secrets may stand in fixed lines of the console only
    [[nodiscard]] QStringList findings(const QList<QByteArray> &secrets) const;

private:
    void beat(bool counts = true);

    int m_schedstat = -1;
    QTimer m_heartbeat;
    QElapsedTimer m_sinceBeat;
    qint64 m_waitedBefore = 0; // for the processor
    qint64 m_longestHold = 0; // ns
    std::array<int, 4> m_noted {};
    int m_objectsThen = 0;
};
