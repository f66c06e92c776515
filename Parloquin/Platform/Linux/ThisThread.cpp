#include "Parloquin/Platform/ThisThread.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace parloquin {

namespace {

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

void ThisThread::introduce(const QString &label, QualityOfService qos)
{
    pthread_setname_np(pthread_self(), label.right(15).toLatin1().constData()); // has room for 15
    if (const int nice = niceness(qos); nice != 0)
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), nice);
}

} // namespace parloquin
