#pragma once

#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QInputMethodEvent>
#include <QtGui/QPointingDevice>
#include <QtGui/QTextCharFormat>
#include <QtGui/QWheelEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

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
/// Before the event loop turns.
inline void clickAtOnce(const QWidget *widget)
{
    const QPoint at = placeOf(widget);
    for (const auto type : { QEvent::MouseButtonPress, QEvent::MouseButtonRelease })
        qt_handleMouseEvent(widget->window()->windowHandle(), at, widget->window()->mapToGlobal(at),
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::LeftButton, type,
            {}, static_cast<int>(++QTest::lastMouseTimestamp));
}
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
    QTest::qSleep(1); // what came at one time with it would be a repeat of a held key
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
    QTest::qSleep(1); // as above
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
/// What it would enter, underlined.
inline void compose(const QString &text)
{
    QTextCharFormat look;
    look.setFontUnderline(true);
    QInputMethodEvent event(
        text, { { QInputMethodEvent::TextFormat, 0, static_cast<int>(text.size()), look } });
    QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
}

/// \brief One finger on a touch screen.
///
/// Its touches tell a time of their own: on a busy machine the real one makes a slow drag of a
/// throw.
class Finger : public QObject {
public:
    Finger() { QCoreApplication::instance()->installEventFilter(this); }
    void down(const QWidget *widget, QPoint at)
    {
        m_window = widget->window()->windowHandle();
        touch().press(1, m_at = placeOf(widget, at));
    }
    /// Moved by this much, in steps as a screen reports them; in one, it is thrown.
    void drag(QPoint way, int steps = 20)
    {
        const QPoint from = m_at;
        for (int i = 1; i <= steps; ++i)
            withOther(touch().move(1, m_at = from + way * i / steps));
    }
    void up() { withOther(touch().release(1, m_at)); }
    /// The system takes the touch for itself, as for a gesture of its own.
    void cancel()
    {
        QTouchEvent event(QEvent::TouchCancel, m_screen.get());
        QCoreApplication::sendEvent(m_window, &event);
    }
    /// Another comes down beside it, and rests there until it is lifted.
    void beside(QPoint other)
    {
        touch().move(1, m_at).press(2, other);
        m_other = other;
    }
    void liftOther()
    {
        touch().move(2, *m_other += QPoint(0, 5));
        touch().release(2, *std::exchange(m_other, {}));
    }

    void tap(const QWidget *widget, QPoint at)
    {
        down(widget, at);
        up();
    }
    void tap(const QWidget *widget) { tap(widget, middleOf(widget)); }

    quint64 pace = 10; ///< ms from one report to the next

private:
    QTest::QTouchEventSequence touch()
    {
        m_time += pace;
        return QTest::touchEvent(m_window, m_screen.get());
    }
    void withOther(QTest::QTouchEventSequence &touches) const
    {
        if (m_other)
            touches.move(2, *m_other); // nowhere; one said to rest would have lost its place
    }
    // At the widgets, and the event's alone: Qt takes a point of another time for another point.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *const input = event->isInputEvent() ? static_cast<QInputEvent *>(event) : nullptr;
        if (watched->isWidgetType() && input && input->device() == m_screen.get())
            input->QInputEvent::setTimestamp(m_time);
        return false;
    }

    std::unique_ptr<QPointingDevice> m_screen { QTest::createTouchDevice() };
    QWindow *m_window = nullptr;
    QPoint m_at;
    std::optional<QPoint> m_other;
    quint64 m_time = 0; // ms
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
