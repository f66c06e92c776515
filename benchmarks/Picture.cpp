#include "Picture.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int rowHeight = 22; // px
constexpr int head = 40; // px, above the bars
constexpr int names = 380; // px, left of them
constexpr int span = 480; // px, that they may take
constexpr double least = 0.05; // ratio at the left end
constexpr double most = 10; // and at the right

int across(double ratio)
{
    const double part = std::log(std::clamp(ratio, least, most) / least) / std::log(most / least);
    return names + static_cast<int>(std::lround(span * part));
}

QString upright(int x, int from, int to, const char *style)
{
    return QStringLiteral("<line x1='%1' x2='%1' y1='%2' y2='%3' %4/>\n")
        .arg(x)
        .arg(from)
        .arg(to)
        .arg(QLatin1String(style));
}

QString text(int x, int y, const QString &words, const char *style = "")
{
    return QStringLiteral("<text x='%1' y='%2' %3>%4</text>\n")
        .arg(x)
        .arg(y)
        .arg(QLatin1String(style), words.toHtmlEscaped());
}

} // namespace

QByteArray drawn(const std::vector<PictureRow> &rows, const QString &caption)
{
    const int bottom = head + rowHeight * static_cast<int>(rows.size());
    QString svg = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='%1' height='%2' "
                                 "font-family='sans-serif' font-size='12'>\n"
                                 "<rect width='100%' height='100%' fill='white'/>\n")
                      .arg(names + span + 80)
                      .arg(bottom + 40);
    for (const double ratio : { 0.1, 0.5, 1.0, 2.0, 5.0 }) {
        svg += upright(
            across(ratio), head - 6, bottom, ratio == 1 ? "stroke='#555'" : "stroke='#ddd'");
        svg += text(across(ratio), head - 12,
            ratio == 1 ? QStringLiteral("floor") : QString::number(ratio), "text-anchor='middle'");
    }
    int y = head;
    for (const PictureRow &row : rows) {
        const bool isMet = row.ratio <= row.goal;
        svg += text(names - 8, y + 15, row.name, "text-anchor='end'");
        svg += QStringLiteral("<rect x='%1' y='%2' width='%3' height='%4' fill='%5'/>\n")
                   .arg(names)
                   .arg(y + 4)
                   .arg(across(row.ratio) - names)
                   .arg(rowHeight - 8)
                   .arg(isMet ? QLatin1String("#4a90d9") : QLatin1String("#d98a4a"));
        svg +=
            upright(across(row.goal), y + 1, y + rowHeight - 1, "stroke='black' stroke-width='2'");
        svg += text(std::max(across(row.ratio), across(row.goal)) + 6, y + 15,
            QString::number(row.ratio, 'f', 2));
        y += rowHeight;
    }
    svg += text(8, bottom + 18,
        QStringLiteral(
            "Bar: the kit, blue where its goal is met. Black mark: the goal. Line: the same "
            "work without the kit."));
    svg += text(8, bottom + 34, caption, "fill='#555' font-size='10'");
    return (svg + QStringLiteral("</svg>\n")).toUtf8();
}
