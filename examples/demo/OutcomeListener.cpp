#include "OutcomeListener.h"

#include "DemoWindow.h"

#include <QtWidgets/QApplication>

namespace demo {

OutcomeListener::OutcomeListener(DemoWindow *window, int attempt)
    : m_window(window)
    , m_attempt(attempt)
{
}

// The application is the context of both hops, not the window: it outlives the kit's thread, while
// the window may be on its way out as the outcome arrives.

void OutcomeListener::verificationDidSucceed(const QString &sessionId)
{
    QMetaObject::invokeMethod(qApp, [window = m_window, attempt = m_attempt, sessionId] {
        if (window)
            window->verified(attempt, sessionId);
    });
}

void OutcomeListener::verificationDidFail(ParloquinError error)
{
    QMetaObject::invokeMethod(qApp, [window = m_window, attempt = m_attempt, error] {
        if (window)
            window->failed(attempt, error);
    });
}

} // namespace demo
