#include "HostButton.h"

#include "Look.h"

#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>

namespace demo {

namespace {

constexpr int filledHeight = 55; // px
constexpr int textHeight = 44; // px
constexpr qreal radius = 6; // px

QColor between(const QColor &from, const QColor &to, qreal share)
{
    const auto part = [share](int a, int b) { return int(a + (b - a) * share); };
    return { part(from.red(), to.red()), part(from.green(), to.green()),
        part(from.blue(), to.blue()) };
}

} // namespace

HostButton::HostButton(Kind kind, const QString &title, const QString &name, QWidget *parent)
    : QAbstractButton(parent)
    , m_kind(kind)
{
    setTitle(title, title);
    setObjectName(name);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(
        kind == Kind::filled ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Fixed);
    QFont wanted = font();
    wanted.setPixelSize(16);
    wanted.setWeight(QFont::DemiBold);
    setFont(wanted);

    m_fade.setStartValue(1.0);
    m_fade.setEndValue(0.0);
    m_fade.setEasingCurve(QEasingCurve::OutCubic);
    m_fade.setDuration(int(Look::pressFade.count()));
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(this, &QAbstractButton::pressed, this, [this] { m_fade.stop(); });
    connect(this, &QAbstractButton::released, this, [this] { m_fade.start(); });
}

void HostButton::setTitle(const QString &title, const QString &told)
{
    setAccessibleName(told); // first: by another text a reader is told the name that stands then
    setText(title);
}

QSize HostButton::sizeHint() const
{
    const int height = m_kind == Kind::filled ? filledHeight : textHeight;
    const int width = fontMetrics().horizontalAdvance(text()) + 16;
    return { width + 2 * ringMargin, height + 2 * ringMargin };
}

void HostButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(ringMargin, ringMargin, -ringMargin, -ringMargin);
    const bool fading = m_fade.state() == QAbstractAnimation::Running;
    const qreal press = isDown() ? 1 : fading ? m_fade.currentValue().toReal() : 0;

    QColor ink = Look::blue;
    if (m_kind == Kind::filled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            isEnabled() ? between(Look::blue, Look::pressedBlue, press) : Look::disabled);
        painter.drawRoundedRect(body, radius, radius);
        ink = isEnabled() ? QColor(Qt::white) : Look::disabledInk;
    } else {
        ink.setAlphaF(float(1 - press / 2));
    }

    if (m_ring) {
        painter.setPen(QPen(Look::blue, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius + 3, radius + 3);
    }
    painter.setPen(ink);
    painter.drawText(body, Qt::AlignCenter, text());
}

void HostButton::focusInEvent(QFocusEvent *event)
{
    // A ring for who steers by keys; the mouse shows by itself where it is.
    m_ring = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QAbstractButton::focusInEvent(event);
}

bool HostButton::focusNextPrevChild(bool next)
{
    const bool found = QAbstractButton::focusNextPrevChild(next);
    m_ring |= hasFocus(); // it may be the only one on its page
    update();
    return found;
}

void HostButton::focusOutEvent(QFocusEvent *event)
{
    m_ring = false;
    QAbstractButton::focusOutEvent(event);
}

} // namespace demo
