#include "Parloquin/Platform/UI/Label.h"

#include "Parloquin/Platform/UI/Style.h"
#include "Parloquin/Platform/UI/TextBlock.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

#include <cmath>

namespace parloquin {

Label::Label(QWidget *parent)
    : QLabel(parent)
    , m_color(Style::ink)
{
    setTextFormat(Qt::PlainText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFontSize(17);
}

void Label::setFontSize(int pixels, QFont::Weight weight)
{
    setFont(Style::font(pixels, weight));
    updateGeometry();
}

void Label::setTextColor(const QColor &color)
{
    m_color = color;
    update();
}

void Label::setNumberOfLines(int lines)
{
    m_lines = lines;
    updateGeometry();
    update();
}

void Label::setShrinksToFit(bool shrinks)
{
    m_shrinks = shrinks;
    update();
}

int Label::heightForWidth(int width) const
{
    return TextBlock(text(), font(), width, m_lines).height();
}

QSize Label::sizeHint() const
{
    const TextBlock block(text(), font(), QWIDGETSIZE_MAX, m_lines);
    return { static_cast<int>(std::ceil(block.naturalWidth())), block.height() };
}

void Label::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_color);
    auto drawn = font();
    TextBlock block(text(), drawn, width(), m_lines);
    // Advances do not scale exactly with the size: step down until it fits.
    while (m_shrinks && block.isElided() && drawn.pixelSize() > 6) {
        drawn.setPixelSize(drawn.pixelSize() - 1);
        block = TextBlock(text(), drawn, width(), m_lines);
    }
    block.draw(painter, rect(), QStyle::visualAlignment(layoutDirection(), alignment()));
}

} // namespace parloquin
