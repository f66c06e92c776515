#include "Parloquin/Toolkit/BarButtonItem.h"

#include "Parloquin/Toolkit/FocusRing.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/TextBlock.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace parloquin {

namespace {
constexpr int margin = 16; // px from the bar's edge to the text
constexpr int leastWidth = 60; // px
}

BarButtonItem::BarButtonItem(const QString &title, const QString &name, QWidget *parent)
    : Tappable(parent)
    , m_face(17, QFont::Normal)
{
    setObjectName(name);
    setText(title);
    setAccessibleName(title);
}

QSize BarButtonItem::sizeHint() const
{
    const TextBlock block(text(), m_face.font(), QWIDGETSIZE_MAX, 1);
    const int wide = static_cast<int>(std::ceil(block.naturalWidth())) + 2 * margin;
    return { std::max(wide, leastWidth), NavigationBar::barHeight };
}

void BarButtonItem::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (hasKeyboardFocus())
        FocusRing::paint(painter, QRectF(rect()).adjusted(1, 1, -1, -1), 0, true, Qt::white);
    painter.setOpacity(1 - pressStrength() / 2);
    painter.setPen(Qt::white);
    const TextBlock block(text(), m_face.font(), width(), 1);
    block.draw(painter, rect(), Qt::AlignHCenter | Qt::AlignVCenter);
}

} // namespace parloquin
