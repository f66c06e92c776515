#pragma once

#include <QtCore/QString>
#include <QtCore/QThread>

#include <functional>
#include <memory>

namespace parloquin {

/// How urgent the work of a queue is.
enum class QualityOfService {
    userInteractive,
    userInitiated,
    standard,
    utility,
    background,
    unspecified,
};

/// \brief Runs blocks one after another, in the order they were sent, on one thread.
class DispatchQueue {
public:
    DispatchQueue() = default;
    virtual ~DispatchQueue();
    Q_DISABLE_COPY_MOVE(DispatchQueue)

    /// \brief The main thread, as onMain() reaches it.
    [[nodiscard]] static std::shared_ptr<DispatchQueue> main();

    /// Any thread; returns at once.
    virtual void async(std::function<void()> block) = 0;

    /// Where the blocks run.
    [[nodiscard]] virtual QThread *thread() const = 0;
};

/// \brief A queue with a thread and an event loop of its own, or borrowing those of a target queue.
///
/// Objects that a block makes live on that thread and get their events there. Destroying the queue
/// waits for the block that runs and drops those that have not begun; a block may itself destroy
/// its queue, whose thread then ends behind it.
class SerialQueue final : public DispatchQueue {
public:
    explicit SerialQueue(const QString &label, QualityOfService qos = QualityOfService::standard,
        std::shared_ptr<DispatchQueue> target = {});
    ~SerialQueue() override;
    Q_DISABLE_COPY_MOVE(SerialQueue)

    void async(std::function<void()> block) override;

    /// \brief Runs the block on the queue and waits for its end; from the queue itself at once.
    void sync(const std::function<void()> &block);

    [[nodiscard]] QThread *thread() const override;
    [[nodiscard]] bool isCurrent() const { return QThread::currentThread() == thread(); }

private:
    class Lane;
    struct Worker;

    std::shared_ptr<DispatchQueue> m_target;
    std::shared_ptr<Worker> m_worker;
};

} // namespace parloquin
