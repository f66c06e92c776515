#include "sandbox/messenger/Panels.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextBoundaryFinder>
#include <QtGui/QPainter>
#include <QtWidgets/QVBoxLayout>

namespace messenger {
namespace {
constexpr qreal bubbleRadius = 12; // px
constexpr int lineSpacing = 22; // px
constexpr int roomForWord = 200; // px, in a bubble of a window of 320

/// The message comes from outside: nothing in it may act as markup.
QString markUp(const QString &text)
{
    static const QRegularExpression code(QStringLiteral("\\b([A-Z0-9]{4}-[A-Z0-9]{4})\\b"));
    auto safe = text.toHtmlEscaped();
    safe.replace(code, QStringLiteral("<span style=\"font-weight:600\">\\1</span>"));
    safe.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return QStringLiteral("<p style=\"line-height:%1px;margin:0\">%2</p>")
        .arg(lineSpacing)
        .arg(safe);
}
}

QString foldable(const QString &text, const QFont &font)
{
    static const QRegularExpression word(QStringLiteral("\\S{8,}"));
    const QFontMetrics metrics(font);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    QString folded;
    qsizetype from = 0;
    for (auto all = word.globalMatch(text); all.hasNext();) {
        const auto each = all.next();
        if (metrics.horizontalAdvance(each.captured()) <= roomForWord)
            continue;
        characters.setPosition(each.capturedStart());
        for (auto at = characters.toNextBoundary(); at != -1 && at < each.capturedEnd();
             at = characters.toNextBoundary()) {
            folded += QStringView(text).mid(from, at - from);
            folded += QChar(0x200b); // a blank of no width
            from = at;
        }
    }
    folded += QStringView(text).mid(from);
    return folded;
}

QSize Line::minimumSizeHint() const
{
    const auto least = QLabel::minimumSizeHint();
    return wordWrap() ? least : QSize(0, least.height());
}

void Line::paintEvent(QPaintEvent *event)
{
    if (wordWrap() || fontMetrics().horizontalAdvance(text()) <= width())
        return QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment().toInt()),
        fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

Panel::Panel(const QColor &fill, QWidget *parent)
    : QWidget(parent)
    , m_fill(fill)
{
}

void Panel::setLine(Qt::Edge edge, const QColor &colour)
{
    m_edge = edge;
    m_line = colour;
}

void Panel::setShadeAtBottom(int depth) { m_shade = depth; }

void Panel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_fill);
    if (m_shade > 0) {
        QLinearGradient shade(0, height() - m_shade, 0, height());
        shade.setColorAt(0, QColor(17, 34, 26, 0));
        shade.setColorAt(1, QColor(17, 34, 26, 12));
        painter.fillRect(0, height() - m_shade, width(), m_shade, shade);
    }
    if (!m_line.isValid())
        return;
    const auto line = 1 / devicePixelRatioF(); // one device pixel
    const auto top = m_edge == Qt::TopEdge ? 0 : height() - line;
    painter.fillRect(QRectF(0, top, width(), line), m_line);
}

Bubble::Bubble(const QString &text, const QColor &fill, const QColor &border, const QColor &ink,
    QWidget *parent)
    : QWidget(parent)
    , m_fill(fill)
    , m_border(border)
{
    auto *label = new QLabel(this);
    label->setTextFormat(Qt::RichText);
    label->setAccessibleName(text);
    label->setWordWrap(true);
    auto colours = label->palette();
    colours.setColor(QPalette::WindowText, ink);
    label->setPalette(colours);
    auto ownFont = label->font();
    ownFont.setPixelSize(16);
    label->setFont(ownFont);
    label->setText(markUp(foldable(text, ownFont)));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(17, 15, 17, 17);
    column->addWidget(label);
}

void Bubble::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_border, 1));
    painter.setBrush(m_fill);
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), bubbleRadius, bubbleRadius);
}

TickDisc::TickDisc(QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(40, 40);
}

void TickDisc::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xe4, 0xe6, 0xff));
    painter.drawEllipse(rect());
    painter.setPen(QPen(Qt::blue, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF tick[] = { { 13.5, 21 }, { 17.8, 25.5 }, { 26.5, 15.5 } };
    painter.drawPolyline(tick, std::size(tick));
}

Pill::Pill(const QString &text, const QColor &fill, QWidget *parent)
    : QLabel(text, parent)
    , m_fill(fill)
{
    auto ownFont = font();
    ownFont.setPixelSize(12);
    ownFont.setWeight(QFont::Medium);
    setFont(ownFont);
    setFixedHeight(28);
    setContentsMargins(14, 0, 14, 0);
    setAlignment(Qt::AlignCenter);
    auto colours = palette();
    colours.setColor(QPalette::WindowText, QColor(0x3f, 0x4a, 0x45));
    setPalette(colours);
}

void Pill::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_fill);
        painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
    }
    QLabel::paintEvent(event);
}

}
