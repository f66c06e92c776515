#include "Parloquin/Toolkit/NavigationController.h"

#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Slide.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/Tappable.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QShowEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QScroller>

#include <algorithm>

namespace parloquin {

struct NavigationController::Private {
    explicit Private(NavigationController *owner)
        : controller(owner)
        , stage(new QWidget(owner))
        , bar(new NavigationBar(owner))
        , slide(new Slide(stage))
    {
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

    // True where the focus is ours to move: a host that embeds us may hold it elsewhere.
    [[nodiscard]] bool ownsFocus() const
    {
        const auto *focused = controller->window()->focusWidget();
        return !focused || focused == controller || controller->isAncestorOf(focused)
            || focused == controller->window();
    }

    void saveFocus(Screen *screen) const
    {
        auto *focused = controller->window()->focusWidget();
        screen->m_focus = focused && screen->isAncestorOf(focused) ? focused : nullptr;
        const auto *tapped = qobject_cast<Tappable *>(focused);
        screen->m_focusRings = tapped && tapped->hasKeyboardFocus();
    }

    static void restoreFocus(Screen *screen)
    {
        if (screen->m_focus)
            screen->m_focus->setFocus(
                screen->m_focusRings ? Qt::TabFocusReason : Qt::OtherFocusReason);
        else
            screen->setFocus(Qt::OtherFocusReason); // keys such as Escape still arrive
    }

    // The life cycle may push or pop itself; the caller then finds another screen on top.
    void change(Screen *from, Screen *to, bool push, bool animated)
    {
        const bool focus = ownsFocus();
        const QPointer<Screen> leaving(from);
        const QPointer<Screen> coming(to);
        saveFocus(from);
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
        if (focus)
            restoreFocus(to);

        const auto motion = push ? Style::push : Style::pop;
        const int length = animated ? Style::duration(controller, motion) : 0;
        const auto done = [this, leaving, push] { drop(leaving, !push); };
        if (length > 0 && leaving)
            slide->start(push ? from : to, push ? to : from, push, length, done);
        else
            done();
    }

    // Out of view; and out of the world when popped.
    void drop(const QPointer<Screen> &screen, bool popped) const
    {
        if (!screen || screen == top())
            return;
        screen->hide();
        if (popped)
            screen->deleteLater();
    }

    NavigationController *controller;
    QWidget *stage;
    NavigationBar *bar;
    Slide *slide;
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
    return !d->slide->isRunning()
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
    if (isWindow() && !focusWidget())
        d->restoreFocus(screen);
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
}

void NavigationController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        d->slide->finish();
}

void NavigationController::keyPressEvent(QKeyEvent *event)
{
    const bool back = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Back;
    if (back && event->isAutoRepeat())
        return; // held, it leads back one screen, not all of them and the host's dialog too
    if (back && d->stack.size() > 1)
        popViewController(true);
    else
        QWidget::keyPressEvent(event);
}

} // namespace parloquin
