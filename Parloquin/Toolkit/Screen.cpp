#include "Parloquin/Toolkit/Screen.h"

#include "Parloquin/Toolkit/FocusRing.h"
#include "Parloquin/Toolkit/NavigationController.h"

namespace parloquin {

Screen::Screen(QWidget *parent)
    : QWidget(parent)
{
    // Screens slide over each other: none may let another one shine through.
    auto colors = palette();
    colors.setColor(QPalette::Window, Qt::white);
    setPalette(colors);
    setAutoFillBackground(true);
    hide();
    new FocusRing(this);
}

Screen::~Screen() = default;

NavigationController *Screen::navigationController() const { return m_navigationController; }

void Screen::loadViewIfNeeded()
{
    if (m_loaded)
        return;
    m_loaded = true;
    viewDidLoad();
}

} // namespace parloquin
