#pragma once

#include "Parloquin/Reference/ParloquinTheme.h"
#include "Parloquin/Reference/ParloquinViewController.h"
#include "Parloquin/Toolkit/Accessibility.h"

#include <memory>

namespace parloquin {

class NavigationController;
class Screen;

/// \brief The container that the host gets: a stack of the kit's screens under a blue bar.
///
/// Main thread only. A host may embed it, close and show it again, and delete it at any time
/// between two events, also in a delegate call that it has moved to the main thread.
class ParloquinNavigationController : public ParloquinViewController, public Describable {
    Q_OBJECT
    /// What a phone's shell, or a host that draws the status area itself, asks for; read it with
    /// QObject::property().
    Q_PROPERTY(ParloquinStatusBarStyle preferredStatusBarStyle READ preferredStatusBarStyle)
    /// For automation: what is seen now stays where it is until someone or an answer moves it.
    Q_PROPERTY(bool atRest READ isAtRest)
public:
    /// \param rootViewController adopted; loads when the container is first shown
    explicit ParloquinNavigationController(Screen *rootViewController, QWidget *parent = nullptr);
    ~ParloquinNavigationController() override;

    [[nodiscard]] std::shared_ptr<ParloquinDelegate> kitDelegate() const override;
    void setKitDelegate(std::shared_ptr<ParloquinDelegate> kitDelegate) override;

    /// Of the options last given to the process; light where there are none.
    [[nodiscard]] ParloquinStatusBarStyle preferredStatusBarStyle() const;

    /// No slide, scroll or overlay under way.
    [[nodiscard]] bool isAtRest() const;

    [[nodiscard]] NavigationController &navigationController() const { return *m_navigation; }

    /// A phone's, but never higher than the screen.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QAccessibleInterface *makeAccessible() override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setup();

    NavigationController *m_navigation;
    std::shared_ptr<ParloquinDelegate> m_kitDelegate;
};

} // namespace parloquin
