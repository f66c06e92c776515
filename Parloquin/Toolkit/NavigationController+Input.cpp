#include "Parloquin/Toolkit/CancelledTouch.h"
#include "Parloquin/Toolkit/Finger.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationControllerPrivate.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QTouchEvent>

#include <utility>

namespace parloquin {

bool NavigationController::Private::goBack() const
{
    if (slide->isRunning() || lastPop.isActive())
        return true;
    if (stack.size() < 2)
        return false;
    controller->popViewController(true);
    return true;
}

// Held, a key goes on being whose it was when it was pressed: one Back leads back one screen, not
// all of them and the host's dialog too.
bool NavigationController::Private::takes(const QKeyEvent &key, bool pressIsOurs)
{
    if (Keys::isRepeat(key))
        return !hostKeys.contains(key.key());
    if (!pressIsOurs)
        hostKeys.insert(key.key());
    return pressIsOurs;
}

bool NavigationController::Private::takesBack() const
{
    return stack.size() > 1 || slide->isRunning() || lastPop.isActive();
}

void NavigationController::Private::pressFinger(const QPointF &at, quint64 time)
{
    if (stack.size() > 1 && !slide->isRunning())
        drag.press(at, time);
}

bool NavigationController::Private::moveFinger(const QPointF &at, quint64 time)
{
    const bool begins = drag.move(at, time) && stack.size() > 1 && !slide->isRunning();
    if (begins) {
        const QPointer<Screen> below(stack.at(stack.size() - 2));
        below->loadViewIfNeeded();
        below->show(); // and no more: given up, nothing has happened
        slide->follow(below, top(), [this, below] {
            if (below && below != top())
                below->hide();
        });
        shieldWhileMoving();
    }
    if (drag.isDragging())
        slide->moveTo(drag.progress());
    return begins;
}

bool NavigationController::Private::followTouch(QObject *table, QTouchEvent &touch)
{
    const bool dragging = drag.isDragging();
    if (touch.type() == QEvent::TouchBegin)
        finger = touch.points().first().id();
    const auto *point = finger ? touch.pointById(*finger) : nullptr;
    if (touch.type() == QEvent::TouchCancel || (point && point->state() == QEventPoint::Released)) {
        finger.reset();
        releaseFinger(touch.type() == QEvent::TouchCancel);
    } else if (point && point->state() == QEventPoint::Pressed) {
        pressFinger(point->globalPosition(), touch.timestamp());
    } else if (point && moveFinger(point->globalPosition(), touch.timestamp())) {
        table->removeEventFilter(controller); // this is for the table alone
        QTouchEvent cancel(QEvent::TouchCancel, touch.pointingDevice(), touch.modifiers());
        QCoreApplication::sendEvent(table, &cancel);
        table->installEventFilter(controller);
        return true;
    }
    if (dragging)
        touch.accept();
    return dragging;
}

void NavigationController::Private::releaseFinger(bool cancelled)
{
    const bool dragged = drag.isDragging();
    const bool goes = drag.release() && !cancelled;
    if (!dragged || !slide->isFollowing())
        return;
    if (goes) {
        auto *from = take();
        change(from, top(), false, true);
    } else {
        slide->giveUp(Style::duration(controller, Style::pop));
    }
}

bool NavigationController::event(QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return Pane::event(event);
    // Before it is a key it may be a shortcut of the host's.
    auto *key = static_cast<QKeyEvent *>(event);
    const bool tab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    event->setAccepted(
        d->takes(*key, (Keys::isBack(*key) && d->takesBack()) || (tab && d->slide->isRunning())));
    return true;
}

// Tab might lead into the screen that leaves.
bool NavigationController::focusNextPrevChild(bool next)
{
    return d->slide->isRunning() || QWidget::focusNextPrevChild(next);
}

void NavigationController::keyPressEvent(QKeyEvent *event)
{
    const bool back = Keys::isBack(*event) && !Keys::isRepeat(*event) && d->goBack();
    event->setAccepted(d->takes(*event, back));
}

void NavigationController::keyReleaseEvent(QKeyEvent *event)
{
    const bool hosts = event->isAutoRepeat() ? d->hostKeys.contains(event->key())
                                             : d->hostKeys.remove(event->key());
    event->setAccepted(!hosts);
}

// What a finger or a mouse does on a screen comes here from whoever took it. It goes no further:
// the host's own widgets would take it for theirs.
void NavigationController::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::BackButton) {
        d->backButtonTaken = d->goBack();
    } else if (isFinger(*event)) {
        d->pressFinger(event->globalPosition(), event->timestamp());
        CancelledTouch::watch(*this);
    }
    event->setAccepted(event->button() == Qt::LeftButton
        || (event->button() == Qt::BackButton && d->backButtonTaken));
}

void NavigationController::mouseMoveEvent(QMouseEvent *event)
{
    if (isFinger(*event))
        d->moveFinger(event->globalPosition(), event->timestamp());
    event->setAccepted(event->buttons() & Qt::LeftButton);
}

void NavigationController::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && isFinger(*event))
        d->releaseFinger(false);
    event->setAccepted(event->button() == Qt::LeftButton
        || (event->button() == Qt::BackButton && std::exchange(d->backButtonTaken, false)));
}

bool NavigationController::eventFilter(QObject *watched, QEvent *event)
{
    if (CancelledTouch::happens(watched, *event))
        letGo();
    if (watched->isWindowType())
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return d->followTouch(watched, *static_cast<QTouchEvent *>(event))
            || QWidget::eventFilter(watched, event);
    default:
        return QWidget::eventFilter(watched, event);
    }
}

} // namespace parloquin
