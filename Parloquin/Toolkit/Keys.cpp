#include "Parloquin/Toolkit/Keys.h"

#include "Parloquin/Toolkit/NavigationController.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QWindow>

namespace parloquin::Keys {

namespace {

constexpr quint64 shortestHold = 150; // ms before a key is repeated, at the least

/// X11 repeats a held key by releases and presses at one time, in pairs; Qt marks those whose
/// second half has arrived when it looks, and a busy machine's have not.
class Holds : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress)
            press(*static_cast<QKeyEvent *>(event));
        else if (event->type() == QEvent::KeyRelease)
            release(*static_cast<QKeyEvent *>(event));
        return false;
    }

    [[nodiscard]] bool isRepeated(int key) const { return m_repeats && m_key == key; }

private:
    void press(const QKeyEvent &key)
    {
        const bool atOnce = key.key() == m_key && m_released != 0 && key.timestamp() == m_released;
        m_repeats = atOnce && (m_repeats || m_released - m_pressed >= shortestHold);
        m_key = key.key();
        m_pressed = key.timestamp();
        m_released = 0;
    }
    void release(const QKeyEvent &key)
    {
        if (key.key() == m_key)
            m_released = key.timestamp();
    }

    int m_key = 0;
    quint64 m_pressed = 0; // ms, of the window system
    quint64 m_released = 0; // 0: it is down
    bool m_repeats = false;
};

// One for all windows: there is one keyboard.
QPointer<Holds> &holds()
{
    static QPointer<Holds> holds;
    return holds;
}

} // namespace

void watchHolds(QWindow *window)
{
    if (!holds())
        holds() = new Holds(QCoreApplication::instance());
    if (window)
        window->installEventFilter(holds()); // once, however often it is asked for
}

bool isRepeat(const QKeyEvent &key)
{
    return key.isAutoRepeat() || (holds() && holds()->isRepeated(key.key()));
}

bool acts(const QKeyEvent &key, const QWidget &part)
{
    const auto *stack = NavigationController::above(part);
    return !isRepeat(key) && (!stack || stack->takesPresses());
}

} // namespace parloquin::Keys
