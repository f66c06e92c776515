#pragma once

#include <QtTest/QTest>
#include <QtWidgets/QWidget>

/// \brief Shows a window and waits until it has the focus.
///
/// It asks again and again: a window manager that has just started, or that has just closed another
/// window, misses a request now and then.
[[nodiscard]] inline bool comesToFront(QWidget &window)
{
    window.show();
    return QTest::qWaitFor([&window] {
        window.activateWindow();
        return window.isActiveWindow();
    });
}
