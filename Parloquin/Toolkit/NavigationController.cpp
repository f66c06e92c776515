#include "Parloquin/Toolkit/NavigationController.h"

#include "Parloquin/Toolkit/EditMenu.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationControllerPrivate.h"
#include "Parloquin/Toolkit/Pane.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TableView.h"

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QShowEvent>
#include <QtWidgets/QScroller>

#include <algorithm>
#include <utility>

namespace parloquin {

NavigationController::Private::Private(NavigationController *owner)
    : controller(owner)
    , stage(new Pane(owner))
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

void NavigationController::Private::arrange() const
{
    const int below = insets.top() + NavigationBar::barHeight;
    bar->setGeometry(0, 0, controller->width(), below);
    stage->setGeometry(insets.left(), below,
        std::max(controller->width() - insets.left() - insets.right(), 0),
        std::max(controller->height() - below - insets.bottom(), 0));
    for (auto *screen : stage->findChildren<Screen *>(QString(), Qt::FindDirectChildrenOnly))
        screen->resize(stage->size());
}

void NavigationController::Private::adopt(Screen *screen) const
{
    screen->hide();
    screen->setParent(stage);
    screen->m_navigationController = controller;
    screen->setGeometry(stage->rect());
}

Screen *NavigationController::Private::take()
{
    auto *screen = stack.takeLast();
    screen->m_navigationController = nullptr;
    return screen;
}

void NavigationController::Private::change(Screen *from, Screen *to, bool push, bool animated)
{
    // What the finger or a key still holds meant a screen that leaves.
    drag.cancel();
    Holdable::letGoWithin(*controller);
    const bool ours = keyboard->isOurs();
    const QPointer<Screen> leaving(from);
    const bool rings = keyboard->leave(from);
    if (ours)
        keyboard->park();
    bar->rememberLook();
    to->loadViewIfNeeded();
    if (leaving)
        from->viewWillDisappear(animated);
    to->viewWillAppear(animated);
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
void NavigationController::Private::settleIn(Screen *screen, bool takesFocus, bool rings) const
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
void NavigationController::Private::shieldWhileMoving() const
{
    const bool all = !controller->takesPresses();
    shield->setGeometry(all ? controller->rect() : bar->geometry());
    shield->setVisible(all || lastPop.isActive());
    shield->raise();
}

// Out of view; and out of the world when popped.
void NavigationController::Private::drop(const QPointer<Screen> &screen, bool popped) const
{
    if (!screen || screen == top())
        return;
    screen->hide();
    if (popped)
        screen->deleteLater();
}

NavigationController::NavigationController(Screen *root, QWidget *parent)
    : Pane(parent)
    , d(std::make_unique<Private>(this))
{
    d->stack.append(root);
    d->adopt(root);
}

NavigationController::~NavigationController()
{
    // A motion under way must not report to what is half gone.
    delete d->slide;
    // Nor a menu, which gives the keyboard back to its field.
    for (EditMenu *menu : findChildren<EditMenu *>())
        delete menu;
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
    auto *from = d->take();
    if (d->appeared)
        d->change(from, d->top(), false, animated);
    else
        d->drop(from, true);
}

Screen *NavigationController::topViewController() const { return d->top(); }

QList<Screen *> NavigationController::viewControllers() const { return d->stack; }

NavigationBar &NavigationController::navigationBar() const { return *d->bar; }

bool NavigationController::takesPresses() const { return !d->slide->isRunning() && !d->pressed; }

bool NavigationController::awaitsPress() const { return d->pressed; }

NavigationController *NavigationController::above(const QWidget &part)
{
    auto *above = part.parentWidget();
    while (above && !qobject_cast<NavigationController *>(above))
        above = above->parentWidget();
    return static_cast<NavigationController *>(above);
}

// The overlay is laid, and a row's screen left, when the event loop turns. An app that was busy
// gets the second of two quick presses before.
void NavigationController::notePress(const QWidget &part)
{
    auto *const stack = above(part);
    if (!stack || std::exchange(stack->d->pressed, true))
        return;
    stack->d->shieldWhileMoving();
    const auto again = [stack] {
        stack->d->pressed = false;
        stack->d->shieldWhileMoving();
    };
    QMetaObject::invokeMethod(stack, again, Qt::QueuedConnection);
}

bool NavigationController::isAtRest() const
{
    const auto scrolling = QScroller::activeScrollers();
    return takesPresses() && !d->lastPop.isActive()
        && std::none_of(scrolling.cbegin(), scrolling.cend(), [this](const QScroller *scroller) {
               const auto *scrolled = qobject_cast<QWidget *>(scroller->target());
               return scrolled && isAncestorOf(scrolled);
           });
}

void NavigationController::setInsets(const QMargins &insets)
{
    d->insets = insets;
    d->arrange();
}

void NavigationController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    Keys::watchHolds(window()->windowHandle());
    // A window that comes back from the taskbar has not appeared anew.
    if (event->spontaneous() || d->appeared)
        return;
    d->arrange();
    d->appeared = true;
    auto *screen = d->top();
    screen->loadViewIfNeeded();
    screen->viewWillAppear(false);
    d->bar->show(&screen->navigationItem(), false);
    screen->show();
    // Where there is more in the window, Qt or the host says what begins with the keyboard.
    const auto *focused = window()->focusWidget();
    const bool alone = window() == this || window() == parentWidget();
    const bool waiting = focused && (focused == this || isAncestorOf(focused));
    // Moved to another window with the keyboard, it keeps it: Qt would begin at the first control.
    const bool first = alone || isActiveWindow() || d->leftWithKeyboard;
    d->settleIn(screen, waiting || (!focused && first), false);
}

void NavigationController::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    d->slide->finish();
    d->appeared = false;
    static_cast<void>(d->keyboard->leave(d->top())); // it comes back to where it was
    d->leftWithKeyboard = d->keyboard->isHere();
    d->top()->viewWillDisappear(false);
}

void NavigationController::paintEvent(QPaintEvent *event)
{
    QPainter(this).fillRect(event->rect(), Qt::white); // what pages leave free
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

void NavigationController::letGo()
{
    d->releaseFinger(true);
    Holdable::letGoWithin(*this);
}

void NavigationController::focus(QWidget *widget)
{
    const auto *screen = d->top();
    if (screen && screen->isAncestorOf(widget) && d->keyboard->isOurs())
        widget->setFocus(Qt::OtherFocusReason);
}

} // namespace parloquin
