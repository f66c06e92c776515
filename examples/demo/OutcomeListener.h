#pragma once

#include <QtCore/QPointer>

#include <Parloquin/Parloquin.h>

namespace demo {

class DemoWindow;

/// \brief Carries the kit's outcome from its network thread to the window on the main thread.
///
/// One for each attempt: what an older container still says is told apart by its attempt.
class OutcomeListener : public ParloquinDelegate {
public:
    OutcomeListener(DemoWindow *window, int attempt);

    void verificationDidSucceed(const QString &sessionId) override;
    void verificationDidFail(ParloquinError error) override;

private:
    QPointer<DemoWindow> m_window; // looked at on the main thread only
    int m_attempt;
};

} // namespace demo
