#include "Parloquin/Toolkit/TableParts.h"

#include "Parloquin/Toolkit/DevicePixels.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace parloquin {

namespace {
constexpr int textMargin = 15; // px
constexpr qreal fullPitch = 20; // px a letter
constexpr qreal leastPitch = 14; // px
constexpr int strayWidth = 44; // px from the edge that a drag may stray
constexpr int thumbWidth = 3; // px
constexpr int thumbInset = 2; // px
constexpr qint64 leastThumb = 36; // px
}

TableHeader::TableHeader(QWidget *table)
    : Label(table)
{
    setFontSize(14, QFont::DemiBold);
    setTextColor(Style::headerInk);
}

void TableHeader::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Style::headerBackground);
    DevicePixels::drawHairline(painter, rect(), Qt::BottomEdge, Style::hairline);
    drawText(painter, rect().adjusted(textMargin, 0, -textMargin, 0));
}

TableShadow::TableShadow(QWidget *table)
    : Pane(table)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TableShadow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QLinearGradient fall(0, 0, 0, height());
    fall.setColorAt(0, QColor(17, 19, 34, 20));
    fall.setColorAt(0.4, QColor(17, 19, 34, 8));
    fall.setColorAt(1, QColor(17, 19, 34, 0));
    painter.fillRect(rect(), fall);
}

TableIndex::TableIndex(QWidget *table)
    : Pane(table)
    , m_face(12, QFont::DemiBold)
{
    setObjectName(QStringLiteral("sectionIndex"));
}

void TableIndex::setLetters(const QStringList &letters)
{
    m_letters = letters;
    m_drawn.resize(static_cast<std::size_t>(letters.size()));
    m_chosen = -1;
    update();
}

QString TableIndex::text() const { return m_letters.join(QLatin1Char('\n')); }

// Letters move closer where they must; closer than legible, only every second one (or third) is
// drawn, and the ones between are still hit.
TableIndex::Pitch TableIndex::pitch() const
{
    Pitch pitch;
    const auto count = static_cast<int>(m_letters.size());
    int drawn = count;
    while (drawn > 1 && drawn * leastPitch > height()) {
        ++pitch.step;
        drawn = (count + pitch.step - 1) / pitch.step;
    }
    if (drawn > 0)
        pitch.height = std::min(fullPitch, static_cast<qreal>(height()) / drawn);
    pitch.top = (height() - drawn * pitch.height) / 2;
    return pitch;
}

void TableIndex::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(Style::blue);
    const auto pitch = this->pitch();
    qreal y = pitch.top;
    for (int letter = 0; letter < m_letters.size(); letter += pitch.step) {
        m_drawn[static_cast<std::size_t>(letter)]
            .of(m_letters[letter], m_face.font(), width(), 1)
            .draw(painter, QRectF(0, y, width(), pitch.height), Qt::AlignCenter);
        y += pitch.height;
    }
}

void TableIndex::mousePressEvent(QMouseEvent *event)
{
    m_chosen = -1;
    choose(event->position());
}

void TableIndex::mouseMoveEvent(QMouseEvent *event)
{
    const bool fromLeft = layoutDirection() == Qt::RightToLeft;
    const qreal away = fromLeft ? event->position().x() : width() - event->position().x();
    if ((event->buttons() & Qt::LeftButton) && away <= strayWidth)
        choose(event->position());
}

void TableIndex::mouseReleaseEvent(QMouseEvent *) { m_chosen = -1; }

void TableIndex::choose(const QPointF &position)
{
    if (m_letters.isEmpty() || height() <= 0) // shrunk away beneath a finger
        return;
    const auto pitch = this->pitch();
    const auto at = std::floor((position.y() - pitch.top) * pitch.step / pitch.height);
    const int letter = std::clamp(static_cast<int>(at), 0, static_cast<int>(m_letters.size()) - 1);
    if (letter == m_chosen)
        return;
    m_chosen = letter;
    Q_EMIT chosen(letter);
}

TableThumb::TableThumb(QWidget *table)
    : Pane(table)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    m_timer.setSingleShot(true);
    m_timer.setInterval(Style::scrollThumb);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::hide);
}

void TableThumb::showFor(int offset, int content)
{
    const int view = parentWidget()->height();
    if (content <= view)
        return;
    // A long list has more pixels than an int can multiply.
    const qint64 track = view - 2 * thumbInset;
    const qint64 length = std::clamp(track * view / content, std::min(leastThumb, track), track);
    const qint64 y = thumbInset + (track - length) * offset / (content - view);
    const int x = layoutDirection() == Qt::RightToLeft
        ? thumbInset
        : parentWidget()->width() - thumbInset - thumbWidth;
    setGeometry(x, static_cast<int>(y), thumbWidth, static_cast<int>(length));
    raise();
    show();
    m_timer.start();
}

void TableThumb::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    DevicePixels::fillBox(painter, rect(), thumbWidth / 2.0, QColor(17, 19, 34, 89));
}

} // namespace parloquin
