#pragma once

#include <QtGui/QMouseEvent>
#include <QtGui/QPointingDevice>

namespace parloquin {

/// Fingers reach most widgets as a mouse does; some do not mean the same.
[[nodiscard]] inline bool isFinger(const QMouseEvent &event)
{
    return event.pointerType() == QPointingDevice::PointerType::Finger;
}

} // namespace parloquin
