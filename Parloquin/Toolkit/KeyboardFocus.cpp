#include "Parloquin/Toolkit/KeyboardFocus.h"

#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/TableView.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QFocusEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMdiSubWindow>

namespace parloquin {

namespace {

bool takesTab(const QWidget *widget) { return (widget->focusPolicy() & Qt::TabFocus) != 0; }

// The screen's controls, in the order in which Tab finds them.
QList<QWidget *> controlsOf(Screen *screen)
{
    QList<QWidget *> controls;
    for (auto *widget = screen->nextInFocusChain(); widget != screen;
         widget = widget->nextInFocusChain()) {
        if (takesTab(widget) && screen->isAncestorOf(widget))
            controls.append(widget);
    }
    return controls;
}

bool showsRing(const QWidget *focused)
{
    if (const auto *table = qobject_cast<const TableView *>(focused))
        return table->hasKeyboardFocus();
    const auto *tapped = qobject_cast<const Tappable *>(focused);
    return tapped && tapped->hasKeyboardFocus();
}

}

KeyboardFocus::KeyboardFocus(QWidget *stack, QWidget *stage, QWidget *bar)
    : QObject(stack)
    , m_stack(stack)
    , m_stage(stage)
    , m_bar(bar)
{
    m_stack->setFocusProxy(m_stage);
    m_stage->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *before, QWidget *focused) {
        follow(focused);
        hush(before, focused);
        if (!focused)
            reclaim();
    });
}

void KeyboardFocus::hush(const QWidget *before, QWidget *focused)
{
    // A host that hides what had the focus leaves it to Qt, which goes on as by Tab: nobody pressed
    // a key, so nothing rings.
    if (!before || before->isVisible() || !focused || !m_stack->isAncestorOf(focused)
        || m_stack->isAncestorOf(before) || !showsRing(focused))
        return;
    park();
    focused->setFocus(Qt::OtherFocusReason);
}

// Inside, the proxy is what has the focus. Seen from outside it is the stage, which takes no Tab:
// by Tab one comes to the first control, and not by way of the proxy to the last one over and over.
void KeyboardFocus::follow(QWidget *focused)
{
    if (focused && focused->window() == m_stack->window())
        m_holds = m_stack->isAncestorOf(focused);
    if (!focused || !m_stack->isAncestorOf(focused)) {
        if (focused)
            m_stack->setFocusProxy(m_stage);
        Q_EMIT left();
        return;
    }
    watchFrame();
    // What else lies in the stack covers it for a while and has nothing to give back.
    if (m_stage->isAncestorOf(focused) || m_bar->isAncestorOf(focused)) {
        m_last = focused;
        m_stack->setFocusProxy(focused);
    }
}

