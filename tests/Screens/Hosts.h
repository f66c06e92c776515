#pragma once

#include "Screens/Container.h"
#include "support/Widgets.h"

/// What the container is shown in: itself, or behind a tab of a dialog with a default button.
enum class Host { window, dialog, mdi, dock, floatingDock, scrollArea, resizingScrollArea };

class Around;

/// \brief Both roads as far as anyone goes, in a host, its answers on their way.
class HostTest : public ContainerTest {
protected:
    HostTest();
    ~HostTest() override;
    void SetUp() override;
    void TearDown() override;
    /// Shown, with the keyboard in it.
    void show(Host host = Host::window, Qt::LayoutDirection direction = Qt::LeftToRight);
    /// The same, and its apps are there.
    void open(Host host = Host::window, Qt::LayoutDirection direction = Qt::LeftToRight);
    /// The host's own page for a while, or another window.
    void goAndComeBack();
    /// Into another window, as with a dock that floats; null: back to where it was.
    void move(QWidget *window);

    void goToNumber() const; ///< from the apps

    /// With the keyboard where it is: somewhere in the kit, always.
    [[nodiscard]] QString focusName() const;

    std::unique_ptr<Around> around; ///< none: a window of its own
    QWidget *holder = nullptr; ///< of the container, behind the dialog's tab
};

/// In every host, from either side.
class InEveryHost : public HostTest,
                    public testing::WithParamInterface<std::tuple<Host, Qt::LayoutDirection>> {
protected:
    void open() { HostTest::open(std::get<0>(GetParam()), std::get<1>(GetParam())); }
};
inline const auto everyHost = testing::Combine(
    testing::Values(Host::window, Host::dialog), testing::Values(Qt::LeftToRight, Qt::RightToLeft));
inline const auto byHost = [](const auto &row) {
    const auto &[host, direction] = row.param;
    return std::string(host == Host::window ? "Window" : "Dialog")
        + (direction == Qt::LeftToRight ? "LeftToRight" : "RightToLeft");
};
