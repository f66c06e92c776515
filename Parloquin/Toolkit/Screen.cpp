#include "Parloquin/Toolkit/Screen.h"

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/FocusRing.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationController.h"

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>

namespace parloquin {

Screen::Screen(QWidget *parent)
    : Pane(parent)
{
    installAccessibility();
    // Screens slide over each other: none may let another one shine through. Painted, as a host's
    // style sheet takes the ground away from widgets that leave it to their palette.
    setAttribute(Qt::WA_OpaquePaintEvent);
    hide();
    new FocusRing(this);
}

Screen::~Screen() = default;

NavigationController *Screen::navigationController() const { return m_navigationController; }

void Screen::setTitle(const QString &title)
{
    m_navigationItem.setTitle(title);
    setAccessibleName(title);
}

bool Screen::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && m_defaultButton
        && Keys::isEnter(*static_cast<QKeyEvent *>(event))) {
        event->accept(); // not a shortcut of the host's
        return true;
    }
    return Pane::event(event);
}

void Screen::keyPressEvent(QKeyEvent *event)
{
    if (!m_defaultButton || !Keys::isEnter(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (Keys::acts(*event, *this))
        m_defaultButton->click();
}

void Screen::paintEvent(QPaintEvent *event) { QPainter(this).fillRect(event->rect(), Qt::white); }

void Screen::loadViewIfNeeded()
{
    if (m_loaded)
        return;
    m_loaded = true;
    viewDidLoad();
}

} // namespace parloquin
