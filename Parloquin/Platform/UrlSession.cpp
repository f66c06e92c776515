#include "Parloquin/Platform/UrlSession.h"

#include "Parloquin/Platform/UrlCall.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtNetwork/QNetworkAccessManager>

#include <atomic>
#include <chrono>
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

/// Makes a manager whose end never holds the caller up for long: its thread may be busy with a peer
/// that sends for ever, and the stack would wait for it for seconds.
std::shared_ptr<QNetworkAccessManager> makeManager()
{
    return { new QNetworkAccessManager, [](QNetworkAccessManager *manager) {
                manager->moveToThread(nullptr);
                std::packaged_task<void()> end([manager] { delete manager; });
                const std::future<void> ended = end.get_future();
                std::thread(std::move(end)).detach();
                ended.wait_for(std::chrono::milliseconds(200));
            } };
}

} // namespace

struct UrlSession::Private {
    /// Runs the block on the session's thread, later; drops it when the session has ended.
    void post(std::function<void()> block);
    void run(std::promise<void> started);
    void stop();
    /// Sends a call by one of the managers, which is replaced for later calls when it is spoilt.
    void start(UrlCall &call, std::shared_ptr<QNetworkAccessManager> &manager);

    std::thread thread;
    std::mutex mutex; ///< of `loop`
    QEventLoop *loop = nullptr; ///< the thread's, while it takes blocks
    std::shared_ptr<QNetworkAccessManager> uploads; ///< the thread's
    std::shared_ptr<QNetworkAccessManager> downloads; ///< the thread's
    QObject *calls = nullptr; ///< the thread's; parent of those under way
};

void UrlSession::Private::post(std::function<void()> block)
{
    const std::lock_guard lock(mutex);
    if (!loop)
        return;
    // Both sides take the lock: what one thread wrote before the hand-over the other then sees,
    // also in the eyes of a race detector that cannot look into the event queue.
    QMetaObject::invokeMethod(
        loop,
        [this, block = std::move(block)] {
            {
                const std::lock_guard handedOver(mutex);
            }
            block();
        },
        Qt::QueuedConnection);
}

void UrlSession::Private::run(std::promise<void> started)
{
    // A manager opens six connections to a host and lets further requests wait. Two of them, so
    // that slow pictures never stand in a call's way.
    uploads = makeManager();
    downloads = makeManager();
    {
        QObject threadCalls; // goes before the managers: its calls abort their replies
        QEventLoop threadLoop;
        calls = &threadCalls;
        loop = &threadLoop;
        started.set_value();
        threadLoop.exec();
    }
    uploads.reset();
    downloads.reset();
}

void UrlSession::Private::start(UrlCall &call, std::shared_ptr<QNetworkAccessManager> &manager)
{
    call.start(manager, [&manager, used = std::weak_ptr(manager)] {
        if (manager == used.lock())
            manager = makeManager();
    });
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
            session.start(*state->call, request.body ? session.uploads : session.downloads);
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
