#include "Parloquin/Toolkit/TappableView.h"

#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QPainter>

namespace parloquin {

void TappableView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    look().paintGround(painter, rect(), look().ground);
    auto pressed = Style::pressedRow;
    pressed.setAlphaF(static_cast<float>(pressStrength()));
    look().paintGround(painter, rect(), pressed);
    look().paintFrame(painter, rect());
}

} // namespace parloquin
