#include "Parloquin/Platform/UI/Accessibility.h"
#include "Parloquin/Platform/UI/TableView.h"

namespace parloquin {

TableCell::TableCell(QWidget *parent)
    : QWidget(parent)
    , m_fade(this, [this] { stateChanged(); })
{
    installAccessibility();
}

void TableCell::setState(bool pressed, bool focused)
{
    m_pressed = pressed;
    m_fade.setPressed(pressed);
    if (m_focused == focused)
        return;
    m_focused = focused;
    stateChanged();
}

} // namespace parloquin
