#include "Parloquin/Platform/SerialQueue.h"

#include "Parloquin/Platform/GLibPointers.h"
#include "Parloquin/Platform/MainQueue.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace parloquin {

using Clock = std::chrono::steady_clock;

namespace {

// Two threads that meet types of GIO for the first time can wait for each other for ever: one holds
// the lock of all classes, as it makes one, and waits for a type that this names, while the other
// makes that type and waits for the lock, to give it an interface. The types that both happens to
// are therefore there before the first of our threads.
void makeTypesThatThreadsWaitFor()
{
    [[maybe_unused]] static const bool once = [] {
        for (const GType type : { G_TYPE_SOCKET_ADDRESS, G_TYPE_SOCKET, G_TYPE_DBUS_CONNECTION })
            g_type_ensure(type);
        return true;
    }();
}

} // namespace

// GLib's context waits, but what crosses threads lies in a list of ours under a lock of ours: a
// library built without the thread checker hides its locks from it, and every block that crosses
// would look like a race.
class SerialQueue::Loop {
public:
    Loop()
        : m_context(g_main_context_new())
    {
        makeTypesThatThreadsWaitFor();
        static GSourceFuncs functions { nullptr, nullptr,
            [](GSource *, GSourceFunc call, gpointer loop) { return call(loop); }, nullptr, nullptr,
            nullptr };
        m_source.reset(g_source_new(&functions, sizeof(GSource)));
        g_source_set_callback(
            m_source.get(),
            [](gpointer loop) -> gboolean {
                static_cast<Loop *>(loop)->runTasks();
                return G_SOURCE_CONTINUE;
            },
            this, nullptr);
        g_source_attach(m_source.get(), m_context.get());
    }
    Q_DISABLE_COPY_MOVE(Loop)

    /// \param owner the queue that it is for
    void push(const void *owner, Clock::time_point due, std::function<void()> block)
    {
        const std::lock_guard lock(m_mutex);
        // Of equal times the one that came first runs first.
        m_tasks.emplace(due, Task { owner, std::move(block) });
        wakeWhenDue();
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
        m_isEnding = true;
        g_main_context_wakeup(m_context.get());
    }

    void run()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_id = std::this_thread::get_id();
        }
        g_main_context_push_thread_default(m_context.get());
        while (!m_isEnding)
            g_main_context_iteration(m_context.get(), TRUE);
        g_main_context_pop_thread_default(m_context.get());
    }

    [[nodiscard]] bool isCurrent() const { return m_id == std::this_thread::get_id(); }

private:
    struct Task {
        const void *owner;
        std::function<void()> block;
    };

    /// Runs what is due by now; what comes due meanwhile lets the watches go first.
    void runTasks()
    {
        const auto now = Clock::now();
        std::unique_lock lock(m_mutex);
        while (!m_isEnding && !m_tasks.empty() && m_tasks.begin()->first <= now) {
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
        wakeWhenDue();
    }

    /// Under the lock.
    void wakeWhenDue()
    {
        using std::chrono::microseconds; // of the clock that GLib reads too
        g_source_set_ready_time(m_source.get(),
            m_tasks.empty()
                ? -1
                : std::chrono::ceil<microseconds>(m_tasks.begin()->first.time_since_epoch())
                      .count());
    }

    const GLibPointer<GMainContext> m_context;
    GLibPointer<GSource> m_source; ///< ready when the next task is due
    std::mutex m_mutex;
    std::condition_variable m_idle;
    std::multimap<Clock::time_point, Task> m_tasks;
    const void *m_running = nullptr;
    std::atomic<bool> m_isEnding = false;
    std::thread::id m_id;
};

/// The thread, which keeps its loop; the queues keep it.
class SerialQueue::Thread {
public:
    Thread(const QString &label, QualityOfService qos)
        : m_loop(std::make_shared<Loop>())
        , m_thread(new std::thread([loop = m_loop, label, qos] {
            ThisThread::introduce(label, qos);
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

} // namespace parloquin
