#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

class QMdiSubWindow;
class QWidget;

namespace parloquin {

class Screen;

/// \brief Which widget of a stack of screens has the keyboard, and which gets it next.
///
/// The stack has a focus proxy, so that a host may give the keyboard to the whole without knowing
/// its parts: whatever had it last gets it again. What belongs to the host keeps its focus.
class KeyboardFocus : public QObject {
    Q_OBJECT
public:
    /// \param stack parent of both
    /// \param stage parent of the screens
    KeyboardFocus(QWidget *stack, QWidget *stage, QWidget *bar);

    /// True where the focus is ours to move.
    [[nodiscard]] bool isOurs() const;

    /// True where the stack has the keyboard, or had it last in its window.
    [[nodiscard]] bool isHere() const { return m_holds; }

    /// Remembers what has the focus on a screen that is about to be covered.
    /// \return whether the keyboard is in use, seen by a ring around what has the focus
    bool leave(Screen *screen);
    /// Keeps the keyboard while screens change, so that what is hidden meanwhile loses nothing.
    void park();
    /// Gives the focus back to what had it on this screen, else to its first control. One that
    /// would raise an on-screen keyboard leaves it on the page.
    void enter(Screen *screen, bool rings);
    /// The same, where the keyboard is the host's: for when it comes here.
    void prepare(Screen *screen);

    /// Tab leads through the screen and on to the bar, wherever the stack stands in its window.
    void orderTabs(Screen *screen) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void left();

private:
    void follow(QWidget *focused);
    void watchFrame();
    void hush(const QWidget *before, QWidget *focused);
    void reclaim();
    [[nodiscard]] static QWidget *target(Screen *screen);

    QWidget *m_stack;
    QWidget *m_stage;
    QWidget *m_bar;
    QPointer<QMdiSubWindow> m_frame; // around the stack
    QPointer<Screen> m_screen; // in view
    QPointer<QWidget> m_last; // what had the focus, or gets it first
    bool m_holds = false; // the keyboard, or was the last in its window that did
    bool m_parking = false;
    bool m_byKey = false; // is what happens now; known in a sub window alone
};

} // namespace parloquin
