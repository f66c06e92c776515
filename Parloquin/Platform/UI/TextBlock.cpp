#include "Parloquin/Platform/UI/TextBlock.h"

#include "Parloquin/Platform/UI/Style.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QTextLayout>

#include <algorithm>

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

// A layout of one line that never wraps; ready to measure and draw.
void layOut(QTextLayout &layout, bool rightToLeft)
{
    auto option = optionFor(rightToLeft);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
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
    source.replace(QLatin1Char('\n'), QChar::LineSeparator);
    const QFontMetricsF metrics(font);
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
            m_lines.push_back(metrics.elidedText(rest, Qt::ElideRight, width));
            break;
        }
        auto piece = source.mid(start, line.textLength());
        while (!piece.isEmpty() && piece.back().isSpace())
            piece.chop(1); // the blank a line broke at takes no room
        m_lines.push_back(piece);
    }
    layout.endLayout();
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

int TextBlock::height() const { return static_cast<int>(m_lines.size()) * m_spacing; }

qreal TextBlock::naturalWidth() const
{
    qreal widest = 0;
    for (const auto &line : m_lines) {
        QTextLayout layout(line, m_font);
        layOut(layout, m_rightToLeft);
        widest = std::max(widest, layout.lineAt(0).naturalTextWidth());
    }
    return widest;
}

void TextBlock::draw(QPainter &painter, const QRectF &rect, Qt::Alignment alignment) const
{
    qreal y = rect.top();
    if (alignment & Qt::AlignVCenter)
        y += (rect.height() - height()) / 2;
    else if (alignment & Qt::AlignBottom)
        y += rect.height() - height();

    const QFontMetricsF metrics(m_font);
    for (const auto &text : m_lines) {
        QTextLayout layout(text, m_font);
        layOut(layout, m_rightToLeft);
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

} // namespace parloquin
