#pragma once

#include <QtCore/QPointF>
#include <QtCore/QtGlobal>

#include <optional>

class QWidget;

namespace parloquin {

/// \brief Tells a drag sideways from the leading edge, which goes back a screen, from taps and
/// scrolls.
class EdgeDrag {
public:
    /// \param page whose edge counts, its layout direction saying which
    explicit EdgeDrag(QWidget *page)
        : m_page(page)
    {
    }

    // Places are global, times in milliseconds.
    void press(const QPointF &at, quint64 time);
    /// \return true in the very move that makes it a drag
    bool move(const QPointF &at, quint64 time);
    /// \return whether the page is to go: dragged far enough, or thrown
    [[nodiscard]] bool release();
    void cancel();

    [[nodiscard]] bool isDragging() const { return m_dragging; }
    /// How much of the page's width the finger has come, 0..1.
    [[nodiscard]] qreal progress() const;

private:
    [[nodiscard]] qreal inwards(const QPointF &from, const QPointF &to) const;

    QWidget *m_page;
    std::optional<QPointF> m_pressedAt;
    QPointF m_at;
    quint64 m_time = 0;
    qreal m_speed = 0; // px/ms, inwards
    bool m_dragging = false;
};

} // namespace parloquin
