#include "sandbox/messenger/TapButton.h"

#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace messenger {
namespace {
constexpr qreal radius = 6; // px, as all below
constexpr int solidHeight = 55;
constexpr int lineHeight = 48;
constexpr int barMargin = 16;
constexpr int leastBarWidth = 60;
constexpr qreal glyphWidth = 15.5;
constexpr qreal glyphGap = 11.5;

/// A paper plane in a square of one.
QPainterPath plane()
{
    QPainterPath path;
    path.moveTo(0, 0);
    path.lineTo(1, 0.5);
    path.lineTo(0, 1);
    path.lineTo(0.1, 0.58);
    path.lineTo(0.62, 0.5);
    path.lineTo(0.1, 0.42);
    path.closeSubpath();
    return path;
}
}

TapButton::TapButton(Kind kind, AppLook look, const QString &text, QWidget *parent)
    : QAbstractButton(parent)
    , m_kind(kind)
    , m_look(std::move(look))
{
    setText(text);
    setAccessibleName(text);
    auto ownFont = font();
    ownFont.setPixelSize(kind == Kind::solid ? 16 : 17);
    ownFont.setWeight(kind == Kind::solid ? QFont::DemiBold : QFont::Normal);
    setFont(ownFont);
    setFixedHeight(kind == Kind::solid ? solidHeight : lineHeight);
    setFocusPolicy(Qt::StrongFocus);
}

QSize TapButton::sizeHint() const
{
    const auto width = fontMetrics().horizontalAdvance(text());
    return { m_kind == Kind::solid ? width : std::max(width + 2 * barMargin, leastBarWidth),
        height() };
}

void TapButton::paintRing(QPainter &painter) const
{
    if (!m_ring)
        return;
    painter.setPen(QPen(m_look.ink, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(4, 4, -4, -4), radius - 2, radius - 2);
}

void TapButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_kind == Kind::plain) {
        painter.setOpacity(isDown() ? 0.5 : 1);
        painter.setPen(m_look.ink);
        painter.drawText(rect(), Qt::AlignCenter, text());
        return paintRing(painter);
    }

    painter.setOpacity(isEnabled() ? 1 : 0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_look.colour);
    painter.drawRoundedRect(rect(), radius, radius);
    if (isDown()) {
        painter.setBrush(QColor(0, 0, 0, 51));
        painter.drawRoundedRect(rect(), radius, radius);
    }
    const qreal textWidth = fontMetrics().horizontalAdvance(text());
    const auto left = (width() - glyphWidth - glyphGap - textWidth) / 2;
    // The plane flies on where the text begins, whichever way that is read.
    const bool mirrored = isRightToLeft();
    painter.save();
    painter.translate(mirrored ? width() - left : left, (height() - glyphWidth) / 2);
    painter.scale(mirrored ? -glyphWidth : glyphWidth, glyphWidth);
    painter.setPen(QPen(m_look.ink, 0.06, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(m_look.ink);
    painter.drawPath(plane());
    painter.restore();
    painter.setPen(m_look.ink);
    painter.drawText(
        QRectF(mirrored ? left - 1 : left + glyphWidth + glyphGap, 0, textWidth + 1, height()),
        static_cast<int>((Qt::AlignVCenter | (mirrored ? Qt::AlignRight : Qt::AlignLeft)).toInt()),
        text());
    paintRing(painter);
}

void TapButton::focusInEvent(QFocusEvent *event)
{
    m_ring = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QAbstractButton::focusInEvent(event);
    update();
}

void TapButton::focusOutEvent(QFocusEvent *event)
{
    m_ring = false;
    QAbstractButton::focusOutEvent(event);
    update();
}

}
