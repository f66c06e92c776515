#pragma once

#include "Parloquin/Toolkit/EdgeDrag.h"
#include "Parloquin/Toolkit/KeyboardFocus.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Shield.h"
#include "Parloquin/Toolkit/Slide.h"

#include <QtCore/QSet>
#include <QtCore/QTimer>

#include <optional>

class QTouchEvent;

namespace parloquin {

/// \brief The state of a stack of screens: what is on it, what moves, whose keys are held.
struct NavigationController::Private {
    explicit Private(NavigationController *owner);

    // The stack
    [[nodiscard]] Screen *top() const { return stack.isEmpty() ? nullptr : stack.last(); }
    void arrange() const;
    void adopt(Screen *screen) const;
    [[nodiscard]] Screen *take();
    void change(Screen *from, Screen *to, bool push, bool animated);
    void settleIn(Screen *screen, bool takesFocus, bool rings) const;
    void shieldWhileMoving() const;
    void drop(const QPointer<Screen> &screen, bool popped) const;

    // Input
    /// \return whether a Back was taken
    [[nodiscard]] bool goBack() const;
    [[nodiscard]] bool takesBack() const;
    /// Of a key that nothing on the screen took: whether the host is not to see it either.
    [[nodiscard]] bool takes(const QKeyEvent &key, bool pressIsOurs);
    void pressFinger(const QPointF &at, quint64 time);
    /// \return true in the move that begins a drag
    bool moveFinger(const QPointF &at, quint64 time);
    void releaseFinger(bool cancelled);
    /// Of a table. \return true where it is not the table's any more
    bool followTouch(QObject *table, QTouchEvent &touch);

    NavigationController *controller;
    QWidget *stage;
    NavigationBar *bar;
    Slide *slide;
    Shield *shield;
    KeyboardFocus *keyboard;
    EdgeDrag drag;
    std::optional<int> finger; // on a table
    QTimer lastPop; // runs for as long as a pop takes, also where the style shows no motion
    QSet<int> hostKeys; // held keys whose press the host got
    bool backButtonTaken = false;
    bool pressed = false; // and what that leads to has not begun
    QList<Screen *> stack;
    QMargins insets;
    bool appeared = false;
    bool leftWithKeyboard = false; // when it was hidden
};

} // namespace parloquin
