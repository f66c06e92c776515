#include "Parloquin/Toolkit/Button.h"

#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TextBlock.h"

#include <QtGui/QPainter>

#include <cmath>

namespace parloquin {

Button::Button(QWidget *parent)
    : Tappable(parent)
    , m_background(Qt::transparent)
    , m_titleColor(Qt::white)
    , m_face(16, QFont::DemiBold)
{
}

void Button::setBackgroundColor(const QColor &color)
{
    m_background = color;
    update();
}

void Button::setTitleColor(const QColor &color)
{
    m_titleColor = color;
    update();
}

void Button::setFontSize(int pixels, QFont::Weight weight)
{
    m_face = Typeface(pixels, weight);
    updateGeometry();
    update();
}

void Button::setCornerRadius(qreal radius)
{
    m_radius = radius;
    update();
}

void Button::setShowsPress(bool shows) { m_showsPress = shows; }

int Button::heightForWidth(int width) const
{
    return TextBlock::brokenAtSentence(text(), m_face.font(), width).height();
}

QSize Button::sizeHint() const
{
    const TextBlock block(text(), m_face.font(), QWIDGETSIZE_MAX, 0);
    return { static_cast<int>(std::ceil(block.naturalWidth())), block.height() };
}

void Button::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal press = m_showsPress ? pressStrength() : 0;
    const bool filled = m_background.alpha() > 0;

    if (filled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_background);
        painter.drawRoundedRect(rect(), m_radius, m_radius);
        painter.setBrush(QColor(0, 0, 0, qRound(51 * press)));
        painter.drawRoundedRect(rect(), m_radius, m_radius);
    } else {
        painter.setOpacity(1 - press / 2);
    }
    painter.setPen(m_titleColor);
    TextBlock::brokenAtSentence(text(), m_face.font(), width())
        .draw(painter, rect(), Qt::AlignHCenter | Qt::AlignVCenter);
}

} // namespace parloquin
