#include "Screens/Hosts.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>
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
        around->pages->setCurrentIndex(around->pages->addTab(container.get(), u"Kit"_s));
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
        around->pages->setCurrentWidget(container.get());
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
