// Where the keyboard is, in every kind of host, whatever happens; and what is the host's stays so.
#include "Screens/Hosts.h"
#include "support/Face.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QVBoxLayout>

namespace {

/// Once round from here; what is the host's is a dash, however much there is of it.
QString roundOf(const QWidget &container, Qt::Key key)
{
    QStringList names;
    const auto *from = QApplication::focusWidget();
    do {
        hands::key(key);
        const auto *focused = QApplication::focusWidget();
        const QString name =
            focused && container.isAncestorOf(focused) ? focused->objectName() : u"-"_s;
        if (names.isEmpty() || name != names.last() || name != u"-")
            names.append(name);
    } while (QApplication::focusWidget() != from && names.size() < 20);
    return names.join(u' ');
}

class Focus : public InEveryHost { };

// Turned away from or hidden; disabled with all around it, as while a host asks its back end; or
// moved to another window.
TEST_P(Focus, IsWhereItWasWhenTheContainerComesBack)
{
    open();
    const auto expectBoth = [this](const QString &name) {
        const bool rings = visible("focusRing");
        const auto expectIt = [&](const char *way) {
            QCoreApplication::processEvents();
            EXPECT_EQ(focusName(), name) << way;
            EXPECT_EQ(visible("focusRing") != nullptr, rings) << way;
            const bool isWindow = container->isWindow(); // it opens whole, its title bar included
            EXPECT_EQ(container->sizeHint(), QSize(390, isWindow ? 760 : 800)) << way;
            const QString words =
                face::wordsOf(QAccessible::queryAccessibleInterface(container.get()));
            EXPECT_TRUE(words.startsWith(isWindow ? u"Window \"Parloquin\""_s : u"Pane \"\""_s))
                << words.toStdString();
        };
        QWidget other;
        move(&other);
        expectIt("moved");
        move(nullptr);
        goAndComeBack();
        expectIt("back");
        container->window()->setEnabled(false);
        QCoreApplication::processEvents();
        EXPECT_FALSE(QApplication::focusWidget());
        QLineEdit question; // of the host's, over it
        EXPECT_TRUE(comesToFront(question) && question.hasFocus());
        question.hide();
        EXPECT_TRUE(comesToFront(*container->window()));
        container->window()->setEnabled(true);
        expectIt("enabled");
    };
    hands::key(Qt::Key_Tab);
    container->setFocus(); // the host, to what has it already
    EXPECT_EQ(frame(visible("focusRing")), frame(visible("viewAlternativeKit")));
    expectBoth(u"viewAlternativeKit"_s);
    goToNumber();
    goToCode();
    hands::keys(u"4"_s);
    expectBoth(u"txtCode1"_s);
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("txtPhoneNumber"));
    EXPECT_EQ(focusName(), u"txtPhoneNumber");
    expectBoth(u"txtPhoneNumber"_s);
    std::make_unique<QLineEdit>(container.get())->setFocus(); // the host's, and gone at once
    QCoreApplication::processEvents();
    EXPECT_EQ(focusName(), u"txtPhoneNumber");
    hands::click(container.get(), QPoint(200, 460));
    EXPECT_EQ(focusName(), u"") << "the page, by a tap beside the field";
}

INSTANTIATE_TEST_SUITE_P(Hosts, Focus, everyHost, byHost);

class Held : public HostTest, public testing::WithParamInterface<Host> { };

TEST_P(Held, IsWalkedAsAnywhereElse)
{
    open(GetParam());
    EXPECT_EQ(container->size().expandedTo(container->minimumSizeHint()), container->size());
    goToNumber();
    EXPECT_EQ(focusName(), u"viewCountryBack"); // a scroll area takes it by a click elsewhere
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("viewAlternativeKit"));
    EXPECT_EQ(focusName(), u"tblKits");
    EXPECT_EQ(roundOf(*container, Qt::Key_Backtab).remove(u"- "_s).toStdString(),
        "btnClose viewAlternativeKit tblKits");
    hands::key(Qt::Key_Tab);
    if (auto *const dock = qobject_cast<QDockWidget *>(container->parentWidget()))
        dock->setFloating(!dock->isFloating());
    else
        goAndComeBack();
    EXPECT_TRUE(comesToFront(*container->window()));
    EXPECT_EQ(focusName(), u"viewAlternativeKit");
}

INSTANTIATE_TEST_SUITE_P(Hosts, Held,
    testing::Values(
        Host::mdi, Host::dock, Host::floatingDock, Host::scrollArea, Host::resizingScrollArea));

/// In a window that the test makes.
class InHost : public HostTest {
protected:
    InHost() { container.reset(Parloquin().viewControllerForLogin()); }
    void showWindow()
    {
        ASSERT_TRUE(comesToFront(window));
        ASSERT_TRUE(seen("viewAlternativeKit"));
    }

    QWidget window;
};

