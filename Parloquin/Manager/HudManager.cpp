#include "Parloquin/Manager/HudManager.h"

#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Protocol/Updateable.h"
#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/AccessibleNode.h"
#include "Parloquin/Toolkit/ActivityIndicator.h"
#include "Parloquin/Toolkit/DevicePixels.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Pane.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Shield.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPropertyAnimation>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsOpacityEffect>

#include <utility>

namespace parloquin {
namespace {

constexpr QSize plateSize(Style::plateSize, Style::plateSize);
constexpr QSize spinnerSize(40, 40); // px
constexpr qreal plateRadius = 10; // px

/// Tells a screen reader that what it reads is busy, for as long as the veil is up, and is all that
/// there is to read meanwhile.
class VeilAccessible : public AccessibleNode {
public:
    explicit VeilAccessible(QWidget *veil)
        : AccessibleNode(veil, QAccessible::ProgressBar) // readers count alerts as dialogs
    {
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleNode::state();
        state.busy = widget()->isVisible();
        return state;
    }

    [[nodiscard]] bool coversSiblings() const override { return true; }
};

/// The veil: swallows whatever is meant for the widgets under it.
class VeilView : public Shield, public Describable {
public:
    VeilView()
    {
        setObjectName(QStringLiteral("container"));
        setAccessibleName(QCoreApplication::translate("Parloquin", "Loading"));
        setFocusPolicy(Qt::TabFocus);
    }

    [[nodiscard]] QAccessibleInterface *makeAccessible() override
    {
        return new VeilAccessible(this);
    }

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
            if (isHosts() && static_cast<QMouseEvent *>(event)->button() == Qt::BackButton) {
                event->ignore();
                return true;
            }
            return Shield::event(event);
        case QEvent::ShortcutOverride:
            // A command is none of what the veil covers.
            event->setAccepted(!isHosts(*static_cast<QKeyEvent *>(event))
                && !Keys::isCommand(*static_cast<QKeyEvent *>(event)));
            return true;
        case QEvent::KeyPress:
            Shield::event(event); // Tab leaves for the host's own widgets
            event->setAccepted(!isHosts(*static_cast<QKeyEvent *>(event)));
            return true;
        case QEvent::KeyRelease:
            event->setAccepted(!isHosts(*static_cast<QKeyEvent *>(event)));
            return true;
        default:
            return Shield::event(event);
        }
    }

    bool focusNextPrevChild(bool next) override
    {
        const auto step = [next](const QWidget *widget) {
            return next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        };
        for (QWidget *widget = step(this); widget != this; widget = step(widget)) {
            const bool takesTab = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled()
                && widget->isVisible() && widget->window() == window();
            if (takesTab && !parentWidget()->isAncestorOf(widget)) {
                widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
                break;
            }
        }
        return true; // never to what lies under the veil
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), QColor::fromRgbF(1, 1, 1, 0.3F));
    }

private:
    // To go back from the first screen is to leave the kit, also while it is busy.
    [[nodiscard]] bool isHosts() const
    {
        const auto *navigation = qobject_cast<NavigationController *>(parentWidget());
        return navigation && navigation->viewControllers().size() == 1;
    }
    [[nodiscard]] bool isHosts(const QKeyEvent &key) const
    {
        return isHosts() && Keys::isBack(key);
    }
};

