#include "Parloquin/Toolkit/Button.h"

#include "Parloquin/Toolkit/DevicePixels.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TextBlock.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace parloquin {

namespace {
constexpr int offerMargin = 12; // px between an offer's edge and its text
constexpr int endMargin = 7; // px over and under a text of several lines
constexpr int softHeight = 55; // px at least
}

Button::Button(Kind kind, const QString &title, QWidget *parent)
    : Tappable(parent)
    , m_kind(kind)
    , m_face(kind == Kind::link ? Typeface(17, QFont::Normal) : Typeface(16, QFont::DemiBold))
{
    setText(title);
}

qreal Button::cornerRadius() const { return m_kind == Kind::link ? 0 : Style::cornerRadius; }

int Button::lineHeight() const { return Style::lineSpacing(m_face.font(), text()); }

TextBlock Button::block(int width) const
{
    return TextBlock::brokenAtSentence(
        text(), m_face.font(), m_kind == Kind::soft ? width - 2 * offerMargin : width);
}

int Button::heightForWidth(int width) const
{
    const int height = block(width).height();
    return m_kind == Kind::soft ? std::max(height + 2 * endMargin, softHeight) : height;
}

QSize Button::sizeHint() const
{
    const TextBlock block(text(), m_face.font(), QWIDGETSIZE_MAX, 0);
    return { static_cast<int>(std::ceil(block.naturalWidth())), block.height() };
}

void Button::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_kind != Kind::link) {
        auto press = m_kind == Kind::filled ? Style::pressTint : Style::softPressTint;
        press.setAlphaF(press.alphaF() * static_cast<float>(pressStrength()));
        for (const auto &color : { m_kind == Kind::filled ? Style::blue : Style::softBlue, press })
            DevicePixels::fillBox(painter, rect(), Style::cornerRadius, color);
    }
    painter.setPen(m_kind == Kind::filled ? QColor(Qt::white) : Style::blue);
    block(width()).draw(painter, rect(), Qt::AlignHCenter | Qt::AlignVCenter);
}

} // namespace parloquin
