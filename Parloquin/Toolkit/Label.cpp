#include "Parloquin/Toolkit/Label.h"

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <cmath>

namespace parloquin {

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

void Label::setLeastHeight(int height)
{
    m_leastHeight = height;
    updateGeometry();
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

void Label::setShrinksToFit(int smallest)
{
    m_smallest = smallest;
    m_drawn = {};
    update();
}

void Label::setFoldsToFit(int smallest)
{
    m_folds = smallest > 0;
    setShrinksToFit(smallest);
}

int Label::heightForWidth(int width) const
{
    return std::max(TextBlock(m_text, face(), width, linesFor(width)).height(), m_leastHeight);
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
    const int lines = linesFor(place.width());
    const auto layOut = [&] {
        TextBlock whole(m_text, face(), place.width(), lines);
        return m_smallest > 0 && whole.isElided()
            ? TextBlock::shrunk(m_text, face(), place.size(), m_folds ? 0 : m_lines, m_smallest)
            : whole;
    };
    m_drawn.of(m_text, face(), place.size(), lines, layOut).draw(painter, place, alignment);
}

} // namespace parloquin
