#include "Parloquin/Toolkit/View.h"

#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QPainter>

#include <algorithm>

namespace parloquin {

View::View(QWidget *parent)
    : Tappable(parent)
{
    setTappable(false);
}

void View::setBackgroundColor(const QColor &color)
{
    m_background = color;
    update();
}

void View::setBorder(qreal width, const QColor &color)
{
    m_borderWidth = width;
    m_borderColor = color;
    update();
}

void View::setCornerRadius(qreal radius)
{
    m_radius = radius;
    update();
}

void View::setTappable(bool tappable)
{
    m_tappable = tappable;
    setAttribute(Qt::WA_TransparentForMouseEvents, !tappable);
    setFocusPolicy(tappable ? Qt::TabFocus : Qt::NoFocus);
}

void View::setPressedColor(const QColor &color) { m_pressed = color; }

void View::setRingInside(bool inside) { m_ringInside = inside; }

void View::setRingsFor(QWidget *field) { m_ringField = field; }

void View::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    QRectF box(rect());
    if (isHairline(this)) {
        // The line is thinner than the whole pixels that a widget is made of.
        const qreal line = Style::hairlineWidth(this);
        if (height() == 1)
            box.setHeight(line);
        else
            box.setWidth(line);
    }
    const auto fill = [&](const QColor &color) {
        painter.setBrush(color);
        painter.drawRoundedRect(box, m_radius, m_radius);
    };
    if (m_background.isValid() && m_background.alpha() > 0)
        fill(m_background);
    if (m_tappable && pressStrength() > 0) {
        const bool plain = !m_background.isValid() || m_background.alpha() == 0
            || m_background == QColor(Qt::white);
        auto pressed = m_pressed.isValid() ? m_pressed
            : plain                        ? Style::pressedRow
                                           : QColor(0, 0, 0, 51);
        pressed.setAlphaF(pressed.alphaF() * static_cast<float>(pressStrength()));
        fill(pressed);
    }
    if (m_borderWidth > 0 && m_borderColor.isValid()) {
        const qreal line = m_borderWidth < 1 ? Style::hairlineWidth(this) : m_borderWidth;
        const qreal half = line / 2;
        const qreal round = std::max<qreal>(m_radius - half, 0);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(m_borderColor, line));
        painter.drawRoundedRect(box.adjusted(half, half, -half, -half), round, round);
    }
}

} // namespace parloquin
