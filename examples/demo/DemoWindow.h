#pragma once

#include "BackEnd.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <Parloquin/Adapters/ParloquinSignals.h>
#include <Parloquin/Parloquin.h>

namespace demo {

class OutcomePage;
class Sheet;
class StartPage;

/// \brief The host: its start page, the kit over it, and the page that tells the outcome.
///
/// Main thread only.
class DemoWindow : public QWidget {
    Q_OBJECT
public:
    DemoWindow();
    ~DemoWindow() override;

    [[nodiscard]] BackEnd &backEnd() { return m_backEnd; }

    /// \brief Presents the kit. Does nothing while it is there already.
    void verify();

    /// \brief Whether nothing slides, here or in the kit: what is seen may be tapped.
    [[nodiscard]] bool isAtRest() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// The kit has a session id; what counts is what the back end says of it.
    void verified(const QString &sessionId);
    void failed(ParloquinSignals::Error error);
    void dismissKit();
    void backToStart();
    [[nodiscard]] std::chrono::seconds taken() const;

    BackEnd m_backEnd;
    StartPage *m_start;
    OutcomePage *m_outcome;
    Sheet *m_outcomeSheet;
    QPointer<ParloquinViewController> m_kit;
    ParloquinSignals *m_signals = nullptr; // the kit's; go with it, as does its sheet
    Sheet *m_kitSheet = nullptr;
    int m_attempt = 0;
    QElapsedTimer m_clock;
};

} // namespace demo
