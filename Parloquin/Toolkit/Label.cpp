#include "Parloquin/Toolkit/Label.h"

#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TextBlock.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

#include <cmath>

namespace parloquin {

namespace {
constexpr int smallest = 6; // px, that a text shrinks to
}

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
    if (m_shrinks && block.isElided()) {
        const auto shrinkTo = [&](int pixels) {
            drawn.setPixelSize(pixels);
            block = TextBlock(text(), drawn, width(), m_lines);
        };
        const int wanted = drawn.pixelSize();
        shrinkTo(smallest);
        // Advances do not scale exactly with the size: step down until it fits. What never fits, a
        // text of any length, is not laid out at each size.
        if (!block.isElided()) {
            shrinkTo(wanted - 1);
            while (block.isElided())
                shrinkTo(drawn.pixelSize() - 1);
        }
    }
    block.draw(painter, rect(), QStyle::visualAlignment(layoutDirection(), alignment()));
}

} // namespace parloquin
