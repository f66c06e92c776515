#include "Parloquin/Toolkit/ArrangedRow.h"

#include <QtCore/QEvent>

#include <algorithm>
#include <utility>

namespace parloquin {

ArrangedRow::ArrangedRow(int wide, int gap, QWidget *parent)
    : Pane(parent)
    , m_wide(wide)
    , m_gap(gap)
{
}

void ArrangedRow::add(QWidget *child)
{
    m_children.append(child);
    arrange();
}

void ArrangedRow::arrange()
{
    if (m_children.isEmpty())
        return;
    const int count = static_cast<int>(m_children.size());
    const int wanted = count * m_wide + (count - 1) * m_gap;
    const int room = std::min(wanted, width());
    const int gap = m_gap * room / wanted;
    const int wide = (room - (count - 1) * gap) / count;
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    int leading = (width() - (count * wide + (count - 1) * gap)) / 2;
    for (QWidget *child : std::as_const(m_children)) {
        child->setGeometry(mirrored ? width() - leading - wide : leading, 0, wide, height());
        leading += wide + gap;
    }
}

void ArrangedRow::resizeEvent(QResizeEvent *) { arrange(); }

void ArrangedRow::changeEvent(QEvent *event)
{
    Pane::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        arrange();
}

} // namespace parloquin
