#include "Parloquin/Transport/UrlSession.h"

#include "Parloquin/Transport/UrlCall.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QPointer>

#include <atomic>
#include <deque>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

namespace parloquin {

struct UrlSessionTask::State {
    std::atomic<bool> handedOver = false;
    // Moved out when the task is handed over: a handler may hold its own task, and would otherwise
    // keep it for ever when the session ends first.
    UrlRequest request;
    UrlSession::Handler handler;
    qint64 maximumBytes = 0;

    QPointer<UrlCall> call; ///< while it is under way; the session's thread only
};

namespace {

constexpr int mostDownloads = 6; // at once: a long list of pictures must not use up the descriptors

} // namespace

struct UrlSession::Private {
    /// Runs the block on the session's thread, later; drops it when the session has ended.
    void post(std::function<void()> block);
    void run(std::promise<void> started);
    void stop();
    /// Starts waiting downloads while there is room for them.
    void startDownloads();

    std::thread thread;
    std::mutex mutex; ///< of `loop`
    QEventLoop *loop = nullptr; ///< the thread's, while it takes blocks

    // The thread's own:
    QObject *calls = nullptr; ///< parent of those under way
    std::deque<QPointer<UrlCall>> waitingDownloads;
    int downloads = 0; ///< under way
};

void UrlSession::Private::post(std::function<void()> block)
{
    const std::lock_guard lock(mutex);
    if (!loop)
        return;
    // Both sides take the lock, before they touch what is handed over: what one thread wrote the
    // other then sees, also in the eyes of a race detector that cannot look into the event queue.
    QMetaObject::invokeMethod(
        loop,
        [block = std::move(block)] {
            {
                const std::lock_guard handedOver(shared().d->mutex);
            }
            block();
        },
        Qt::QueuedConnection);
}

void UrlSession::Private::run(std::promise<void> started)
{
    QObject threadCalls;
    QEventLoop threadLoop;
    calls = &threadCalls;
    loop = &threadLoop;
    started.set_value();
    threadLoop.exec();
}

void UrlSession::Private::startDownloads()
{
    while (downloads < mostDownloads && !waitingDownloads.empty()) {
        const QPointer<UrlCall> call = waitingDownloads.front();
        waitingDownloads.pop_front();
        if (!call)
            continue;
        ++downloads;
        QObject::connect(call, &QObject::destroyed, calls, [this] {
            --downloads;
            startDownloads();
        });
        call->start();
    }
}

void UrlSession::Private::stop()
{
    post([last = loop] { last->quit(); });
    {
        const std::lock_guard lock(mutex);
        loop = nullptr;
    }
    if (!thread.joinable())
        return;
    if (thread.get_id() == std::this_thread::get_id())
        thread.detach(); // a handler has called exit()
    else
        thread.join();
}

UrlSession::UrlSession()
    : d(std::make_unique<Private>())
{
    std::promise<void> started;
    const std::future<void> running = started.get_future();
    d->thread = std::thread(&Private::run, d.get(), std::move(started));
    running.wait();
    // Sockets and timers need the application object: the thread has to end before it does.
    qAddPostRoutine([] { shared().d->stop(); });
}

UrlSession::~UrlSession() { d->stop(); }

UrlSession &UrlSession::shared()
{
    static UrlSession instance;
    return instance;
}

std::shared_ptr<UrlSessionTask> UrlSession::dataTask(
    UrlRequest request, Handler handler, qint64 maximumBytes)
{
    auto task = std::make_shared<UrlSessionTask>(UrlSessionTask());
    task->d = std::make_shared<UrlSessionTask::State>();
    task->d->request = std::move(request);
    task->d->handler = std::move(handler);
    task->d->maximumBytes = maximumBytes;
    return task;
}

void UrlSession::async(std::function<void()> block) { d->post(std::move(block)); }

void UrlSessionTask::resume()
{
    if (d->handedOver.exchange(true))
        return;
    auto &session = *UrlSession::shared().d;
    session.post(
        [&session, state = d, request = std::move(d->request), handler = std::move(d->handler)] {
            state->call = new UrlCall(request, handler, state->maximumBytes, session.calls);
            if (request.body) {
                state->call->start(); // no call ever waits, least of all for pictures
            } else {
                session.waitingDownloads.push_back(state->call);
                session.startDownloads();
            }
        });
}

void UrlSessionTask::cancel()
{
    auto &session = *UrlSession::shared().d;
    if (!d->handedOver.exchange(true)) {
        session.post([handler = std::move(d->handler)] {
            handler({}, {}, { { TransportError::cancelled, QStringLiteral("cancelled") } });
        });
        return;
    }
    session.post([state = d] {
        if (state->call)
            state->call->cancel();
    });
}

} // namespace parloquin
