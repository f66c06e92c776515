#pragma once

#include <QtCore/QList>
#include <QtWidgets/QWidget>

#include <memory>

namespace parloquin {

class NavigationBar;
class Screen;

/// \brief A stack of screens under one navigation bar; slides as on a phone.
///
/// Main thread only. Owns its screens; a popped screen is deleted once it has slid out. The top
/// screen loads when the controller is first shown. Screens out of view take no input. Where the
/// style asks for no animation everything happens at once.
class NavigationController : public QWidget {
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

    /// No slide, and no finger or its momentum scrolling a screen.
    [[nodiscard]] bool isAtRest() const;

    /// Height of the device's status area over the bar, painted in the bar's colour.
    void setStatusAreaHeight(int height);

    /// Asks whoever presents the controller to take it away.
    void dismiss() { Q_EMIT dismissRequested(); }

Q_SIGNALS:
    void dismissRequested();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Private;
    friend struct Private;
    std::unique_ptr<Private> d;
};

} // namespace parloquin
