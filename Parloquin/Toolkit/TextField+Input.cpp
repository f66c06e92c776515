#include "Parloquin/Toolkit/TextField.h"

#include "Parloquin/Toolkit/EditMenu.h"
#include "Parloquin/Toolkit/Finger.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QContextMenuEvent>
#include <QtGui/QInputMethodEvent>

namespace parloquin {

void TextField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // A line edit lets it through to the host, whose default button it would press.
        event->accept();
        if (Keys::isEnter(*event) && Keys::acts(*event, *this))
            Q_EMIT returnPressed();
        return;
    }
    const bool beyond = event->key() == Qt::Key_Backspace && text().isEmpty();
    QLineEdit::keyPressEvent(event);
    if (beyond)
        Q_EMIT deletedBeyondStart();
}

// A mouse puts the caret, and selects, from its press on. A finger may be about to scroll, or to go
// back, and then the field gets neither focus nor keyboard: it means the field when it is lifted.
void TextField::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton) {
        event->ignore();
        return;
    }
    m_pressedAt = event->position();
    m_strayed = false;
    m_hold.start();
    if (isFinger(*event)) {
        event->ignore();
        return;
    }
    if (!hasFocus())
        setFocus(Qt::MouseFocusReason);
    QLineEdit::mousePressEvent(event);
}

void TextField::letGo()
{
    m_strayed = true;
    m_hold.stop();
}

void TextField::mouseMoveEvent(QMouseEvent *event)
{
    if ((event->position() - m_pressedAt).manhattanLength() >= Style::strayDistance)
        letGo();
    if (isFinger(*event))
        event->ignore();
    else
        QLineEdit::mouseMoveEvent(event);
}

void TextField::mouseReleaseEvent(QMouseEvent *event)
{
    m_hold.stop();
    if (!isFinger(*event)) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    if (!m_strayed) {
        if (!hasFocus())
            setFocus(Qt::MouseFocusReason);
        QMouseEvent press(QEvent::MouseButtonPress, event->position(), event->globalPosition(),
            event->button(), event->button(), event->modifiers(), event->pointingDevice());
        QLineEdit::mousePressEvent(&press);
        QLineEdit::mouseReleaseEvent(event); // opens an on-screen keyboard
    }
    event->ignore();
}

void TextField::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (isFinger(*event))
        mousePressEvent(event); // a tap like the one before, or the beginning of a long press
    else
        QLineEdit::mouseDoubleClickEvent(event);
}

// Hands the event on, but for the line edit's own cursor: even one of no width shows as a thin line
// at ratios between whole ones. Input methods may hide it, and so it stays hidden from the start.
void TextField::inputMethodEvent(QInputMethodEvent *event)
{
    using Attribute = QInputMethodEvent::Attribute;
    m_composed = event->preeditString();
    auto attributes = event->attributes();
    int at = static_cast<int>(m_composed.size());
    attributes.removeIf([&at](const Attribute &attribute) {
        if (attribute.type == QInputMethodEvent::Cursor)
            at = attribute.start;
        return attribute.type == QInputMethodEvent::Cursor;
    });
    m_caretInComposed = at;
    m_composedLooks = attributes;
    attributes.append(Attribute(QInputMethodEvent::Cursor, at, 0));
    QInputMethodEvent hidden(event->preeditString(), attributes);
    hidden.setCommitString(
        event->commitString(), event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&hidden);
    event->setAccepted(hidden.isAccepted());
}

void TextField::contextMenuEvent(QContextMenuEvent *event)
{
    openMenu(event->reason() == QContextMenuEvent::Keyboard);
    event->accept();
}

void TextField::openMenu(bool byKeys)
{
    if (!hasFocus())
        setFocus(Qt::MouseFocusReason);
    EditMenu::open(this, byKeys);
}

} // namespace parloquin
