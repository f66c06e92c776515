#include "Parloquin/Toolkit/Scrolling.h"

#include <QtGui/QWheelEvent>
#include <QtWidgets/QScroller>

namespace parloquin::Scrolling {

namespace {
constexpr int step = 60; // px a notch
constexpr int notch = 120; // of a wheel, in its own units
}

int distanceOf(const QWheelEvent &event)
{
    const int pixels = event.pixelDelta().y();
    return pixels != 0 ? -pixels : -event.angleDelta().y() * step / notch;
}

void prepare(QEvent &event, const QSize &viewport, int offset, int most)
{
    auto &asked = static_cast<QScrollPrepareEvent &>(event);
    asked.setViewportSize(viewport);
    asked.setContentPosRange(QRectF(0, 0, 0, most));
    asked.setContentPos(QPointF(0, offset));
    asked.accept();
}

int targetOf(const QEvent &event)
{
    return qRound(static_cast<const QScrollEvent &>(event).contentPos().y());
}

} // namespace parloquin::Scrolling
