#include "Screens/Hosts.h"

#include "support/Front.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

using namespace parloquin;
using namespace Qt::StringLiterals;

Around::Around(Host kind)
{
    setObjectName(u"host"_s);
    auto *const rows = new QVBoxLayout(this);
    auto *const own = new QPushButton(u"Verify"_s);
    if (kind == Host::tabs) {
        m_tabs = new QTabWidget(this);
        m_tabs->addTab(own, u"Start"_s);
        rows->addWidget(m_tabs);
    } else {
        m_stack = new QStackedWidget(this);
        m_stack->addWidget(own);
        rows->addWidget(m_stack);
    }
    if (kind == Host::dialog) {
        auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
        buttons->button(QDialogButtonBox::Ok)->setDefault(true);
        connect(buttons, &QDialogButtonBox::accepted, this, [this] { ++reached; });
        rows->addWidget(buttons);
    }
    connect(this, &QDialog::rejected, this, [this] { ++reached; });
}

void Around::add(QWidget *container)
{
    m_tabs ? m_tabs->addTab(container, u"Kit"_s) : m_stack->addWidget(container);
}

void Around::turnAway() { m_tabs ? m_tabs->setCurrentIndex(0) : m_stack->setCurrentIndex(0); }

void Around::turnTo(QWidget *container)
{
    m_tabs ? m_tabs->setCurrentWidget(container) : m_stack->setCurrentWidget(container);
}

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
    Parloquin kit;
    container.reset(kit.viewControllerForLogin());
    container->setKitDelegate(delegate);
    QWidget *window = container.get();
    if (host != Host::window) {
        around = std::make_unique<Around>(host);
        around->add(container.get());
        around->turnTo(container.get());
        container->setFocus(); // the host's button was there first
        window = around.get();
    }
    ASSERT_TRUE(comesToFront(*window));
}

void HostTest::open(Host host, Qt::LayoutDirection direction)
{
    show(host, direction);
    ASSERT_TRUE(settle(1));
}

bool HostTest::rests() const
{
    return QTest::qWaitFor([this] { return container->property("atRest").toBool(); });
}

bool HostTest::seen(const char *name) const
{
    return QTest::qWaitFor([&] { return visible(name) && container->property("atRest").toBool(); });
}

QWidget *HostTest::visible(const char *name) const
{
    for (auto *widget : container->findChildren<QWidget *>(QLatin1String(name))) {
        if (widget->isVisible())
            return widget;
    }
    return nullptr;
}

QWidget *HostTest::row(const char *table, int section, int at) const
{
    TableCell *cell = nullptr;
    const auto *rows = find<TableView>(table);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return (cell = rows->cellForRow({ section, at })) != nullptr;
    }));
    return cell;
}

QString HostTest::focusName() const
{
    const auto *focused = QApplication::focusWidget();
    EXPECT_TRUE(focused && (focused == container.get() || container->isAncestorOf(focused)))
        << "the focus is " << (focused ? "the host's" : "nowhere");
    return focused ? focused->objectName() : QString();
}
