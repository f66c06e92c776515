#include "Parloquin/Platform/DispatchQueue.h"

#include "Parloquin/Platform/MainQueue.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace parloquin {

namespace {

class MainDispatchQueue final : public DispatchQueue {
public:
    void async(std::function<void()> block) override { onMain(std::move(block)); }

    [[nodiscard]] QThread *thread() const override
    {
        return QCoreApplication::instance() ? QCoreApplication::instance()->thread() : nullptr;
    }
};

QThread::Priority priority(QualityOfService qos)
{
    switch (qos) {
    case QualityOfService::userInteractive:
        return QThread::HighestPriority;
    case QualityOfService::userInitiated:
        return QThread::HighPriority;
    case QualityOfService::utility:
        return QThread::LowPriority;
    case QualityOfService::background:
        return QThread::LowestPriority;
    case QualityOfService::standard:
    case QualityOfService::unspecified:
        break;
    }
    return QThread::InheritPriority;
}

} // namespace

DispatchQueue::~DispatchQueue() = default;

std::shared_ptr<DispatchQueue> DispatchQueue::main()
{
    static const auto queue = std::make_shared<MainDispatchQueue>();
    return queue;
}

// Blocks wait here and Qt's event only wakes the thread: the mutex is what orders a block's data
// between the threads.
class SerialQueue::Lane final : public QObject {
public:
    void push(std::function<void()> block)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (m_closed)
                return;
            m_blocks.push_back(std::move(block));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    /// Drops what has not begun; waits for what has, unless it is what calls.
    void close()
    {
        std::deque<std::function<void()>> dropped; // after the lock: blocks may own anything
        std::unique_lock lock(m_mutex);
        m_closed = true;
        dropped.swap(m_blocks);
        if (QThread::currentThread() != thread())
            m_idle.wait(lock, [this] { return !m_running; });
        lock.unlock();
    }

private:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        std::function<void()> block;
        {
            const std::lock_guard lock(m_mutex);
            if (m_blocks.empty())
                return true;
            block = std::move(m_blocks.front());
            m_blocks.pop_front();
            m_running = true;
        }
        block();
        block = {};
        const std::lock_guard lock(m_mutex);
        m_running = false;
        m_idle.notify_all();
        return true;
    }

    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::deque<std::function<void()>> m_blocks;
    bool m_running = false;
    bool m_closed = false;
};

struct SerialQueue::Worker {
    std::unique_ptr<QThread> thread; // none with a target queue
    std::unique_ptr<Lane> lane;

    void finish()
    {
        if (thread) {
            thread->quit();
            thread->wait();
            lane.reset();
            thread.reset();
        } else if (lane && QThread::currentThread() == lane->thread()) {
            lane.reset();
        } else if (lane) {
            lane.release()->deleteLater();
        }
    }

    ~Worker()
    {
        // Never finished: the process is ending on the queue's own thread, which still uses both.
        static_cast<void>(lane.release());
        static_cast<void>(thread.release());
    }
};

SerialQueue::SerialQueue(
    const QString &label, QualityOfService qos, std::shared_ptr<DispatchQueue> target)
    : m_target(std::move(target))
    , m_worker(std::make_shared<Worker>())
{
    m_worker->lane = std::make_unique<Lane>();
    if (m_target) {
        m_worker->lane->moveToThread(m_target->thread());
        return;
    }
    m_worker->thread = std::make_unique<QThread>();
    m_worker->thread->setObjectName(label);
    m_worker->lane->moveToThread(m_worker->thread.get());
    m_worker->thread->start(priority(qos));
}

SerialQueue::~SerialQueue()
{
    m_worker->lane->close();
    if (!isCurrent()) {
        m_worker->finish();
        return;
    }
    // A thread cannot wait for its own end, and the block that runs still stands on the lane.
    if (m_worker->thread)
        m_worker->thread->quit();
    onMain([worker = m_worker] { worker->finish(); });
}

void SerialQueue::async(std::function<void()> block) { m_worker->lane->push(std::move(block)); }

void SerialQueue::sync(const std::function<void()> &block)
{
    if (isCurrent()) {
        block();
        return;
    }
    std::mutex mutex;
    std::condition_variable ended;
    bool isDone = false;
    async([&] {
        block();
        const std::lock_guard lock(mutex);
        isDone = true;
        ended.notify_one(); // under the lock: the waiter's stack goes as soon as it wakes
    });
    std::unique_lock lock(mutex);
    ended.wait(lock, [&] { return isDone; });
}

QThread *SerialQueue::thread() const { return m_worker->lane->thread(); }

} // namespace parloquin
