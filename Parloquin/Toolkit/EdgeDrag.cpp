#include "Parloquin/Toolkit/EdgeDrag.h"

#include "Parloquin/Toolkit/Style.h"

#include <QtWidgets/QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace parloquin {

namespace {
constexpr qreal edgeWidth = 20; // px that a finger may miss the edge by
constexpr qreal enough = 0.5; // of the way
constexpr qreal thrown = 0.5; // px/ms
}

// Towards the trailing edge.
qreal EdgeDrag::inwards(const QPointF &from, const QPointF &to) const
{
    const qreal right = to.x() - from.x();
    return m_page->layoutDirection() == Qt::RightToLeft ? -right : right;
}

void EdgeDrag::press(const QPointF &at, quint64 time)
{
    cancel();
    const QPointF place = m_page->mapFromGlobal(at);
    const qreal fromEdge =
        m_page->layoutDirection() == Qt::RightToLeft ? m_page->width() - place.x() : place.x();
    if (place.y() < 0 || fromEdge < 0 || fromEdge >= edgeWidth)
        return;
    m_pressedAt = m_at = at;
    m_time = time;
}

bool EdgeDrag::move(const QPointF &at, quint64 time)
{
    if (!m_pressedAt)
        return false;
    m_speed = inwards(m_at, at) / static_cast<qreal>(std::max<quint64>(time - m_time, 1));
    m_at = at;
    m_time = time;
    if (m_dragging)
        return false;
    const QPointF way = at - *m_pressedAt;
    if (way.manhattanLength() < Style::strayDistance)
        return false;
    if (inwards(*m_pressedAt, at) <= std::abs(way.y())) {
        cancel(); // along the edge, or out of it
        return false;
    }
    m_dragging = true;
    return true;
}

bool EdgeDrag::release()
{
    const bool goes = m_dragging && m_speed > -thrown && (progress() > enough || m_speed > thrown);
    cancel();
    return goes;
}

void EdgeDrag::cancel()
{
    m_pressedAt.reset();
    m_speed = 0;
    m_dragging = false;
}

qreal EdgeDrag::progress() const
{
    if (!m_pressedAt || m_page->width() <= 0)
        return 0;
    return std::clamp<qreal>(inwards(*m_pressedAt, m_at) / m_page->width(), 0, 1);
}

} // namespace parloquin
