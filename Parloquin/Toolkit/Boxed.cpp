#include "Parloquin/Toolkit/Boxed.h"

#include "Parloquin/Toolkit/DevicePixels.h"

#include <QtGui/QPainter>

namespace parloquin {

void BoxLook::paintGround(QPainter &painter, const QRect &box, const QColor &color) const
{
    if (color.isValid() && color.alpha() > 0)
        DevicePixels::fillBox(painter, box, radius, color);
}

void BoxLook::paintFrame(QPainter &painter, const QRect &box) const
{
    if (frameWidth > 0)
        DevicePixels::drawFrame(painter, box, frameWidth, radius, frame);
}

} // namespace parloquin