TEST_F(InHost, TwoContainersInAWindowKeepTheirKeysApart)
{
    auto *const columns = new QHBoxLayout(&window);
    auto *const other = Parloquin().viewControllerForLogin();
    columns->addWidget(container.get());
    columns->addWidget(other);
    const auto there = [&](const char *name) {
        const auto *part = other->findChild<QWidget *>(QLatin1String(name));
        return part && part->isVisible() && other->property("atRest").toBool();
    };
    showWindow();
    ASSERT_SOON(there("viewAlternativeKit"));
    goToNumber();
    tap("txtPhoneNumber");
    tap(other->findChild<QWidget *>(u"viewAlternativeKit"_s));
    ASSERT_SOON(there("viewCountryBack"));
    EXPECT_EQ(focusName(), u"txtPhoneNumber") << "the other's page took the keyboard";
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("viewAlternativeKit"));
    EXPECT_TRUE(there("viewCountryBack")) << "the other went back as well";
    EXPECT_EQ(focusName(), u"tblKits");
}

TEST_F(InHost, StandsWholeBeforeWhatIsMadeLater)
{
    auto *const column = new QVBoxLayout(&window);
    auto *const last = new QLineEdit;
    column->addWidget(container.get());
    column->addWidget(last);
    showWindow();
    last->setFocus();
    const auto round = roundOf(*container, Qt::Key_Tab).toStdString();
    EXPECT_EQ(round, "tblKits viewAlternativeKit btnClose -");
}

TEST_F(InHost, StandsInTheOrderThatAHostGivesIt)
{
    auto *const column = new QVBoxLayout(&window);
    auto *const last = new QLineEdit;
    auto *const first = new QLineEdit;
    for (QWidget *widget : std::initializer_list<QWidget *> { last, first, container.get() })
        column->addWidget(widget);
    for (const bool isOpen : { false, true }) {
        QWidget::setTabOrder(first, container.get());
        QWidget::setTabOrder(container.get(), last);
        if (!isOpen)
            showWindow();
        first->setFocus();
        EXPECT_EQ(roundOf(*container, Qt::Key_Tab), u"tblKits viewAlternativeKit btnClose -");
        hands::key(Qt::Key_Tab);
        EXPECT_TRUE(container->isAncestorOf(QApplication::focusWidget()));
        hands::key(Qt::Key_Backtab);
        EXPECT_TRUE(first->hasFocus());
    }
    goToNumber();
    goToCode(first);
    EXPECT_TRUE(first->hasFocus());
    window.setEnabled(false);
    window.setEnabled(true);
    QCoreApplication::processEvents();
    EXPECT_FALSE(container->isAncestorOf(QApplication::focusWidget())) << "it was the host's";
}

TEST_F(InHost, HasItsPlaceAgainInASubWindowThatComesToTheFront)
{
    auto *const area = new QMdiArea;
    (new QVBoxLayout(&window))->addWidget(area);
    area->setFixedSize(450, 960);
    auto *const page = new QWidget;
    auto *const column = new QVBoxLayout(page);
    auto *const own = new QLineEdit; // the host's
    column->addWidget(own);
    auto *const other = new QLineEdit;
    area->addSubWindow(other);
    auto *const subWindow = area->addSubWindow(page);
    container.reset(Parloquin().viewControllerForLogin());
    column->addWidget(container.get());
    const auto turn = [] { // to the other sub window, as a person does
        hands::keyDown(Qt::Key_Control);
        hands::key(Qt::Key_Tab, Qt::ControlModifier);
        hands::keyUp(Qt::Key_Control);
    };
    showWindow();
    hands::key(Qt::Key_Tab);
    EXPECT_EQ(focusName(), u"tblKits");
    hands::click(own);
    turn();
    EXPECT_TRUE(other->hasFocus());
    turn();
    EXPECT_TRUE(own->hasFocus());
    visible("viewAlternativeKit")->setFocus(Qt::TabFocusReason);
    roundOf(*container, Qt::Key_Backtab); // over the frame
    turn();
    EXPECT_TRUE(other->hasFocus());
    int told = 0;
    QObject::connect(qApp, &QApplication::focusChanged, visible("viewAlternativeKit"),
        [&](auto *, auto *now) { told += int(now == visible("viewAlternativeKit")); });
    turn();
    ASSERT_SOON(visible("focusRing"));
    EXPECT_EQ(frame(visible("focusRing")), frame(visible("viewAlternativeKit")));
    EXPECT_EQ(told, 1) << "a reader hears of it again";
    turn();
    hands::click(subWindow, QPoint(200, 12));
    EXPECT_EQ(focusName(), u"viewAlternativeKit");
    EXPECT_FALSE(visible("focusRing"));
    turn();
    QWidget second; // to which the host moves all of them
    (new QVBoxLayout(&second))->addWidget(area);
    ASSERT_TRUE(comesToFront(second));
    hands::click(subWindow, QPoint(200, 12));
    QCoreApplication::processEvents();
    EXPECT_EQ(focusName(), u"viewAlternativeKit");
    EXPECT_FALSE(visible("focusRing"));
    goToNumber();
    tap("txtPhoneNumber");
    turn();
    hands::click(subWindow, QPoint(200, 12));
    EXPECT_EQ(focusName(), u"txtPhoneNumber");
    container->setParent(nullptr); // it outlives the second window
}

