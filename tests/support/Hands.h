#pragma once

#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QPointingDevice>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <gtest/gtest.h>

#include <memory>

/// \brief What a person does, given to the window as the device does it: who gets it is for the
/// window to find out.
namespace hands {

inline const QWidget *there(const QWidget *widget)
{
    [=] { ASSERT_NE(widget, nullptr) << "nothing there to touch"; }(); // ends the case
    return widget;
}
inline QPoint middleOf(const QWidget *widget) { return there(widget)->rect().center(); }
/// Of a widget, or a place in it, in its window.
inline QPoint placeOf(const QWidget *widget, QPoint at)
{
    return there(widget)->mapTo(widget->window(), at);
}
inline QPoint placeOf(const QWidget *widget) { return placeOf(widget, middleOf(widget)); }

inline void click(const QWidget *widget, QPoint at, Qt::MouseButton button = Qt::LeftButton)
{
    QTest::mouseClick(there(widget)->window()->windowHandle(), button, {}, placeOf(widget, at));
}
inline void click(const QWidget *widget) { click(widget, middleOf(widget)); }
inline void press(const QWidget *widget, QPoint at)
{
    QTest::mousePress(
        there(widget)->window()->windowHandle(), Qt::LeftButton, {}, placeOf(widget, at));
}
inline void press(const QWidget *widget) { press(widget, middleOf(widget)); }
/// With the button still down.
inline void moveTo(const QWidget *widget, QPoint at)
{
    QTest::mouseMove(there(widget)->window()->windowHandle(), placeOf(widget, at));
}
inline void release(const QWidget *widget, QPoint at)
{
    QTest::mouseRelease(
        there(widget)->window()->windowHandle(), Qt::LeftButton, {}, placeOf(widget, at));
}
inline void release(const QWidget *widget) { release(widget, middleOf(widget)); }

/// Turned there; a wheel tells angles only, a touchpad pixels besides.
inline void wheel(const QWidget *widget, QPoint at, QPoint pixels, QPoint angle)
{
    QWheelEvent event(placeOf(widget, at), widget->mapToGlobal(at), pixels, angle, Qt::NoButton, {},
        Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    QCoreApplication::instance()->notify(widget->window()->windowHandle(), &event);
}

inline void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(QGuiApplication::focusWindow(), key, modifiers);
}
inline void keys(const QString &text)
{
    for (const QChar c : text)
        QTest::keyClick(QGuiApplication::focusWindow(), c.toLatin1());
}
/// Types what it stands for too, when it is a digit.
inline void keyDown(Qt::Key key, bool isRepeat = false, Qt::KeyboardModifiers modifiers = {})
{
    const QString text = key >= Qt::Key_0 && key <= Qt::Key_9 ? QString(QChar(key)) : QString();
    QTest::simulateEvent(QGuiApplication::focusWindow(), true, key, modifiers, text, isRepeat);
}
inline void keyUp(Qt::Key key)
{
    QTest::simulateEvent(QGuiApplication::focusWindow(), false, key, {}, {}, false);
}
/// Held until it has repeated some times; let go of after that.
inline void hold(Qt::Key key, int repeats = 5)
{
    keyDown(key);
    for (int i = 0; i < repeats; ++i)
        keyDown(key, true);
    keyUp(key);
}
/// Which platforms make a request of, for the widget that has the keyboard.
inline void menuKey()
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(QGuiApplication::focusWindow(), &event);
}
/// An on-screen keyboard's text.
inline void commit(const QString &text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
}

/// One finger on a touch screen.
class Finger {
public:
    void down(const QWidget *widget, QPoint at)
    {
        m_window = widget->window()->windowHandle();
        QTest::touchEvent(m_window, m_screen.get()).press(1, m_at = placeOf(widget, at));
    }
    /// Moved by this much, in steps as a screen reports them; in one, it is thrown.
    void drag(QPoint way, int steps = 20)
    {
        const QPoint from = m_at;
        for (int i = 1; i <= steps; ++i)
            QTest::touchEvent(m_window, m_screen.get()).move(1, m_at = from + way * i / steps);
    }
    void up() { QTest::touchEvent(m_window, m_screen.get()).release(1, m_at); }
    /// The system takes the touch for itself, as for a gesture of its own.
    void cancel()
    {
        QTouchEvent event(QEvent::TouchCancel, m_screen.get());
        QCoreApplication::sendEvent(m_window, &event);
    }
    /// While another comes down beside it and stays when this one is gone.
    void upBeside(QPoint other)
    {
        QTest::touchEvent(m_window, m_screen.get()).stationary(1).press(2, other);
        QTest::touchEvent(m_window, m_screen.get()).release(1, m_at).stationary(2);
        QTest::touchEvent(m_window, m_screen.get()).move(2, other += QPoint(0, 5));
        QTest::touchEvent(m_window, m_screen.get()).release(2, other);
    }

    void tap(const QWidget *widget, QPoint at)
    {
        down(widget, at);
        up();
    }
    void tap(const QWidget *widget) { tap(widget, middleOf(widget)); }

private:
    std::unique_ptr<QPointingDevice> m_screen { QTest::createTouchDevice() };
    QWindow *m_window = nullptr;
    QPoint m_at;
};

} // namespace hands

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
