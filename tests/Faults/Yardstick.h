#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <chrono>
#include <memory>

/// \brief What holds in every cell, whatever the fault. Main thread; one at a time.
///
/// From the constructor on, a heartbeat of 10 ms finds whatever holds the main thread, and what the
/// process writes is captured. It comes out on the real output when the yardstick goes after a
/// failure, or when the program dies.
class Yardstick {
public:
    /// No hold of the main thread may be longer; the time it was ready to run but had no processor
    /// is not counted. Sanitizers slow the kit and Qt down, hence their wider bounds.
    static const std::chrono::milliseconds longestHold;
    /// What a call may take beyond its deadline: a sixtieth, and the time until a thread that is
    /// told so gets the processor.
    static std::chrono::milliseconds slack(std::chrono::milliseconds deadline);

    Yardstick();
    ~Yardstick();
    Q_DISABLE_COPY_MOVE(Yardstick)

    /// While this lives, holds of the main thread are the test's own.
    [[nodiscard]] std::shared_ptr<void> pause() const;

    /// Writes a line to the real output.
    void say(const QByteArray &line) const;

    /// Calls of the service that were made, and those whose completion has run, by the console.
    [[nodiscard]] qsizetype requests() const;
    [[nodiscard]] qsizetype completions() const;
    /// Everything written so far.
    [[nodiscard]] QByteArray output() const;

    /// Forgets what was written and held so far: a long run is judged in parts.
    void beginAnew();
    /// Notes descriptors, threads, QObjects (timers among them) and widgets once they are at rest,
    /// and forgets the holds so far.
    void noteResources();
    /// \return what there is beyond that; empty when all has come back, if need be after a while
    [[nodiscard]] QString leftOver() const;
    /// Whether the main thread was held too long since then.
    [[nodiscard]] bool wasHeld() const;
    /// \param secrets what may stand in the fixed lines of the console only
    /// \return whatever else does not hold, a text each
    [[nodiscard]] QStringList findings(const QList<QByteArray> &secrets) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