TEST_F(InHost, LeavesTheWheelToAHostWhereNothingOfItsOwnScrolls)
{
    auto *const area = new QScrollArea;
    (new QVBoxLayout(&window))->addWidget(area);
    container->resize(390, 844);
    area->setWidget(container.get());
    server.pause();
    const auto *const bar = area->verticalScrollBar();
    const auto turn = [&] {
        window.resize(430, 500);
        EXPECT_SOON(bar->maximum() > 0);
        hands::wheel(container.get(), { 200, 300 }, {}, { 0, -120 });
    };
    ASSERT_TRUE(comesToFront(window) && waitForOverlay(true));
    turn();
    EXPECT_EQ(bar->value(), 0) << "over the overlay";
    server.proceed();
    window.resize(430, 900);
    showWindow();
    goToNumber();
    turn();
    EXPECT_GT(bar->value(), 0);
}

TEST_F(InHost, AWindowThatHasTheKeyboardItselfKeepsIt)
{
    window.setFocusPolicy(Qt::StrongFocus); // and means its keys, as a game's
    window.resize(390, 900);
    container->setParent(&window);
    container->setGeometry(0, 56, 390, 844);
    window.setFocus();
    showWindow();
    goToNumber();
    EXPECT_TRUE(window.hasFocus());
    tap("btnBack");
    ASSERT_TRUE(seen("viewAlternativeKit"));
    EXPECT_TRUE(window.hasFocus());
}

// Two things at once: what a finger or a key still holds means nothing on what is covered since.
struct Pair {
    const char *name; ///< of what a finger holds
    QByteArray call; ///< that Enter makes meanwhile; empty: it leads to the next screen
};

class Together : public HostTest,
                 public testing::WithParamInterface<std::tuple<Pair, std::string>> {
protected:
    /// Where it stands, with the keyboard on it; what it asks for finds no answer yet.
    QWidget *reach(const Pair &pair)
    {
        open();
        if (pair.call == "/v1.0/check-otp") {
            goToNumber();
            goToCode();
            tap("txtCode2");
            hands::keys(u"3"_s);
            EXPECT_EQ(focusName(), u"btnCheck");
        }
        QWidget *under = visible(pair.name);
        if (pair.call == "/v1.0/start") {
            under = row("tblKits", 0, 0);
            hands::key(Qt::Key_Home);
        } else {
            under->setFocus(Qt::TabFocusReason);
        }
        if (!pair.call.isEmpty())
            server.pause();
        return under;
    }
    void expectOnce(const Pair &pair, int pages)
    {
        server.proceed();
        ASSERT_TRUE(rests());
        ASSERT_TRUE(drainSession());
        EXPECT_EQ(paths().count(pair.call), pair.call.isEmpty() ? 0 : 1);
        EXPECT_EQ(container->findChildren<QWidget *>(u"viewCountryBack"_s).size(), pages);
    }
};

// An app that was busy gets those "AtOnce" before what the first one led to is seen.
TEST_P(Together, PressesDoTheThingOnce)
{
    const auto &[pair, way] = GetParam();
    QWidget *const under = reach(pair);
    auto *const read =
        QAccessible::queryAccessibleInterface(QApplication::focusWidget())->focusChild();
    hands::Finger finger;
    if (way == "Touched") {
        finger.down(under, under->rect().center());
    } else if (way == "Pressed") {
        hands::press(under);
    } else {
        hands::clickAtOnce(under);
        hands::clickAtOnce(under);
        read->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    hands::key(Qt::Key_Return);
    ASSERT_TRUE(pair.call.isEmpty() || waitForOverlay(true));
    if (way == "Touched")
        finger.up();
    else if (way == "Pressed")
        hands::release(under);
    expectOnce(pair, pair.call == "/v1.0/start" ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Together,
    testing::Combine(testing::Values(Pair { "ThirdPartyKitTableCell", "/v1.0/start" },
                         Pair { "viewAlternativeKit", "" }, Pair { "btnCheck", "/v1.0/check-otp" }),
        testing::Values("Pressed", "Touched", "AtOnce")),
    [](const auto &row) { return std::get<0>(row.param).name + std::get<1>(row.param); });

TEST_F(HostTest, SpaceHeldOnAButtonMeansNothingOnceItIsCovered)
{
    open();
    hands::key(Qt::Key_Home);
    hands::key(Qt::Key_Return);
    ASSERT_TRUE(settle(2));
    ASSERT_TRUE(rests());
    hands::key(Qt::Key_Tab);
    EXPECT_EQ(focusName(), u"viewAlternativeKit");
    server.pause();
    hands::keyDown(Qt::Key_Space);
    comeBack(); // and asks for the outcome
    ASSERT_TRUE(waitForOverlay(true));
    EXPECT_FALSE(qobject_cast<Tappable *>(find("viewAlternativeKit"))->isDown());
    hands::keyUp(Qt::Key_Space);
    server.proceed();
    ASSERT_TRUE(waitForOverlay(false));
    EXPECT_EQ(visible("viewCountryBack"), nullptr);
    EXPECT_EQ(focusName(), u"viewAlternativeKit");
}

} // namespace
