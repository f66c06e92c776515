#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QPointer>
#include <QtWidgets/QAbstractButton>

namespace parloquin {

class BarButtonItem;
class NavigationController;

/// \brief What the navigation bar shows while a screen is on top.
///
/// The items are widgets that the bar adopts when it shows them; the one replaced is deleted.
class NavigationItem : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~NavigationItem() override;

    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString &title);

    /// Leading end of the bar.
    [[nodiscard]] BarButtonItem *leftBarButtonItem() const;
    /// \param item null removes it; otherwise ownership passes to this object or the bar
    void setLeftBarButtonItem(BarButtonItem *item);

    /// Trailing end of the bar.
    [[nodiscard]] BarButtonItem *rightBarButtonItem() const;
    void setRightBarButtonItem(BarButtonItem *item);

Q_SIGNALS:
    void changed();

private:
    void replace(QPointer<BarButtonItem> &slot, BarButtonItem *item);

    QString m_title;
    QPointer<BarButtonItem> m_left;
    QPointer<BarButtonItem> m_right;
};

/// \brief One full page of the container: all of it below the navigation bar.
///
/// Loads once, when the container first shows it. Main thread only; owned by its
/// NavigationController from the push on.
class Screen : public Pane {
    Q_OBJECT
public:
    explicit Screen(QWidget *parent = nullptr);
    ~Screen() override;

    /// Null until pushed, and after the pop.
    [[nodiscard]] NavigationController *navigationController() const;
    [[nodiscard]] NavigationItem &navigationItem() { return m_navigationItem; }
    /// What the bar shows, and what a screen reader calls the page.
    void setTitle(const QString &title);
    [[nodiscard]] bool isViewLoaded() const { return m_loaded; }
    /// Enter taps it while the page itself has the keyboard.
    void setDefaultButton(QAbstractButton *button) { m_defaultButton = button; }

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    /// Builds the screen; called once, before it first appears.
    virtual void viewDidLoad() { }
    /// Called before every appearance: shown, pushed, or uncovered by a pop.
    virtual void viewWillAppear(bool /*animated*/) { }
    /// Called before every disappearance: covered, popped, or hidden with its container.
    virtual void viewWillDisappear(bool /*animated*/) { }

private:
    friend class KeyboardFocus;
    friend class NavigationController;
    void loadViewIfNeeded();

    NavigationItem m_navigationItem;
    QPointer<NavigationController> m_navigationController;
    QPointer<QWidget> m_focus; // what had the keyboard when the screen was covered
    QPointer<QAbstractButton> m_defaultButton;
    bool m_focusRings = false;
    bool m_loaded = false;
};

} // namespace parloquin
