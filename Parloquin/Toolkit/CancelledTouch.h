#pragma once

#include <QtCore/QEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

/// \brief Touches that the system takes for itself, as for a gesture of its own: they mean nothing
/// that was touched.
///
/// Where Qt hands a touch on as a mouse, the widget under it only sees a release, like a tap's,
/// when the touch is cancelled. The window is told of it first.
namespace parloquin::CancelledTouch {

/// Has a widget that a finger presses filter its window's events.
inline void watch(QWidget &widget)
{
    if (QWindow *const window = widget.window()->windowHandle())
        window->installEventFilter(&widget); // once, however often
}

/// In that filter.
[[nodiscard]] inline bool happens(const QObject *watched, const QEvent &event)
{
    return event.type() == QEvent::TouchCancel && watched->isWindowType();
}

} // namespace parloquin::CancelledTouch
