#include "Parloquin/Platform/SerialQueue.h"

#include "Parloquin/Platform/Fatal.h"
#include "Parloquin/Platform/MainQueue.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace parloquin {

namespace {

using Clock = std::chrono::steady_clock;

// Threads of one scheduling class differ by their niceness alone; only the system may lower it.
int niceness(QualityOfService qos)
{
    switch (qos) {
    case QualityOfService::utility:
        return 5;
    case QualityOfService::background:
        return 10;
    case QualityOfService::userInteractive:
    case QualityOfService::userInitiated:
    case QualityOfService::standard:
    case QualityOfService::unspecified:
        break;
    }
    return 0;
}

} // namespace

// Not Qt's event loop: a library built without the thread checker hides its locks from it, and
// every block that crosses threads would look like a race.
class SerialQueue::Loop {
public:
    Loop()
        : m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (m_wake < 0)
            fatal(
                QStringLiteral("no descriptor is left for a queue; close some or raise the limit"));
    }
    ~Loop() { ::close(m_wake); }
    Q_DISABLE_COPY_MOVE(Loop)

    /// \param owner the queue that it is for
    void push(const void *owner, Clock::time_point due, std::function<void()> block)
    {
        {
            const std::lock_guard lock(m_mutex);
            // Of equal times the one that came first runs first.
            m_tasks.emplace(due, Task { owner, std::move(block) });
        }
        wake();
    }

    /// Drops what has not begun; waits for what has, unless it is what calls.
    void remove(const void *owner)
    {
        std::vector<Task> dropped; // ends after the lock: blocks may own anything
        std::unique_lock lock(m_mutex);
        for (auto task = m_tasks.begin(); task != m_tasks.end();) {
            if (task->second.owner == owner) {
                dropped.push_back(std::move(task->second));
                task = m_tasks.erase(task);
            } else {
                ++task;
            }
        }
        if (!isCurrent())
            m_idle.wait(lock, [&] { return m_running != owner; });
        lock.unlock();
    }

    void end()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        wake();
    }

    void run()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_id = std::this_thread::get_id();
        }
        while (runTasks())
            waitForEvents();
        m_watches.clear();
    }

    [[nodiscard]] bool isCurrent() const { return m_id == std::this_thread::get_id(); }

    std::shared_ptr<void> watch(int descriptor, std::function<void()> readable)
    {
        const auto entry = std::make_shared<Watch>(Watch { descriptor, std::move(readable) });
        m_watches.push_back(entry);
        return entry;
    }

private:
    struct Task {
        const void *owner;
        std::function<void()> block;
    };
    struct Watch {
        int descriptor;
        std::function<void()> readable;
    };

    void wake() const
    {
        const quint64 one = 1;
        // It fails only while the counter is full, and then the loop wakes in any case.
        static_cast<void>(!::write(m_wake, &one, sizeof(one)));
    }

    /// \return false at the end
    bool runTasks()
    {
        std::unique_lock lock(m_mutex);
        while (!m_isEnding && !m_tasks.empty() && m_tasks.begin()->first <= Clock::now()) {
            Task task = std::move(m_tasks.begin()->second);
            m_tasks.erase(m_tasks.begin());
            m_running = task.owner;
            lock.unlock();
            task.block();
            task.block = {};
            lock.lock();
            m_running = nullptr;
            m_idle.notify_all();
        }
        return !m_isEnding;
    }

    void waitForEvents()
    {
        std::erase_if(m_watches, [](const auto &watch) { return watch.expired(); });
        const auto watches = m_watches; // a block may add some
        std::vector<pollfd> polled { { m_wake, POLLIN, 0 } };
        for (const auto &weak : watches) {
            const auto watch = weak.lock();
            polled.push_back({ watch ? watch->descriptor : -1, POLLIN, 0 });
        }
        if (::poll(polled.data(), polled.size(), patience()) <= 0)
            return;
        quint64 count = 0;
        static_cast<void>(!::read(m_wake, &count, sizeof(count)));
        for (std::size_t i = 0; i < watches.size(); ++i) {
            const auto watch = watches[i].lock();
            if (watch && polled[i + 1].revents != 0)
                watch->readable();
        }
    }

    /// \return milliseconds until the next block is due
    int patience()
    {
        const std::lock_guard lock(m_mutex);
        if (m_isEnding)
            return 0;
        if (m_tasks.empty())
            return -1;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(m_tasks.begin()->first - Clock::now());
        return static_cast<int>(std::max<qint64>(0, left.count()));
    }

    int m_wake;
    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::multimap<Clock::time_point, Task> m_tasks;
    const void *m_running = nullptr;
    bool m_isEnding = false;
    std::thread::id m_id;
    std::vector<std::weak_ptr<Watch>> m_watches; // on the thread
};

/// The thread, which keeps its loop; the queues keep it.
class SerialQueue::Thread {
public:
    Thread(const QString &label, QualityOfService qos)
        : m_loop(std::make_shared<Loop>())
        , m_thread(new std::thread([loop = m_loop, nice = niceness(qos),
                                       name = label.right(15).toLatin1()] {
            pthread_setname_np(pthread_self(), name.constData()); // 15 characters at most
            if (nice != 0)
                ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), nice);
            loop->run();
        }),
              [](std::thread *thread) {
                  if (thread->joinable())
                      thread->detach();
                  delete thread;
              })
    {
        std::mutex mutex;
        std::condition_variable started;
        bool isStarted = false;
        m_loop->push(this, Clock::now(), [&] {
            const std::lock_guard lock(mutex);
            isStarted = true;
            started.notify_one();
        });
        std::unique_lock lock(mutex);
        started.wait(lock, [&] { return isStarted; });
    }

    ~Thread()
    {
        m_loop->end();
        if (!m_loop->isCurrent()) {
            m_thread->join();
            return;
        }
        // A thread cannot wait for its own end. Without a main queue it just runs out.
        onMain([thread = m_thread] { thread->join(); });
    }
    Q_DISABLE_COPY_MOVE(Thread)

    [[nodiscard]] Loop &loop() const { return *m_loop; }

private:
    std::shared_ptr<Loop> m_loop;
    std::shared_ptr<std::thread> m_thread;
};

SerialQueue::SerialQueue(
    const QString &label, QualityOfService qos, const std::shared_ptr<SerialQueue> &target)
    : m_thread(target ? target->m_thread : std::make_shared<Thread>(label, qos))
{
}

SerialQueue::~SerialQueue() { m_thread->loop().remove(this); }

void SerialQueue::async(std::function<void()> block)
{
    m_thread->loop().push(this, Clock::now(), std::move(block));
}

void SerialQueue::asyncAfter(std::chrono::milliseconds delay, std::function<void()> block)
{
    m_thread->loop().push(this, Clock::now() + delay, std::move(block));
}

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

bool SerialQueue::isCurrent() const { return m_thread->loop().isCurrent(); }

std::shared_ptr<void> SerialQueue::watch(int descriptor, std::function<void()> readable)
{
    return m_thread->loop().watch(descriptor, std::move(readable));
}

} // namespace parloquin
