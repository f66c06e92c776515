#include "Parloquin/Protocol/ParloquinSingleton.h"

#include "Parloquin/Protocol/ParloquinDelegate.h"

#include <QtCore/QCoreApplication>

#include <utility>

namespace parloquin {

ParloquinSingleton::ParloquinSingleton()
{
    // A delegate is often a QObject of the host: it has to go before the application object does.
    qAddPostRoutine([] { shared().setDelegate(nullptr); });
}

ParloquinSingleton &ParloquinSingleton::shared()
{
    static ParloquinSingleton instance;
    return instance;
}

std::shared_ptr<ParloquinDelegate> ParloquinSingleton::delegate() const
{
    const QMutexLocker lock(&m_mutex);
    return m_delegate;
}

void ParloquinSingleton::setDelegate(std::shared_ptr<ParloquinDelegate> delegate)
{
    const QMutexLocker lock(&m_mutex);
    // Swapped, so that the old delegate's destructor runs after the lock is gone: it may call us.
    m_delegate.swap(delegate);
}

} // namespace parloquin
