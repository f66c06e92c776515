// Where the keyboard is, in every kind of host, whatever happens; and what is the host's stays so.
#include "Parloquin/Toolkit/Tappable.h"
#include "Screens/Hosts.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QVBoxLayout>

#include <functional>
#include <tuple>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

class InHost : public HostTest {
protected:
    void goToNumber()
    {
        hands::click(visible("viewAlternativeKit"));
        ASSERT_TRUE(seen("viewCountryBack"));
    }
    void goToCountries()
    {
        goToNumber();
        hands::click(visible("viewCountryBack"));
        (void)row("tblCountries", 1, 0);
        ASSERT_TRUE(seen("tblCountries"));
    }
    void goToCode()
    {
        goToCountries();
        hands::click(row("tblCountries", 1, 0));
        ASSERT_TRUE(seen("txtPhoneNumber"));
        hands::click(visible("txtPhoneNumber"));
        hands::keys(u"4123"_s);
        hands::key(Qt::Key_Return);
        ASSERT_TRUE(seen("btnCheck"));
        ASSERT_TRUE(QTest::qWaitFor([this] { return find("txtCode0")->hasFocus(); }));
    }
    /// Once round from here; what is the host's is a dash, however much there is of it.
    [[nodiscard]] QString round(Qt::Key key) const
    {
        QStringList names;
        const auto *from = QApplication::focusWidget();
        do {
            hands::key(key);
            const auto *focused = QApplication::focusWidget();
            const QString name =
                focused && container->isAncestorOf(focused) ? focused->objectName() : u"-"_s;
            if (names.isEmpty() || name != names.last() || name != u"-")
                names.append(name);
        } while (QApplication::focusWidget() != from && names.size() < 20);
        return names.join(u' ');
    }
};

class Rounds : public InHost,
               public testing::WithParamInterface<std::tuple<Host, Qt::LayoutDirection>> { };

TEST_P(Rounds, TabLeadsThroughEachScreenBothWays)
{
    const auto &[host, direction] = GetParam();
    open(host, direction);
    const bool hasMore = host == Host::dialog || host == Host::tabs;
    const QString outside = hasMore ? u" -"_s : QString();
    const auto expectRound = [&](const QString &first, const QString &rest) {
        const auto *start = visible(first.toLatin1());
        const_cast<QWidget *>(start)->setFocus();
        EXPECT_EQ(round(Qt::Key_Tab), rest + outside + u' ' + first);
        QStringList back = QString(rest + outside).split(u' ');
        std::reverse(back.begin(), back.end());
        EXPECT_EQ(round(Qt::Key_Backtab), back.join(u' ') + u' ' + first);
    };
    expectRound(u"tblKits"_s, u"viewAlternativeKit btnClose"_s);
    goToCountries();
    expectRound(u"tblCountries"_s, u"btnClose"_s);
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("viewCountryBack"));
    expectRound(u"viewCountryBack"_s, u"txtPhoneNumber btnContinue btnBack"_s);
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("tblKits"));
    goToCode();
    expectRound(u"txtCode0"_s, u"txtCode1 txtCode2 btnCheck btnTryAgain btnBack"_s);
}

INSTANTIATE_TEST_SUITE_P(Hosts, Rounds,
    testing::Combine(testing::Values(Host::window, Host::dialog, Host::stack, Host::tabs),
        testing::Values(Qt::LeftToRight, Qt::RightToLeft)),
    [](const auto &row) { return nameOf(std::get<0>(row.param), std::get<1>(row.param)); });

// Turned away from or hidden; or disabled with all around it, as while a host asks its back end.
class Returns : public InHost, public testing::WithParamInterface<std::tuple<Host, bool>> { };

TEST_P(Returns, AContainerThatComesBackHasTheKeyboardWhereItWas)
{
    const auto &[host, disabled] = GetParam();
    open(host);
    const auto goAndComeBack = [this, disabled = disabled] {
        if (disabled) {
            container->window()->setEnabled(false);
            EXPECT_FALSE(QApplication::focusWidget());
            container->window()->setEnabled(true);
            QCoreApplication::processEvents();
            return;
        }
        if (around) {
            around->turnAway();
            EXPECT_FALSE(container->isAncestorOf(QApplication::focusWidget()));
            around->turnTo(container.get());
        } else {
            QWidget other; // comes to the front meanwhile
            container->hide();
            other.show();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
            container->show();
            EXPECT_TRUE(QTest::qWaitForWindowActive(container.get()));
        }
        container->setFocus();
    };
    hands::key(Qt::Key_Tab);
    goAndComeBack();
    EXPECT_EQ(focusName(), u"viewAlternativeKit");
    EXPECT_TRUE(!disabled || visible("focusRing"));
    goToCode();
    hands::keys(u"4"_s);
    goAndComeBack();
    EXPECT_EQ(focusName(), u"txtCode1");
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("txtPhoneNumber"));
    EXPECT_EQ(focusName(), u"txtPhoneNumber");
    goAndComeBack();
    EXPECT_EQ(focusName(), u"txtPhoneNumber");
    std::make_unique<QLineEdit>(container.get())->setFocus(); // the host's, and gone at once
    QCoreApplication::processEvents();
    EXPECT_EQ(focusName(), u"txtPhoneNumber");
    hands::click(container.get(), QPoint(200, 460));
    EXPECT_EQ(focusName(), u"") << "the page, by a tap beside the field";
}

INSTANTIATE_TEST_SUITE_P(Hosts, Returns,
    testing::Combine(
        testing::Values(Host::window, Host::dialog, Host::stack, Host::tabs), testing::Bool()),
    [](const auto &row) {
        return nameOf(std::get<0>(row.param)) + (std::get<1>(row.param) ? "Disabled" : "Away");
    });

