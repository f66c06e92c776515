#include "Parloquin/Adapters/ParloquinSignals.h"

#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Reference/ParloquinViewController.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QThread>

#include <utility>

namespace {

/// Looked at, called and destroyed on the main thread only.
struct Functions {
    QPointer<QObject> context;
    std::function<void(const QString &)> succeeded;
    std::function<void(ParloquinError)> failed;
};

/// \brief Takes every call, and its own end, to the main thread.
class HoppingDelegate : public ParloquinDelegate {
public:
    explicit HoppingDelegate(std::shared_ptr<Functions> functions)
        : m_functions(std::move(functions))
    {
    }
    HoppingDelegate(const HoppingDelegate &) = delete;
    HoppingDelegate &operator=(const HoppingDelegate &) = delete;
    ~HoppingDelegate() override
    {
        const QCoreApplication *const app = QCoreApplication::instance();
        if (app && QThread::currentThread() != app->thread())
            onMain([last = std::move(m_functions)] {});
    }

    void verificationDidSucceed(const QString &sessionId) override
    {
        onMain([functions = m_functions, sessionId] {
            if (functions->context && functions->succeeded)
                functions->succeeded(sessionId);
        });
    }
    void verificationDidFail(ParloquinError error) override
    {
        onMain([functions = m_functions, error] {
            if (functions->context && functions->failed)
                functions->failed(error);
        });
    }

private:
    // Queued also from the main thread: a call that fails at once would be heard before it returns.
    template <class Call> static void onMain(Call call)
    {
        if (QCoreApplication *const app = QCoreApplication::instance())
            QMetaObject::invokeMethod(app, std::move(call), Qt::QueuedConnection);
    }

    std::shared_ptr<Functions> m_functions;
};

} // namespace

std::shared_ptr<ParloquinDelegate> parloquinDelegate(QObject *context,
    std::function<void(const QString &)> succeeded, std::function<void(ParloquinError)> failed)
{
    return std::make_shared<HoppingDelegate>(std::make_shared<Functions>(
        Functions { context, std::move(succeeded), std::move(failed) }));
}

ParloquinSignals::ParloquinSignals(ParloquinViewController *container, QObject *parent)
    : QObject(parent ? parent : container)
{
    container->setKitDelegate(parloquinDelegate(
        this, [this](const QString &sessionId) { Q_EMIT succeeded(sessionId); },
        [this](ParloquinError error) { Q_EMIT failed(static_cast<Error>(error)); }));
    container->installEventFilter(this);
}

ParloquinSignals::~ParloquinSignals() = default;

bool ParloquinSignals::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        // Later, as whoever sees the event after us may refuse it.
        const QPointer<QWidget> container = qobject_cast<QWidget *>(watched);
        QMetaObject::invokeMethod(
            this,
            [this, container] {
                if (!container || !container->isVisible())
                    Q_EMIT closed();
            },
            Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
