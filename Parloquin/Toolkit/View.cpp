#include "Parloquin/Toolkit/View.h"

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/DevicePixels.h"

#include <QtGui/QPainter>

namespace parloquin {

View::View(QWidget *parent)
    : Boxed(parent)
{
    installAccessibility();
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void View::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    look().paintGround(painter, rect(), look().ground);
    look().paintFrame(painter, rect());
}

Hairline::Hairline(const QColor &color, QWidget *parent)
    : Pane(parent)
    , m_color(color)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Hairline::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    DevicePixels::drawHairline(painter, rect(), Qt::TopEdge, m_color);
}

} // namespace parloquin
