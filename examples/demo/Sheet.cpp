#include "Sheet.h"

#include "Look.h"

#include <QtCore/QEvent>
#include <QtWidgets/QStyle>

#include <utility>

namespace demo {

Sheet::Sheet(QWidget *page, Edge edge)
    : QObject(page)
    , m_page(page)
    , m_edge(edge)
{
    page->parentWidget()->installEventFilter(this);
    m_motion.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_motion, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_out = value.toReal();
        place();
    });
    connect(&m_motion, &QVariantAnimation::finished, this, [this] {
        // Taken out first: the callback may delete the page and this with it.
        if (const auto then = std::exchange(m_then, {}))
            then();
    });
}

void Sheet::slideIn(std::function<void()> then)
{
    place();
    m_page->show();
    m_page->raise();
    run(0, Look::present, std::move(then));
}

void Sheet::slideOut(std::function<void()> then) { run(1, Look::dismiss, std::move(then)); }

void Sheet::cover()
{
    m_then = {};
    m_motion.stop();
    m_out = 0;
    place();
    m_page->show();
}

bool Sheet::isMoving() const { return m_motion.state() == QAbstractAnimation::Running; }

void Sheet::run(qreal to, std::chrono::milliseconds duration, std::function<void()> then)
{
    m_motion.stop();
    m_then = std::move(then);
    const bool animated = m_page->style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
    m_motion.setStartValue(m_out);
    m_motion.setEndValue(to);
    m_motion.setDuration(animated ? int(duration.count()) : 0);
    m_motion.start();
}

void Sheet::place()
{
    const QWidget *ground = m_page->parentWidget();
    QPoint corner;
    if (m_edge == Edge::bottom)
        corner.setY(qRound(m_out * ground->height()));
    else
        corner.setX(qRound(m_out * ground->width())
            * (ground->layoutDirection() == Qt::RightToLeft ? -1 : 1));
    m_page->setGeometry(QRect(corner, ground->size()));
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        place();
    return QObject::eventFilter(watched, event);
}

} // namespace demo
