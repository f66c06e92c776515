#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <memory>

class QWidget;

namespace parloquin {

class ActivityIndicator;
class Updateable;

/// \brief The progress overlay: a veil over a whole container, with a plate and a spinner.
///
/// There is one for the process: showing it on a second screen moves it there, one hide takes it
/// away wherever it is; requests are not counted. While it is up it takes the taps and keys meant
/// for what it covers. A container that goes takes the overlay with it.
class HudManager : public QObject {
    Q_OBJECT
public:
    static HudManager &shared();

    /// \brief Lays the overlay over the screen's navigation container, bar included, or over the
    /// screen alone where it has none. Any thread; takes effect later, on the main thread.
    void show(std::weak_ptr<Updateable> screen);

    /// \brief Takes the overlay away at once, whatever screen it lies on. Any thread; as above.
    void hide(const std::weak_ptr<Updateable> &screen);

    /// Whether the overlay lies on this view now. Main thread only.
    [[nodiscard]] bool isOver(const QWidget *view) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    HudManager();

    void showActivityIndicator(QWidget *uiView);
    void removeFromSuperview();
    void lineUp(QWidget *uiView);
    void layOut();
    void keepFocus(QWidget *now);
    void cover(QWidget *focused);

    // The container's parent is the host view, and deletes it; it is made again when next shown.
    QPointer<QWidget> container;
    QPointer<QWidget> loadingView;
    QPointer<ActivityIndicator> activityIndicator;

    QPointer<QWidget> m_focusBefore; // what gets the keyboard back
};

} // namespace parloquin