TEST_F(InHost, TwoContainersInAWindowKeepTheirKeysApart)
{
    QWidget window;
    auto *const columns = new QHBoxLayout(&window);
    Parloquin kit;
    container.reset(kit.viewControllerForLogin());
    const std::unique_ptr<ParloquinViewController> other(kit.viewControllerForLogin());
    columns->addWidget(container.get());
    columns->addWidget(other.get());
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto pageOf = [&](const char *name) {
        const auto *part = other->findChild<QWidget *>(QLatin1String(name));
        return part && part->isVisible() && other->property("atRest").toBool();
    };
    ASSERT_TRUE(seen("viewAlternativeKit"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pageOf("viewAlternativeKit"); }));
    goToNumber();
    hands::click(visible("txtPhoneNumber"));
    hands::click(other->findChild<QWidget *>(u"viewAlternativeKit"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pageOf("viewCountryBack"); }));
    EXPECT_EQ(focusName(), u"txtPhoneNumber") << "the other's page took the keyboard";
    hands::key(Qt::Key_Escape);
    ASSERT_TRUE(seen("viewAlternativeKit"));
    EXPECT_TRUE(pageOf("viewCountryBack")) << "the other went back as well";
    EXPECT_EQ(focusName(), u"tblKits");
    container->setParent(nullptr);
}

TEST_F(InHost, StandsInTheOrderThatAHostGivesIt)
{
    QWidget window;
    auto *const column = new QVBoxLayout(&window);
    auto *const last = new QLineEdit;
    auto *const first = new QLineEdit;
    Parloquin kit;
    container.reset(kit.viewControllerForLogin());
    for (QWidget *widget : std::initializer_list<QWidget *> { last, first, container.get() })
        column->addWidget(widget);
    QWidget::setTabOrder(first, container.get());
    QWidget::setTabOrder(container.get(), last);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_TRUE(settle(1));
    for (const bool openToo : { false, true }) {
        if (openToo) {
            QWidget::setTabOrder(first, container.get());
            QWidget::setTabOrder(container.get(), last);
        }
        first->setFocus();
        EXPECT_EQ(round(Qt::Key_Tab), u"tblKits viewAlternativeKit btnClose -");
        hands::key(Qt::Key_Tab);
        EXPECT_TRUE(container->isAncestorOf(QApplication::focusWidget()));
        hands::key(Qt::Key_Backtab);
        EXPECT_TRUE(first->hasFocus());
    }
    container->setParent(nullptr);
}

TEST_F(InHost, AWindowThatHasTheKeyboardItselfKeepsIt)
{
    QWidget window; // that means its keys, as a game's
    window.setFocusPolicy(Qt::StrongFocus);
    window.resize(390, 900);
    Parloquin kit;
    container.reset(kit.viewControllerForLogin());
    container->setParent(&window);
    container->setGeometry(0, 56, 390, 844);
    window.setFocus();
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_TRUE(settle(1));
    goToNumber();
    EXPECT_TRUE(window.hasFocus());
    hands::click(visible("btnBack"));
    ASSERT_TRUE(seen("viewAlternativeKit"));
    EXPECT_TRUE(window.hasFocus());
    container->setParent(nullptr);
}

// Two things at once: what a finger or a key still holds means nothing on what is covered since.
struct Pair {
    const char *name;
    bool isLast; // of the road's screens, else the first
    const char *held;
    QByteArray call; // that Enter makes meanwhile; empty: it leads to the next screen
};

class Together : public InHost, public testing::WithParamInterface<std::tuple<Pair, bool>> { };

TEST_P(Together, AFingerOnAButtonAndEnterDoTheThingOnce)
{
    const auto &[pair, byTouch] = GetParam();
    open(Host::window);
    if (pair.isLast) {
        goToCode();
        hands::click(visible("txtCode2"));
        hands::keys(u"3"_s);
        EXPECT_EQ(focusName(), u"btnCheck");
    }
    const bool isRow = QLatin1String(pair.held) == u"row";
    auto *const under = isRow ? row("tblKits", 0, 0) : visible(pair.held);
    if (isRow)
        hands::key(Qt::Key_Home);
    else
        under->setFocus(Qt::TabFocusReason);
    if (!pair.call.isEmpty())
        server.pause();

    hands::Finger finger;
    if (byTouch)
        finger.down(under, under->rect().center());
    else
        hands::press(under);
    hands::key(Qt::Key_Return);
    ASSERT_TRUE(pair.call.isEmpty() || waitForOverlay(true));
    if (byTouch)
        finger.up();
    else
        hands::release(under);

    server.proceed();
    ASSERT_TRUE(rests());
    ASSERT_TRUE(drainSession());
    EXPECT_EQ(paths().count(pair.call), pair.call.isEmpty() ? 0 : 1);
    EXPECT_EQ(container->findChildren<QWidget *>(u"viewCountryBack"_s).size(),
        pair.isLast || pair.call.isEmpty() ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Together,
    testing::Combine(testing::Values(Pair { "Row", false, "row", "/v1.0/start" },
                         Pair { "Panel", false, "viewAlternativeKit", "" },
                         Pair { "Check", true, "btnCheck", "/v1.0/check-otp" }),
        testing::Bool()),
    [](const auto &row) {
        return std::string(std::get<0>(row.param).name)
            + (std::get<1>(row.param) ? "Touched" : "Pressed");
    });

TEST_F(InHost, SpaceHeldOnAButtonMeansNothingOnceItIsCovered)
{
    open(Host::window);
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