// A sub window that becomes active again gives the keyboard away by how its frame got it last: by
// Tab, however long ago, and the first control or the last has it, not the one that had it.
void KeyboardFocus::watchFrame()
{
    auto *around = m_stack->parentWidget();
    while (around && !qobject_cast<QMdiSubWindow *>(around))
        around = around->parentWidget();
    auto *const frame = static_cast<QMdiSubWindow *>(around);
    if (!frame)
        return;
    // Each time: a host may move all of the area to another window.
    if (auto *const window = m_stack->window()->windowHandle())
        window->installEventFilter(this);
    if (frame == m_frame)
        return;
    m_frame = frame;
    // By a key one is to see where the keys go; else one knows. The frame gives no reason.
    const auto ring = [this] {
        auto *const focused = QApplication::focusWidget();
        if (!m_stack->isAncestorOf(focused) || qobject_cast<QLineEdit *>(focused))
            return;
        // It has it already, and readers have said so.
        QFocusEvent byKey(QEvent::FocusIn, Qt::TabFocusReason);
        QCoreApplication::sendEvent(focused, &byKey);
    };
    connect(frame, &QMdiSubWindow::aboutToActivate, this, [this, frame, ring] {
        QFocusEvent anew(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
        QCoreApplication::sendEvent(frame, &anew);
        if (m_byKey) // once the frame has given it
            QMetaObject::invokeMethod(this, ring, Qt::QueuedConnection);
    });
}

// Disabled with all of the host's window, or deleted, what had the keyboard leaves it to nobody.
void KeyboardFocus::reclaim()
{
    const auto giveBack = [this] {
        if (m_holds && !m_stack->window()->focusWidget() && m_stack->isVisible()
            && m_stack->isEnabled())
            m_stage->setFocus(Qt::PopupFocusReason); // with its ring, if it had one
    };
    QMetaObject::invokeMethod(this, giveBack, Qt::QueuedConnection);
}

bool KeyboardFocus::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_stage) {
        const auto type = event->type();
        if (type == QEvent::ShortcutOverride || type == QEvent::KeyPress
            || type == QEvent::KeyRelease) {
            m_byKey = true;
            QMetaObject::invokeMethod(
                this, [this] { m_byKey = false; }, Qt::QueuedConnection);
        }
        return false;
    }
    // The host gives the keyboard to the whole.
    if (event->type() == QEvent::EnabledChange)
        reclaim();
    if (event->type() == QEvent::FocusIn && !m_parking && m_screen) {
        if (!m_last || !m_last->isVisible() || !m_last->isEnabled())
            m_last = target(m_screen);
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        // With its ring, if it had one.
        m_last->setFocus(reason == Qt::OtherFocusReason ? Qt::PopupFocusReason : reason);
    }
    return QObject::eventFilter(watched, event);
}

bool KeyboardFocus::isOurs() const
{
    const auto *window = m_stack->window();
    const auto *focused = window->focusWidget();
    // A window that takes no focus has it for want of anyone, as a sub window around us; a host's
    // canvas means it.
    const bool unclaimed = (focused == window && window->focusPolicy() == Qt::NoFocus)
        || (qobject_cast<const QMdiSubWindow *>(focused) && focused->isAncestorOf(m_stack));
    return !focused || unclaimed || m_stack->isAncestorOf(focused);
}

bool KeyboardFocus::leave(Screen *screen)
{
    auto *focused = m_last.data();
    const bool rings = focused && showsRing(focused);
    const bool here = focused && (focused == screen || screen->isAncestorOf(focused));
    screen->m_focus = here ? focused : nullptr;
    screen->m_focusRings = here && rings;
    return rings;
}

void KeyboardFocus::park()
{
    const QScopedValueRollback guard(m_parking, true);
    m_stage->setFocus(Qt::OtherFocusReason);
}

QWidget *KeyboardFocus::target(Screen *screen)
{
    QWidget *before = screen->m_focus;
    if (before && (before == screen || (before->isVisibleTo(screen) && before->isEnabled())))
        return before;
    for (auto *control : controlsOf(screen)) {
        if (control->isVisibleTo(screen) && control->isEnabled())
            return control->testAttribute(Qt::WA_InputMethodEnabled) ? screen : control;
    }
    return screen;
}

void KeyboardFocus::enter(Screen *screen, bool rings)
{
    auto *next = target(screen);
    if (next == screen->m_focus)
        rings = screen->m_focusRings;
    m_screen = screen;
    m_last = next;
    m_stack->setFocusProxy(next); // at once, also in a window that is not active
    next->setFocus(rings ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

void KeyboardFocus::prepare(Screen *screen)
{
    m_screen = screen;
    m_last = target(screen);
    m_stack->setFocusProxy(m_stage);
}

void KeyboardFocus::orderTabs(Screen *screen) const
{
    // Qt puts what is made later at the end of the window's chain, behind the host's own.
    auto *last = m_stage;
    auto controls = controlsOf(screen);
    for (auto *item : m_bar->findChildren<BarButtonItem *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!item->isHidden())
            controls.append(item);
    }
    m_stage->setFocusPolicy(Qt::TabFocus); // Qt lines nothing up behind what takes no focus
    for (auto *control : std::as_const(controls)) {
        QWidget::setTabOrder(last, control);
        last = control;
    }
    m_stage->setFocusPolicy(Qt::NoFocus);
}

} // namespace parloquin