class PlateView : public Pane {
public:
    explicit PlateView(QWidget *parent)
        : Pane(parent)
    {
        setObjectName(QStringLiteral("loadingView"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        resize(plateSize);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        DevicePixels::fillBox(painter, rect(), plateRadius,
            QColor::fromRgbF(68 / 255.0F, 68 / 255.0F, 68 / 255.0F, 0.7F));
    }
};

} // namespace

HudManager::HudManager()
{
    // An answer's thread may be the first to ask for the overlay; its work is the main thread's.
    moveToThread(QCoreApplication::instance()->thread());
}

HudManager &HudManager::shared()
{
    static HudManager instance;
    return instance;
}

void HudManager::show(std::weak_ptr<Updateable> screen)
{
    onMain([this, screen = std::move(screen)] {
        auto *const view = dynamic_cast<Screen *>(screen.lock().get());
        if (!view)
            return;
        NavigationController *const navigation = view->navigationController();
        showActivityIndicator(navigation ? static_cast<QWidget *>(navigation) : view);
    });
}

void HudManager::hide(const std::weak_ptr<Updateable> &)
{
    onMain([this] { removeFromSuperview(); });
}

bool HudManager::isOver(const QWidget *view) const
{
    return container && !container->isHidden() && container->parentWidget() == view;
}

void HudManager::showActivityIndicator(QWidget *uiView)
{
    if (!container) {
        container = new VeilView;
        loadingView = new PlateView(container);
        activityIndicator = new ActivityIndicator(loadingView);
        activityIndicator->setObjectName(QStringLiteral("activityIndicator"));
        activityIndicator->resize(spinnerSize);
    }
    const bool arrives = container->parentWidget() != uiView || container->isHidden();
    if (arrives) {
        removeFromSuperview();
        if (auto *const navigation = qobject_cast<NavigationController *>(uiView))
            navigation->letGo();
        container->setParent(uiView);
        lineUp(uiView);
        uiView->installEventFilter(this);
    }
    layOut();
    container->raise();
    activityIndicator->startAnimating();
    if (!arrives)
        return;

    if (const int duration = Style::duration(container, Style::veilFade)) {
        auto *const effect = new QGraphicsOpacityEffect(container);
        effect->setOpacity(0);
        container->setGraphicsEffect(effect);
        auto *const fade = new QPropertyAnimation(effect, "opacity", effect);
        fade->setDuration(duration);
        fade->setEndValue(1.0);
        connect(fade, &QAbstractAnimation::finished, container,
            [veil = container.data()] { veil->setGraphicsEffect(nullptr); });
        fade->start();
    }
    container->show();

    QWidget *const focus = uiView->window()->focusWidget();
    if (!focus || uiView->isAncestorOf(focus))
        cover(focus);
    // An overlay that went with its container has left its connection behind.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
    connect(qApp, &QApplication::focusChanged, this,
        [this](QWidget *, QWidget *now) { keepFocus(now); });
}

void HudManager::removeFromSuperview()
{
    if (!container || container->isHidden())
        return;
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
    container->parentWidget()->removeEventFilter(this);
    activityIndicator->stopAnimating();
    container->setGraphicsEffect(nullptr);
    // The keyboard moves before the veil hides: hiding the widget that has it moves it on unasked.
    if (container->window()->focusWidget() == container) {
        QWidget *const view = container->parentWidget();
        (m_focusBefore && m_focusBefore->isVisible() ? m_focusBefore.data() : view)
            ->setFocus(Qt::PopupFocusReason);
    }
    m_focusBefore.clear();
    container->hide();
}

// Where the host's Tab finds what the veil covers: behind any part of that, as Qt lines nothing up
// behind what takes no focus itself.
void HudManager::lineUp(QWidget *uiView)
{
    for (auto *const part : uiView->findChildren<QWidget *>()) {
        if (part != container && (part->focusPolicy() & Qt::TabFocus) != 0 && part->isVisible()) {
            QWidget::setTabOrder(part, container);
            return;
        }
    }
}

void HudManager::layOut()
{
    const QRect bounds = container->parentWidget()->rect();
    container->setGeometry(bounds);
    loadingView->move(
        (bounds.width() - plateSize.width()) / 2, (bounds.height() - plateSize.height()) / 2);
    activityIndicator->move((plateSize.width() - spinnerSize.width()) / 2,
        (plateSize.height() - spinnerSize.height()) / 2);
}

void HudManager::keepFocus(QWidget *now)
{
    if (!container || !now || now == container)
        return;
    if (!container->parentWidget()->isAncestorOf(now))
        return;
    cover(now);
    // Qt tells readers of what is covered last, as it got the keyboard first: the veil is not
    // heard.
    const auto tell = [veil = container.data()] {
        if (!veil->hasFocus())
            return;
        QAccessibleEvent event(veil, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    };
    QMetaObject::invokeMethod(container, tell, Qt::QueuedConnection);
}

// Like a popup: what has the focus now keeps its ring, its selection and its editing.
void HudManager::cover(QWidget *focused)
{
    m_focusBefore = focused;
    container->setFocus(Qt::PopupFocusReason);
}

bool HudManager::eventFilter(QObject *watched, QEvent *event)
{
    if (container && watched == container->parentWidget() && event->type() == QEvent::Resize)
        layOut();
    return QObject::eventFilter(watched, event);
}

} // namespace parloquin
