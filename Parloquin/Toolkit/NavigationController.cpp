#include "Parloquin/Toolkit/NavigationController.h"

#include "Parloquin/Toolkit/EdgeDrag.h"
#include "Parloquin/Toolkit/KeyboardFocus.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Shield.h"
#include "Parloquin/Toolkit/Slide.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TableView.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>
#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPointingDevice>
#include <QtGui/QShowEvent>
#include <QtGui/QTouchEvent>
#include <QtWidgets/QScroller>

#include <algorithm>
#include <utility>

namespace parloquin {

namespace {

bool isFinger(const QMouseEvent &event)
{
    return event.pointerType() == QPointingDevice::PointerType::Finger;
}

}

struct NavigationController::Private {
    explicit Private(NavigationController *owner)
        : controller(owner)
        , stage(new QWidget(owner))
        , bar(new NavigationBar(owner))
        , slide(new Slide(stage))
        , shield(new Shield(owner))
        , keyboard(new KeyboardFocus(owner, stage, bar))
        , drag(stage)
    {
        shield->hide();
        lastPop.setSingleShot(true);
        connect(&lastPop, &QTimer::timeout, owner, [this] { shieldWhileMoving(); });
        connect(slide, &Slide::finished, owner, [this] { shieldWhileMoving(); });
        connect(keyboard, &KeyboardFocus::left, owner, [this] { hostKeys.clear(); });
        bar->setObjectName(QStringLiteral("navigationBar"));
    }

    [[nodiscard]] Screen *top() const { return stack.isEmpty() ? nullptr : stack.last(); }

    void arrange() const
    {
        const int below = statusArea + NavigationBar::barHeight;
        bar->setGeometry(0, 0, controller->width(), below);
        stage->setGeometry(
            0, below, controller->width(), std::max(controller->height() - below, 0));
        for (auto *screen : stage->findChildren<Screen *>(QString(), Qt::FindDirectChildrenOnly))
            screen->resize(stage->size());
    }

    void adopt(Screen *screen) const
    {
        screen->hide();
        screen->setParent(stage);
        screen->m_navigationController = controller;
        screen->setGeometry(stage->rect());
    }

    // The life cycle may push or pop itself; the caller then finds another screen on top.
    void change(Screen *from, Screen *to, bool push, bool animated)
    {
        const bool ours = keyboard->isOurs();
        const QPointer<Screen> leaving(from);
        const QPointer<Screen> coming(to);
        const bool rings = keyboard->leave(from);
        if (ours)
            keyboard->park();
        bar->rememberLook();
        to->loadViewIfNeeded();
        if (leaving)
            from->viewWillDisappear(animated);
        if (!push && leaving)
            from->m_navigationController = nullptr;
        if (coming && top() == to)
            to->viewWillAppear(animated);
        if (!coming || top() != to) {
            drop(leaving, !push);
            return;
        }
        bar->show(&to->navigationItem(), animated);
        to->setGeometry(stage->rect());
        to->show();
        settleIn(to, ours, rings);

        const auto motion = push ? Style::push : Style::pop;
        const int length = animated ? Style::duration(controller, motion) : 0;
        const auto done = [this, leaving, push] { drop(leaving, !push); };
        lastPop.stop();
        if (animated && !push)
            lastPop.start(Style::pop); // a second Back is meant for no screen that is not seen yet
        if (length > 0 && leaving) {
            slide->start(push ? from : to, push ? to : from, push, length, done);
        } else {
            slide->finish(); // a finger may have moved them
            done();
        }
        shieldWhileMoving();
    }

    // What a screen that has come into view needs besides.
    void settleIn(Screen *screen, bool takesFocus, bool rings) const
    {
        keyboard->orderTabs(screen);
        if (takesFocus)
            keyboard->enter(screen, rings);
        else
            keyboard->prepare(screen);
        // A table takes touches for itself, before anyone above it sees them.
        for (auto *table : screen->findChildren<TableView *>()) {
            table->removeEventFilter(controller);
            table->installEventFilter(controller);
        }
    }

    // Neither screen is where it seems to be until the motion ends, and nor is the bar's button.
    void shieldWhileMoving() const
    {
        const bool slides = slide->isRunning();
        shield->setGeometry(slides ? controller->rect() : bar->geometry());
        shield->setVisible(slides || lastPop.isActive());
        shield->raise();
    }

    // \return whether a Back was taken
    [[nodiscard]] bool goBack() const
    {
        if (slide->isRunning() || lastPop.isActive())
            return true;
        if (stack.size() < 2)
            return false;
        controller->popViewController(true);
        return true;
    }

    [[nodiscard]] bool takesBack() const
    {
        return stack.size() > 1 || slide->isRunning() || lastPop.isActive();
    }

    void pressFinger(const QPointF &at, quint64 time)
    {
        if (stack.size() > 1 && !slide->isRunning())
            drag.press(at, time);
    }

    // \return true in the move that begins a drag
    bool moveFinger(const QPointF &at, quint64 time)
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

    // Of a table. \return true where it is not the table's any more
    bool followTouch(QObject *table, QTouchEvent &touch)
    {
        if (touch.points().isEmpty())
            return false;
        const auto &finger = touch.points().first();
        const bool dragging = drag.isDragging();
        switch (touch.type()) {
        case QEvent::TouchBegin:
            pressFinger(finger.globalPosition(), touch.timestamp());
            break;
        case QEvent::TouchUpdate:
            if (moveFinger(finger.globalPosition(), touch.timestamp())) {
                table->removeEventFilter(controller); // this is for the table alone
                QTouchEvent cancel(
                    QEvent::TouchCancel, touch.pointingDevice(), touch.modifiers(), touch.points());
                QCoreApplication::sendEvent(table, &cancel);
                table->installEventFilter(controller);
                return true;
            }
            break;
        default:
            releaseFinger(touch.type() == QEvent::TouchCancel);
            break;
        }
        if (dragging)
            touch.accept();
        return dragging;
    }

