#include "Parloquin/Platform/MainQueue.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>

#include <mutex>
#include <utility>

namespace parloquin {

void onMain(std::function<void()> block)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return;
    // Both sides take the lock: what one thread wrote before the hand-over the other then sees,
    // also in the eyes of a race detector that cannot look into the event queue.
    static std::mutex handOver;
    const std::lock_guard lock(handOver);
    QMetaObject::invokeMethod(
        app,
        [block = std::move(block)] {
            {
                const std::lock_guard handedOver(handOver);
            }
            block();
        },
        Qt::QueuedConnection);
}

void onMainAfter(std::chrono::milliseconds delay, QObject *owner, std::function<void()> block)
{
    QTimer::singleShot(delay, owner, std::move(block));
}

} // namespace parloquin
