#include "Parloquin/Controller/Base/ParloquinNavigationController.h"

#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"
#include "Parloquin/Toolkit/AccessibleNode.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QResizeEvent>
#include <QtGui/QScreen>

#include <algorithm>
#include <utility>

namespace parloquin {
namespace {

constexpr QSize phoneSize(390, 844); // px, what a window of its own opens with
constexpr QSize smallestSize(320, 480); // px, the smallest phone that all screens were made for
// px, what desktops put above and below a window; styles do not know it
constexpr int windowFrame = 40;

class AccessibleContainer : public AccessibleNode {
public:
    using AccessibleNode::AccessibleNode;

    [[nodiscard]] QAccessible::Role role() const override
    {
        return widget()->isWindow() ? QAccessible::Window : QAccessible::Pane;
    }
};

} // namespace

ParloquinNavigationController::ParloquinNavigationController(
    Screen *rootViewController, QWidget *parent)
    : ParloquinViewController(parent)
    , m_navigation(new NavigationController(rootViewController, this))
{
    setup();
}

ParloquinNavigationController::~ParloquinNavigationController() = default;

void ParloquinNavigationController::setup()
{
    // A reader says it as the window's name. Within a host's window it needs none but the screen's.
    setWindowTitle(QCoreApplication::translate("Parloquin", "Parloquin"));
    setAccessibleDescription(QCoreApplication::translate("Parloquin", "Phone number verification"));
    resize(sizeHint());
    setFocusProxy(m_navigation);

    // Fixed: the theme drives the status area alone.
    m_navigation->navigationBar().setBarTintColor(Style::blue);
    m_navigation->navigationBar().setTitleColor(Qt::white);
    connect(m_navigation, &NavigationController::dismissRequested, this, &QWidget::close);
}

std::shared_ptr<ParloquinDelegate> ParloquinNavigationController::kitDelegate() const
{
    return m_kitDelegate;
}

void ParloquinNavigationController::setKitDelegate(std::shared_ptr<ParloquinDelegate> kitDelegate)
{
    // Kept until both places hold the new one: the destructor of the old may come back here.
    const auto old = std::exchange(m_kitDelegate, std::move(kitDelegate));
    ParloquinSingleton::shared().setDelegate(m_kitDelegate);
}

ParloquinStatusBarStyle ParloquinNavigationController::preferredStatusBarStyle() const
{
    const auto &options = ParloquinSingleton::shared().options;
    return options ? options->theme.statusBarColor : ParloquinStatusBarStyle::lightContent;
}

bool ParloquinNavigationController::isAtRest() const
{
    return m_navigation->isAtRest() && !HudManager::shared().isOver(m_navigation);
}

QSize ParloquinNavigationController::sizeHint() const
{
    // A window is to open whole, its title bar included.
    const int room = screen()->availableGeometry().height() - (isWindow() ? windowFrame : 0);
    return { phoneSize.width(), std::min(phoneSize.height(), room) };
}

QSize ParloquinNavigationController::minimumSizeHint() const { return smallestSize; }

QAccessibleInterface *ParloquinNavigationController::makeAccessible()
{
    return new AccessibleContainer(this);
}

bool ParloquinNavigationController::event(QEvent *event)
{
    if (event->type() == QEvent::ContentsRectChange)
        m_navigation->setInsets(contentsMargins());
    return ParloquinViewController::event(event);
}

void ParloquinNavigationController::resizeEvent(QResizeEvent *event)
{
    // Up to the very top: the bar's blue fills the status area as well.
    m_navigation->setGeometry(rect());
    ParloquinViewController::resizeEvent(event);
}

} // namespace parloquin
