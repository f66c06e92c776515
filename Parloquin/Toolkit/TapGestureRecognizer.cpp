#include "Parloquin/Toolkit/TapGestureRecognizer.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>

#include <utility>

namespace parloquin {

namespace {
constexpr int tapSlop = 10; // px a finger may move and still tap
}

void TapGestureRecognizer::attach(QWidget *view, QWidget *exempt)
{
    if (!m_view)
        // The application sees every press, whichever child takes it.
        QCoreApplication::instance()->installEventFilter(this);
    m_view = view;
    m_exempt = exempt;
    m_pressedAt.reset();
}

void TapGestureRecognizer::detach()
{
    if (std::exchange(m_view, nullptr))
        QCoreApplication::instance()->removeEventFilter(this);
}

bool TapGestureRecognizer::eventFilter(QObject *watched, QEvent *event)
{
    const bool press = event->type() == QEvent::MouseButtonPress;
    if (!press && event->type() != QEvent::MouseButtonRelease)
        return false;
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || !m_view || (widget != m_view && !m_view->isAncestorOf(widget))
        || widget == m_exempt)
        return false;

    const QPoint at = static_cast<QMouseEvent *>(event)->globalPosition().toPoint();
    if (press) {
        m_pressedAt = at;
    } else if (const auto from = std::exchange(m_pressedAt, {});
               from && (at - *from).manhattanLength() < tapSlop) {
        Q_EMIT tapped();
    }
    return false;
}

} // namespace parloquin