    void releaseFinger(bool cancelled)
    {
        const bool dragged = drag.isDragging();
        const bool goes = drag.release() && !cancelled;
        if (!dragged || !slide->isFollowing())
            return;
        if (goes) {
            auto *from = stack.takeLast();
            change(from, top(), false, true);
        } else {
            slide->giveUp(Style::duration(controller, Style::pop));
        }
    }

    // Out of view; and out of the world when popped.
    void drop(const QPointer<Screen> &screen, bool popped) const
    {
        if (!screen || screen == top())
            return;
        // Hiding what has the keyboard would move it on unasked.
        auto *focused = controller->window()->focusWidget();
        if (focused && (focused == screen || screen->isAncestorOf(focused)))
            keyboard->enter(top(), false);
        screen->hide();
        if (popped)
            screen->deleteLater();
    }

    NavigationController *controller;
    QWidget *stage;
    NavigationBar *bar;
    Slide *slide;
    Shield *shield;
    KeyboardFocus *keyboard;
    EdgeDrag drag;
    QTimer lastPop; // runs for as long as a pop takes, also where the style shows no motion
    QSet<int> hostKeys; // held keys whose press the host got
    bool backButtonTaken = false;
    QList<Screen *> stack;
    int statusArea = 0;
    bool appeared = false;
};

NavigationController::NavigationController(Screen *root, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this))
{
    d->stack.append(root);
    d->adopt(root);
}

NavigationController::~NavigationController()
{
    // A motion under way must not report to what is half gone.
    delete d->slide;
    delete d->keyboard;
}

void NavigationController::pushViewController(Screen *screen, bool animated)
{
    d->slide->finish();
    auto *from = d->top();
    d->adopt(screen);
    d->stack.append(screen);
    if (d->appeared)
        d->change(from, screen, true, animated);
}

void NavigationController::popViewController(bool animated)
{
    if (d->stack.size() < 2)
        return;
    d->slide->finish();
    auto *from = d->stack.takeLast();
    if (d->appeared) {
        d->change(from, d->top(), false, animated);
        return;
    }
    from->m_navigationController = nullptr;
    d->drop(from, true);
}

Screen *NavigationController::topViewController() const { return d->top(); }

QList<Screen *> NavigationController::viewControllers() const { return d->stack; }

NavigationBar &NavigationController::navigationBar() const { return *d->bar; }

bool NavigationController::isAtRest() const
{
    const auto scrolling = QScroller::activeScrollers();
    return !d->slide->isRunning() && !d->lastPop.isActive()
        && std::none_of(scrolling.cbegin(), scrolling.cend(), [this](const QScroller *scroller) {
               const auto *scrolled = qobject_cast<QWidget *>(scroller->target());
               return scrolled && isAncestorOf(scrolled);
           });
}

void NavigationController::setStatusAreaHeight(int height)
{
    d->statusArea = height;
    d->arrange();
}

void NavigationController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // A window that comes back from the taskbar has not appeared anew.
    if (event->spontaneous() || d->appeared)
        return;
    d->arrange();
    d->appeared = true;
    auto *screen = d->top();
    screen->loadViewIfNeeded();
    screen->viewWillAppear(false);
    if (d->top() != screen || !d->appeared)
        return; // it went on at once
    d->bar->show(&screen->navigationItem(), false);
    screen->show();
    // Where there is more in the window, Qt or the host says what begins with the keyboard.
    const auto *focused = window()->focusWidget();
    const bool alone = window() == this || window() == parentWidget();
    const bool waiting = focused && (focused == this || isAncestorOf(focused));
    d->settleIn(screen, waiting || (!focused && (alone || isActiveWindow())), false);
}

void NavigationController::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous() || !d->appeared)
        return;
    d->slide->finish();
    d->appeared = false;
    d->top()->viewWillDisappear(false);
}

void NavigationController::resizeEvent(QResizeEvent *)
{
    d->slide->finish();
    d->arrange();
    d->shieldWhileMoving();
}

void NavigationController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        d->slide->finish();
}

void NavigationController::focus(QWidget *widget)
{
    const auto *screen = d->top();
    if (screen && screen->isAncestorOf(widget) && d->keyboard->isOurs())
        widget->setFocus(Qt::OtherFocusReason);
}

bool NavigationController::event(QEvent *event)
{
    // Before it is a key it may be a shortcut of the host's.
    if (event->type() == QEvent::ShortcutOverride && Keys::isBack(*static_cast<QKeyEvent *>(event))
        && d->takesBack()) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

// Tab might lead into the screen that leaves.
bool NavigationController::focusNextPrevChild(bool next)
{
    return d->slide->isRunning() || QWidget::focusNextPrevChild(next);
}

void NavigationController::keyPressEvent(QKeyEvent *event)
{
    // Held, a key goes on being whose it was when it was pressed: one Back leads back one screen,
    // not all of them and the host's dialog too.
    const bool taken = event->isAutoRepeat() ? !d->hostKeys.contains(event->key())
                                             : Keys::isBack(*event) && d->goBack();
    if (!taken && !event->isAutoRepeat())
        d->hostKeys.insert(event->key());
    event->setAccepted(taken);
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
    if (event->button() == Qt::BackButton)
        d->backButtonTaken = d->goBack();
    else if (isFinger(*event))
        d->pressFinger(event->globalPosition(), event->timestamp());
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
