#include "DemoWindow.h"

#include "Look.h"
#include "OutcomePage.h"
#include "Sheet.h"
#include "StartPage.h"

#include <QtGui/QCloseEvent>
#include <QtGui/QScreen>

#include <algorithm>
#include <utility>

namespace demo {

namespace {

constexpr QSize phone { 390, 844 }; // px

} // namespace

DemoWindow::DemoWindow()
    : m_start(new StartPage(m_backEnd, this))
    , m_outcome(new OutcomePage(this))
    , m_outcomeSheet(new Sheet(m_outcome, Sheet::Edge::trailing))
{
    setWindowTitle(tr("Parloquin demo"));
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Look::page);
    setPalette(colours);
    m_outcome->hide();
    setMinimumSize(320, 480);
    resize(phone.boundedTo(screen()->availableSize()));

    connect(m_start, &StartPage::verifyTapped, this, &DemoWindow::verify);
    connect(m_outcome, &OutcomePage::againTapped, this, &DemoWindow::verify);
    connect(m_outcome, &OutcomePage::doneTapped, this, &DemoWindow::backToStart);
}

DemoWindow::~DemoWindow() = default;

void DemoWindow::verify()
{
    if (m_kit)
        return;
    const ParloquinOptions options(ParloquinEnvironment::debug, true,
        { QColor(Qt::blue), ParloquinStatusBarStyle::lightContent });
    m_kit = Parloquin(options).viewControllerForLogin();
    m_signals = new ParloquinSignals(m_kit);
    connect(m_signals, &ParloquinSignals::succeeded, this, &DemoWindow::verified);
    connect(m_signals, &ParloquinSignals::failed, this, &DemoWindow::failed);
    m_kit->setParent(this);
    m_kit->installEventFilter(this);
    m_kitSheet = new Sheet(m_kit, Sheet::Edge::bottom);
    m_clock.start();
    // Hidden once covered: nothing below can be reached by Tab or costs a repaint.
    m_kitSheet->slideIn([this] {
        // First the focus: from what hides it would go on as by a Tab, and the kit would ring.
        m_kit->setFocus();
        m_start->hide();
        m_outcome->hide();
    });
}

void DemoWindow::verified(const QString &sessionId)
{
    const auto time = taken();
    m_outcome->showAsking();
    m_outcomeSheet->cover();
    dismissKit();
    m_backEnd.confirm(sessionId, [this, sessionId, time, now = m_attempt](const QString &fault) {
        if (now != m_attempt)
            return;
        fault.isEmpty() ? m_outcome->showVerified(sessionId, time)
                        : m_outcome->showNotConfirmed(fault, time);
    });
}

void DemoWindow::failed(ParloquinSignals::Error error)
{
    m_outcome->showFailed(error, taken());
    m_outcomeSheet->cover();
    dismissKit();
}

void DemoWindow::dismissKit()
{
    if (!m_kit)
        return;
    ++m_attempt; // what the back end says of an earlier presentation comes too late
    m_signals->disconnect(this); // and so does what this one still reports
    m_kitSheet->slideOut([kit = std::exchange(m_kit, nullptr)] { kit->deleteLater(); });
    m_kitSheet = nullptr;
}

void DemoWindow::backToStart()
{
    m_start->show();
    m_outcomeSheet->slideOut([this] { m_outcome->hide(); });
}

bool DemoWindow::isAtRest() const
{
    const auto sheets = findChildren<Sheet *>();
    return std::none_of(sheets.begin(), sheets.end(), [](const Sheet *sheet) {
        return sheet->isMoving();
    }) && (!m_kit || m_kit->property("atRest").toBool());
}

bool DemoWindow::eventFilter(QObject *watched, QEvent *event)
{
    // The kit's Close button closes the container; here it slides away first.
    if (watched == m_kit && event->type() == QEvent::Close) {
        event->ignore();
        m_outcome->hide();
        m_start->show();
        dismissKit();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void DemoWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_start->resize(size());
}

std::chrono::seconds DemoWindow::taken() const
{
    return std::chrono::seconds((m_clock.elapsed() + 500) / 1000);
}

} // namespace demo
