#include "Parloquin/Platform/MainQueue.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>

#include <utility>

namespace parloquin {

void onMain(std::function<void()> block)
{
    if (QCoreApplication *app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(block), Qt::QueuedConnection);
}

void onMainAfter(std::chrono::milliseconds delay, QObject *owner, std::function<void()> block)
{
    QTimer::singleShot(delay, owner, std::move(block));
}

} // namespace parloquin
