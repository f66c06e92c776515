#include "Screens/Hosts.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

/// A host with a page of its own beside the container's; counts what reaches it and was not meant
/// to.
class Around : public QDialog {
public:
    Around()
    {
        setObjectName(u"host"_s);
        auto *const rows = new QVBoxLayout(this);
        rows->addWidget(pages);
        pages->addTab(new QPushButton(u"Verify"_s), u"Start"_s);
        auto *const button = new QPushButton(u"Go on"_s);
        button->setDefault(true);
        rows->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this] { ++reached; });
        connect(this, &QDialog::rejected, this, [this] { ++reached; });
    }

    QTabWidget *const pages = new QTabWidget;
    int reached = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++reached; }
    void mouseReleaseEvent(QMouseEvent *) override { ++reached; }
};

/// \return what holds the container, to stand behind the dialog's tab
QWidget *hold(Host host, QWidget *container)
{
    if (host == Host::mdi) {
        auto *const area = new QMdiArea;
        area->setFixedSize(430, 900);
        area->addSubWindow(new QLineEdit);
        area->setActiveSubWindow(area->addSubWindow(container));
        return area;
    }
    if (host == Host::dock || host == Host::floatingDock) {
        auto *const main = new QMainWindow(nullptr, Qt::Widget);
        auto *const dock = new QDockWidget(main);
        dock->setWidget(container);
        main->addDockWidget(Qt::LeftDockWidgetArea, dock);
        dock->setFloating(host == Host::floatingDock);
        return main;
    }
    auto *const area = new QScrollArea;
    area->setMinimumSize(430, 880);
    area->setWidgetResizable(host == Host::resizingScrollArea);
    area->setWidget(container);
    return area;
}

HostTest::HostTest() = default;
HostTest::~HostTest() = default;

void HostTest::SetUp()
{
    ContainerTest::SetUp();
    answerBothRoads();
}

void HostTest::TearDown()
{
    if (container)
        container->setParent(nullptr);
    ContainerTest::TearDown();
    EXPECT_TRUE(!around || around->reached == 0) << "the host got what was not its own";
}

void HostTest::show(Host host, Qt::LayoutDirection direction)
{
    QApplication::setLayoutDirection(direction);
    container.reset(Parloquin().viewControllerForLogin());
    container->setKitDelegate(delegate);
    if (host != Host::window) {
        around = std::make_unique<Around>();
        holder = host == Host::dialog ? container.get() : hold(host, container.get());
        around->pages->setCurrentIndex(around->pages->addTab(holder, u"Kit"_s));
        container->setFocus(); // the host's button was there first
    }
    ASSERT_TRUE(comesToFront(*container->window()));
}

void HostTest::open(Host host, Qt::LayoutDirection direction)
{
    show(host, direction);
    ASSERT_TRUE(settle(1));
}

void HostTest::goAndComeBack()
{
    if (around) {
        around->pages->setCurrentIndex(0);
        EXPECT_FALSE(container->isAncestorOf(QApplication::focusWidget()));
        around->pages->setCurrentWidget(holder);
    } else {
        QWidget other; // comes to the front meanwhile
        container->hide();
        EXPECT_TRUE(comesToFront(other));
        EXPECT_TRUE(comesToFront(*container));
    }
    container->setFocus();
}

void HostTest::move(QWidget *window)
{
    if (!window && around)
        around->pages->setCurrentIndex(around->pages->addTab(container.get(), u"Kit"_s));
    else
        container->setParent(window);
    container->show();
    EXPECT_TRUE(comesToFront(*container->window()));
}

void HostTest::goToNumber() const
{
    tap("viewAlternativeKit");
    ASSERT_TRUE(seen("viewCountryBack"));
}

QString HostTest::focusName() const
{
    const auto *focused = QApplication::focusWidget();
    EXPECT_TRUE(focused && (focused == container.get() || container->isAncestorOf(focused)))
        << "the focus is " << (focused ? "the host's" : "nowhere");
    return focused ? focused->objectName() : QString();
}
