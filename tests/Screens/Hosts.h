#pragma once

#include "Parloquin/Toolkit/TableView.h"
#include "Screens/Container.h"
#include "support/Hands.h"

#include <QtWidgets/QDialog>

#include <memory>

class QStackedWidget;
class QTabWidget;

/// What the container is shown in: by itself, or beside what is the host's.
enum class Host { window, dialog, stack, tabs };
/// Of a case.
inline std::string nameOf(Host host, Qt::LayoutDirection direction = Qt::LayoutDirectionAuto)
{
    constexpr const char *hosts[] = { "Window", "Dialog", "Stack", "Tabs" };
    constexpr const char *directions[] = { "LeftToRight", "RightToLeft", "" };
    return std::string(hosts[static_cast<int>(host)]) + directions[direction];
}

/// A host around the container that counts what reaches it and was not meant to.
class Around : public QDialog {
public:
    /// \param kind dialog: with a default button below the page
    explicit Around(Host kind);

    void add(QWidget *container);
    /// The host's own page, and back.
    void turnAway();
    void turnTo(QWidget *container);

    int reached = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++reached; }
    void mouseReleaseEvent(QMouseEvent *) override { ++reached; }

private:
    QStackedWidget *m_stack = nullptr;
    QTabWidget *m_tabs = nullptr;
};

/// \brief Both roads as far as anyone goes, in a host, its answers on their way.
class HostTest : public ContainerTest {
protected:
    void SetUp() override;
    void TearDown() override;
    /// Shown, with the keyboard in it.
    void show(Host host, Qt::LayoutDirection direction);
    /// The same, and its apps are there.
    void open(Host host, Qt::LayoutDirection direction = Qt::LeftToRight);

    [[nodiscard]] bool rests() const;
    /// Waits for a part of the screen that has come to rest.
    [[nodiscard]] bool seen(const char *name) const;
    [[nodiscard]] QWidget *visible(const char *name) const;
    /// Waits for the row.
    [[nodiscard]] QWidget *row(const char *table, int section, int at) const;
    /// With the keyboard where it is: somewhere in the kit, always.
    [[nodiscard]] QString focusName() const;

    std::unique_ptr<Around> around; ///< none: a window of its own
};
