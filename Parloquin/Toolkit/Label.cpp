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

// Each line ends where a word of the text does, the last one with it.
bool keepsWords(const TextBlock &block, const QString &text)
{
    QString lines;
    for (const QString &line : block.lines())
        lines += line + QLatin1Char(' ');
    return lines.simplified() == text.simplified();
}

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

void Label::setShrinksToFit(int smallest)
{
    m_smallest = smallest;
    m_drawn = {};
    update();
}

void Label::setFoldsToFit(int smallest)
{
    m_folds = true;
    setShrinksToFit(smallest);
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
    const int lines = linesFor(place.width());
    const auto layOut = [&] {
        TextBlock whole(m_text, face(), place.width(), lines);
        return m_smallest > 0 && whole.isElided() ? fitted(place.size()) : whole;
    };
    m_drawn.of(m_text, face(), place.size(), lines, layOut).draw(painter, place, alignment);
}

// Advances do not scale exactly with the size: step down until it fits. What never fits, a text of
// any length, is not laid out at each size.
TextBlock Label::fitted(QSize place) const
{
    QFont drawn = face();
    const int wanted = drawn.pixelSize();
    const auto shrunkTo = [&](int pixels) {
        drawn.setPixelSize(pixels);
        const int fold = std::max(place.height() / Style::lineSpacing(drawn, m_text), 1);
        return TextBlock(m_text, drawn, place.width(), m_folds ? fold : m_lines);
    };
    TextBlock block = shrunkTo(m_smallest);
    if (block.isElided())
        return block;
    const bool wordsFit = keepsWords(block, m_text); // not so where a script knows no blanks
    block = shrunkTo(wanted - 1);
    while (block.isElided() || (wordsFit && !keepsWords(block, m_text)))
        block = shrunkTo(drawn.pixelSize() - 1);
    return block;
}

} // namespace parloquin
