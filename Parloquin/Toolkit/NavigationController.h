#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QList>

#include <memory>

namespace parloquin {

class NavigationBar;
class Screen;

/// \brief A stack of screens under one navigation bar; slides as on a phone.
///
/// Main thread only. Owns its screens; a popped screen is deleted once it has slid out. The top
/// screen loads when the controller is first shown. Screens out of view take no input. Where the
/// style asks for no animation everything happens at once.
///
/// Escape, the Back key, Alt+Left, a mouse's back button and a finger's drag from the leading edge
/// go back a screen; on the first screen they are the host's. A Back while the last one is under
/// way is nobody's. What the keyboard has is never nothing: the screen itself if need be.
class NavigationController : public Pane {
    Q_OBJECT
public:
    explicit NavigationController(Screen *root, QWidget *parent = nullptr);
    ~NavigationController() override;

    /// \param screen adopted
    void pushViewController(Screen *screen, bool animated);
    /// Takes the top screen off; the root stays.
    void popViewController(bool animated);

    /// Null only when empty, which never lasts.
    [[nodiscard]] Screen *topViewController() const;
    [[nodiscard]] QList<Screen *> viewControllers() const;
    [[nodiscard]] NavigationBar &navigationBar() const;

    /// Whether what is pressed here does something: not while screens slide, when it is meant for
    /// the one that leaves, nor while something that was pressed has yet to begin.
    [[nodiscard]] bool takesPresses() const;
    /// Whether something that was pressed has yet to begin.
    [[nodiscard]] bool awaitsPress() const;
    /// Something of a screen has been pressed.
    /// \param part of a screen; without a controller above it nothing happens
    static void notePress(const QWidget &part);
    /// Around a part of a screen; null: none.
    [[nodiscard]] static NavigationController *above(const QWidget &part);
    /// No slide, nothing pressed that has yet to begin, and no finger or its momentum scrolling a
    /// screen.
    [[nodiscard]] bool isAtRest() const;

    /// Gives the keyboard to this widget of a screen, unless the host has it or the screen is not
    /// on top.
    void focus(QWidget *widget);

    /// Ends what fingers, mice and held keys have begun here, as if they had strayed: for whoever
    /// is about to cover it.
    void letGo();

    /// What the device or the host keeps for itself at the edges, px: the bar's colour reaches up
    /// behind the upper strip, pages leave the other three free.
    void setInsets(const QMargins &insets);

    /// Asks whoever presents the controller to take it away.
    void dismiss() { Q_EMIT dismissRequested(); }

Q_SIGNALS:
    void dismissRequested();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    struct Private;
    friend struct Private;
    std::unique_ptr<Private> d;
};

} // namespace parloquin
