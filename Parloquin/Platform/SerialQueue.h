#pragma once

#include "Parloquin/Platform/DispatchQueue.h"
#include "Parloquin/Platform/ThisThread.h"

#include <chrono>

namespace parloquin {

/// \brief A queue with a thread of its own, or sharing that of a target queue.
///
/// The thread's own default GMainContext is what waits: sources and asynchronous operations of GLib
/// that a block starts call back on the queue's thread, between the blocks.
///
/// Destroying the queue waits for the block that runs and drops those that have not begun; a block
/// may itself destroy its queue, whose thread then ends behind it.
class SerialQueue final : public DispatchQueue {
public:
    explicit SerialQueue(const QString &label, QualityOfService qos = QualityOfService::standard,
        const std::shared_ptr<SerialQueue> &target = {});
    ~SerialQueue() override;
    Q_DISABLE_COPY_MOVE(SerialQueue)

    void async(std::function<void()> block) override;
    void asyncAfter(std::chrono::milliseconds delay, std::function<void()> block);

    /// \brief Runs the block on the queue and waits for its end; from the queue itself at once.
    void sync(const std::function<void()> &block);

    [[nodiscard]] bool isCurrent() const;

private:
    class Loop;
    class Thread;

    std::shared_ptr<Thread> m_thread;
};

} // namespace parloquin
