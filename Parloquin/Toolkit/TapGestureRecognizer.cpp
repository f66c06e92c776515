#include "Parloquin/Toolkit/TapGestureRecognizer.h"

#include <QtGui/QMouseEvent>

#include <utility>

namespace parloquin {

namespace {
constexpr int tapSlop = 10; // px a finger may move and still tap
}

void TapGestureRecognizer::attach(QWidget *view, QWidget *exempt)
{
    detach();
    m_view = view;
    m_exempt = exempt;
    view->installEventFilter(this);
}

void TapGestureRecognizer::detach()
{
    if (m_view)
        m_view->removeEventFilter(this);
    m_view.clear();
    m_pressedAt.reset();
}

bool TapGestureRecognizer::eventFilter(QObject *, QEvent *event)
{
    // The second of two quick taps begins as a double click.
    const bool press =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!press && event->type() != QEvent::MouseButtonRelease)
        return false;

    const QPoint at = static_cast<QMouseEvent *>(event)->globalPosition().toPoint();
    if (press) {
        m_pressedAt.reset();
        if (!m_exempt || !m_exempt->rect().contains(m_exempt->mapFromGlobal(at)))
            m_pressedAt = at;
    } else if (const auto from = std::exchange(m_pressedAt, {});
               from && (at - *from).manhattanLength() < tapSlop) {
        Q_EMIT tapped();
    }
    return false;
}

} // namespace parloquin
