#include "Parloquin/Toolkit/TextBlock.h"

#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <utility>

namespace parloquin {

namespace {

// Characters, several screens full. What a service sends beyond would take minutes to lay out.
constexpr qsizetype mostText = 4096;

QString bounded(const QString &text)
{
    return text.size() > mostText ? text.left(mostText) + QChar(0x2026) : text;
}

QTextOption optionFor(bool rightToLeft)
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    return option;
}

QString withoutEndingBlanks(QString text)
{
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    return text;
}

// Each line ends where a word of the text does, the last one with it.
bool keepsWords(const TextBlock &block, const QString &text)
{
    QString lines;
    for (const QString &line : block.lines())
        lines += line + QLatin1Char(' ');
    return lines.simplified() == text.simplified();
}

}

TextBlock::TextBlock(const QString &text, const QFont &font, qreal width, int lines)
    : m_font(font)
    , m_spacing(Style::lineSpacing(font, text))
    , m_rightToLeft(text.isRightToLeft())
{
    if (text.isEmpty())
        return;

    QString source = bounded(text);
    if (lines == 1) {
        source.replace(QLatin1Char('\n'), QLatin1Char(' '));
        source.replace(QChar::LineSeparator, QLatin1Char(' '));
        source = withoutEndingBlanks(std::move(source));
        m_layouts.push_back(layOut(source));
        m_isElided = m_layouts[0]->lineAt(0).naturalTextWidth() > width;
        if (m_isElided) {
            m_layouts.clear();
            source = elided(source, font, width);
        }
        m_lines.push_back(source);
        return;
    }

    source.replace(QLatin1Char('\n'), QChar::LineSeparator);
    QTextLayout layout(source, font);
    layout.setTextOption(optionFor(m_rightToLeft));
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max<qreal>(width, 1));
        const int start = line.textStart();
        const bool last = lines > 0 && static_cast<int>(m_lines.size()) == lines - 1;
        const bool more = start + line.textLength() < source.size();
        if (last && (more || line.naturalTextWidth() > width)) {
            auto rest = source.mid(start);
            rest.replace(QChar::LineSeparator, QLatin1Char(' '));
            m_lines.push_back(elided(rest, font, width));
            m_isElided = true;
            break;
        }
        // The blank a line broke at takes no room.
        m_lines.push_back(withoutEndingBlanks(source.mid(start, line.textLength())));
        if (last)
            break; // a break at the text's end would begin one line more
    }
    layout.endLayout();
}

// Advances do not scale exactly with the size: step down until it fits. What never fits, a text of
// any length, is not laid out at each size.
TextBlock TextBlock::shrunk(
    const QString &text, const QFont &font, QSize place, int lines, int smallest)
{
    QFont drawn = font;
    const auto shrunkTo = [&](int pixels) {
        drawn.setPixelSize(pixels);
        const int fold = std::max(place.height() / Style::lineSpacing(drawn, text), 1);
        return TextBlock(text, drawn, place.width(), lines > 0 ? lines : fold);
    };
    TextBlock block = shrunkTo(smallest);
    if (block.isElided())
        return block;
    const bool wordsFit = keepsWords(block, text); // not so where a script knows no blanks
    block = shrunkTo(font.pixelSize() - 1);
    while (block.isElided() || (wordsFit && !keepsWords(block, text)))
        block = shrunkTo(drawn.pixelSize() - 1);
    return block;
}

TextBlock TextBlock::brokenAtSentence(const QString &text, const QFont &font, qreal width)
{
    TextBlock greedy(text, font, width, 0);
    if (greedy.m_lines.size() != 2)
        return greedy;
    for (qsizetype at = 0; at + 1 < text.size(); ++at) {
        const bool ends = text[at] == QLatin1Char('?') || text[at] == QLatin1Char('.')
            || text[at] == QLatin1Char('!') || text[at] == QChar(0x61f);
        if (!ends || !text[at + 1].isSpace())
            continue;
        auto broken = text;
        broken[at + 1] = QLatin1Char('\n');
        TextBlock block(broken, font, width, 0);
        return block.m_lines.size() == 2 ? block : greedy;
    }
    return greedy;
}

QString TextBlock::elided(const QString &text, const QFont &font, qreal width)
{
    const QString cut = QFontMetricsF(font).elidedText(text, Qt::ElideRight, width);
    const auto dots = std::ranges::mismatch(cut, text).in1 - cut.begin();
    return withoutEndingBlanks(cut.left(dots)) + cut.mid(dots);
}

int TextBlock::height() const { return static_cast<int>(m_lines.size()) * m_spacing; }

qreal TextBlock::naturalWidth() const
{
    qreal widest = 0;
    for (std::size_t line = 0; line < m_lines.size(); ++line)
        widest = std::max(widest, layoutOf(line).lineAt(0).naturalTextWidth());
    return widest;
}

std::shared_ptr<QTextLayout> TextBlock::layOut(const QString &line) const
{
    auto layout = std::make_shared<QTextLayout>(line, m_font);
    auto option = optionFor(m_rightToLeft);
    option.setWrapMode(QTextOption::NoWrap);
    layout->setTextOption(option);
    layout->setCacheEnabled(true); // else drawing shapes the text once more
    layout->beginLayout();
    layout->createLine();
    layout->endLayout();
    return layout;
}

const QTextLayout &TextBlock::layoutOf(std::size_t line) const
{
    m_layouts.resize(m_lines.size());
    if (!m_layouts[line])
        m_layouts[line] = layOut(m_lines[line]);
    return *m_layouts[line];
}

void TextBlock::draw(QPainter &painter, const QRectF &rect, Qt::Alignment alignment) const
{
    qreal y = rect.top();
    if (alignment & Qt::AlignVCenter)
        y += (rect.height() - height()) / 2;

    const QFontMetricsF metrics(m_font);
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const QTextLayout &layout = layoutOf(i);
        const auto line = layout.lineAt(0);
        const qreal free = rect.width() - line.naturalTextWidth();
        qreal x = rect.left();
        if (alignment & Qt::AlignHCenter)
            x += free / 2;
        else if (alignment & Qt::AlignRight)
            x += free;
        // Not by the line's height: Qt rounds ascent and descent up, each for itself.
        const qreal baseline = y + (m_spacing + metrics.ascent() - metrics.descent()) / 2;
        layout.draw(&painter, { x, baseline - line.ascent() });
        y += m_spacing;
    }
}

const TextBlock &KeptTextBlock::of(const QString &text, const QFont &font, int width, int lines)
{
    return of(
        text, font, QSize(width, 0), lines, [&] { return TextBlock(text, font, width, lines); });
}

bool KeptTextBlock::isOther(const QString &text, const QFont &font, QSize place, int lines)
{
    if (m_block && text == m_text && font == m_font && place == m_place && lines == m_lines)
        return false;
    m_text = text;
    m_font = font;
    m_place = place;
    m_lines = lines;
    return true;
}

} // namespace parloquin
