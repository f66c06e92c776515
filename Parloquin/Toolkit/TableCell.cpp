#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/TableView.h"

namespace parloquin {

TableCell::TableCell(QWidget *parent)
    : Pane(parent)
    , m_fade(this, [this] { showStrength(); })
{
    installAccessibility();
}

// The table shows it too, beside the row and at the line over it.
void TableCell::showStrength()
{
    if (auto *const table = parentWidget())
        table->update(0, y() - 1, table->width(), height() + 1);
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
