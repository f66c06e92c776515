#include "Parloquin/Transport/UrlSession.h"

#include "Parloquin/Platform/SerialQueue.h"
#include "Parloquin/Transport/UrlCall.h"

#include <QtCore/QCoreApplication>

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace parloquin {

struct UrlSessionTask::State {
    std::atomic<bool> handedOver = false;
    // Moved out when the task is handed over: a handler may hold its own task, and would otherwise
    // keep it for ever when the session ends first.
    UrlRequest request;
    UrlSession::Handler handler;
    qint64 maximumBytes = 0;

    std::weak_ptr<UrlCall> call; ///< while it is under way; the session's thread only
};

namespace {

constexpr int mostDownloads = 6; // at once: a long list of pictures must not use up the descriptors

} // namespace

struct UrlSession::Private {
    /// Runs the block on the session's thread, later; drops it when the session has ended.
    void post(std::function<void()> block);
    void stop();
    std::shared_ptr<UrlCall> add(UrlRequest request, Handler handler, qint64 maximumBytes);
    /// Starts waiting downloads while there is room for them.
    void startDownloads();

    std::mutex mutex; ///< of `queue`
    std::unique_ptr<SerialQueue> queue = std::make_unique<SerialQueue>(QStringLiteral("session"));

    // The thread's own:
    std::vector<std::shared_ptr<UrlCall>> calls; ///< under way
    std::deque<std::weak_ptr<UrlCall>> waitingDownloads;
    std::vector<const UrlCall *> downloads; ///< under way
};

void UrlSession::Private::post(std::function<void()> block)
{
    const std::lock_guard lock(mutex);
    if (queue)
        queue->async(std::move(block));
}

void UrlSession::Private::stop()
{
    std::unique_ptr<SerialQueue> last;
    {
        const std::lock_guard lock(mutex);
        last = std::move(queue);
    }
    if (last)
        last->sync([this] { calls.clear(); });
}

std::shared_ptr<UrlCall> UrlSession::Private::add(
    UrlRequest request, Handler handler, qint64 maximumBytes)
{
    return calls.emplace_back(std::make_shared<UrlCall>(
        std::move(request), std::move(handler), maximumBytes, [this](const UrlCall *ended) {
            std::erase_if(calls, [ended](const auto &call) { return call.get() == ended; });
            std::erase(downloads, ended);
            post([this] { startDownloads(); });
        }));
}

void UrlSession::Private::startDownloads()
{
    while (downloads.size() < mostDownloads && !waitingDownloads.empty()) {
        const auto call = waitingDownloads.front().lock();
        waitingDownloads.pop_front();
        if (!call)
            continue;
        downloads.push_back(call.get());
        call->start();
    }
}

UrlSession::UrlSession()
    : d(std::make_unique<Private>())
{
    // What handlers of the host touch may need the application object: the thread ends before it.
    qAddPostRoutine([] { shared().d->stop(); });
    d->post(UrlCall::prepare);
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

void UrlSessionTask::resume()
{
    if (d->handedOver.exchange(true))
        return;
    auto &session = *UrlSession::shared().d;
    session.post(
        [&session, state = d, request = std::move(d->request), handler = std::move(d->handler)] {
            const auto call = session.add(request, handler, state->maximumBytes);
            state->call = call;
            if (request.body) {
                call->start(); // no call ever waits, least of all for pictures
            } else {
                session.waitingDownloads.push_back(call);
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
        if (const auto call = state->call.lock())
            call->cancel();
    });
}

} // namespace parloquin
