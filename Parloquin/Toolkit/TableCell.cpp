#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/TableView.h"

namespace parloquin {

TableCell::TableCell(QWidget *parent)
    : Pane(parent)
    , m_fade(this, [this] { update(); })
{
    installAccessibility();
}

void TableCell::setState(bool pressed, bool focused)
{
    if (m_pressed == pressed && m_focused == focused)
        return;
    m_pressed = pressed;
    m_focused = focused;
    m_fade.setPressed(pressed);
    stateChanged();
}

} // namespace parloquin
