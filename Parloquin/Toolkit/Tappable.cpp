#include "Parloquin/Toolkit/Tappable.h"

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>

namespace parloquin {

namespace {

bool pressesButton(const QKeyEvent &event)
{
    return Keys::isEnter(event)
        || (!Keys::isCommand(event)
            && (event.key() == Qt::Key_Space || event.key() == Qt::Key_Select));
}

}

Tappable::Tappable(QWidget *parent)
    : QAbstractButton(parent)
    , m_fade(this, [this] { update(); })
{
    installAccessibility();
    setFocusPolicy(Qt::TabFocus);
    connect(
        this, &QAbstractButton::clicked, this, [this] { NavigationController::notePress(*this); });
    connect(this, &QAbstractButton::pressed, this, [this] { m_fade.setPressed(true); });
    connect(this, &QAbstractButton::released, this, [this] { m_fade.setPressed(false); });
}

bool Tappable::isKeyboardReason(Qt::FocusReason reason, bool before)
{
    switch (reason) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        return before;
    default:
        return false;
    }
}

void Tappable::letGo()
{
    if (!isDown())
        return;
    m_strayed = true;
    setDown(false);
    Q_EMIT released();
}

void Tappable::mousePressEvent(QMouseEvent *event)
{
    m_pressedAt = event->pos();
    m_strayed = false;
    QAbstractButton::mousePressEvent(event);
    event->ignore();
}

void Tappable::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->pos() - m_pressedAt).manhattanLength() >= Style::strayDistance)
        letGo();
    // Passed on, it would press again as soon as the finger comes back.
    if (!m_strayed)
        QAbstractButton::mouseMoveEvent(event);
    event->ignore();
}

void Tappable::mouseReleaseEvent(QMouseEvent *event)
{
    // A click may have its host delete everything here, and then there is nowhere to go on to.
    const QPointer self(this);
    QAbstractButton::mouseReleaseEvent(event);
    event->setAccepted(self.isNull());
}

bool Tappable::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride
        && pressesButton(*static_cast<QKeyEvent *>(event))) {
        event->accept(); // not a shortcut of the host's
        return true;
    }
    const bool sheetMayHaveSized = SheetSize::heeds(*event);
    const bool handled = QAbstractButton::event(event);
    if (sheetMayHaveSized) // a click may have deleted this
        m_sheetSize.follow(*this, *event);
    return handled;
}

void Tappable::keyPressEvent(QKeyEvent *event)
{
    if (Keys::isEnter(*event)) {
        if (Keys::acts(*event, *this))
            click();
    } else if (pressesButton(*event) && !Keys::acts(*event, *this)) {
        return; // the base would press it anew where the repeat is not marked
    } else if (Keys::isCommand(*event) || event->key() == Qt::Key_Escape
        || event->key() == Qt::Key_Back) {
        event->ignore(); // the base would take Alt+Left for an arrow, and swallow Escape
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void Tappable::focusInEvent(QFocusEvent *event)
{
    m_keyboardFocus = isKeyboardReason(event->reason(), m_keyboardFocus);
    QAbstractButton::focusInEvent(event);
}

} // namespace parloquin
