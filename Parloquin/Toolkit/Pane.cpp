#include "Parloquin/Toolkit/Pane.h"

namespace parloquin {

bool Pane::event(QEvent *event)
{
    const bool sheetMayHaveSized = SheetSize::heeds(*event);
    const bool handled = QWidget::event(event);
    if (sheetMayHaveSized) // anything else may have deleted this
        m_sheetSize.follow(*this, *event);
    return handled;
}

} // namespace parloquin
