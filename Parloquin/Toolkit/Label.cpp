#include "Parloquin/Toolkit/Label.h"

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <cmath>

namespace parloquin {

namespace {
constexpr int smallest = 6; // px, that a text shrinks to
}

Label::Label(QWidget *parent)
    : Pane(parent)
    , m_face(17, QFont::Normal)
    , m_color(Style::ink)
{
    installAccessibility();
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Label::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    updateGeometry();
    update();
    if (isVisible()) {
        QAccessibleEvent changed(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&changed);
    }
}

void Label::setFontSize(int pixels, QFont::Weight weight)
{
    m_face = Typeface(pixels, weight);
    updateGeometry();
    update();
}

void Label::setTextColor(const QColor &color)
{
    m_color = color;
    update();
}

void Label::setAlignment(Qt::Alignment alignment)
{
    m_alignment = alignment;
    update();
}

void Label::setNumberOfLines(int lines)
{
    m_lines = lines;
    updateGeometry();
    update();
}

void Label::setMostHeight(int height)
{
    if (height == m_mostHeight)
        return;
    m_mostHeight = height;
    updateGeometry();
    update();
}

int Label::linesFor(int width) const
{
    if (m_lines > 0 || m_mostHeight == QWIDGETSIZE_MAX)
        return m_lines;
    const TextBlock &whole = m_drawn.of(m_text, face(), width, 0);
    if (whole.height() <= std::max(m_mostHeight, 0)) // an empty one has no line
        return 0;
    const int line = whole.height() / static_cast<int>(whole.lines().size());
    return std::max(m_mostHeight / line, 1);
}

void Label::setShrinksToFit(bool shrinks)
{
    m_shrinks = shrinks;
    update();
}

int Label::heightForWidth(int width) const
{
    return TextBlock(m_text, face(), width, linesFor(width)).height();
}

QSize Label::sizeHint() const
{
    const TextBlock block(m_text, face(), QWIDGETSIZE_MAX, m_lines);
    return { static_cast<int>(std::ceil(block.naturalWidth())), block.height() };
}

void Label::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawText(painter, rect());
}

void Label::drawText(QPainter &painter, const QRect &place)
{
    painter.setPen(m_color);
    const Qt::Alignment alignment = QStyle::visualAlignment(layoutDirection(), m_alignment);
    const TextBlock &whole = m_drawn.of(m_text, face(), place.width(), linesFor(place.width()));
    if (!m_shrinks || !whole.isElided()) {
        whole.draw(painter, place, alignment);
        return;
    }
    auto drawn = face();
    const int wanted = drawn.pixelSize();
    const auto shrunkTo = [&](int pixels) {
        drawn.setPixelSize(pixels);
        return TextBlock(m_text, drawn, place.width(), m_lines);
    };
    TextBlock block = shrunkTo(smallest);
    // Advances do not scale exactly with the size: step down until it fits. What never fits, a text
    // of any length, is not laid out at each size.
    if (!block.isElided()) {
        block = shrunkTo(wanted - 1);
        while (block.isElided())
            block = shrunkTo(drawn.pixelSize() - 1);
    }
    block.draw(painter, place, alignment);
}

} // namespace parloquin
