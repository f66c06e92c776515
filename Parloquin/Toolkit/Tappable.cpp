#include "Parloquin/Toolkit/Tappable.h"

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>

namespace parloquin {

Tappable::Tappable(QWidget *parent)
    : QAbstractButton(parent)
    , m_fade(this, [this] { update(); })
{
    installAccessibility();
    setFocusPolicy(Qt::TabFocus);
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

void Tappable::mousePressEvent(QMouseEvent *event)
{
    m_pressedAt = event->pos();
    m_strayed = false;
    QAbstractButton::mousePressEvent(event);
}

void Tappable::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->pos() - m_pressedAt).manhattanLength() >= Style::strayDistance && isDown()) {
        m_strayed = true;
        setDown(false);
        Q_EMIT released();
    }
    // Passed on, it would press again as soon as the finger comes back.
    if (!m_strayed)
        QAbstractButton::mouseMoveEvent(event);
}

void Tappable::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (!event->isAutoRepeat())
            click();
        return;
    }
    // The base would turn arrows into focus moves and swallow Escape, which goes back a screen.
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Back)
        event->ignore();
    else
        QAbstractButton::keyPressEvent(event);
}

void Tappable::focusInEvent(QFocusEvent *event)
{
    m_keyboardFocus = isKeyboardReason(event->reason(), m_keyboardFocus);
    QAbstractButton::focusInEvent(event);
}

} // namespace parloquin
