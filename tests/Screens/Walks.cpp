// Both roads from end to end by one kind of input alone, in every kind of host.
#include "Parloquin/Toolkit/TableView.h"
#include "Screens/Container.h"
#include "support/Hands.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QVBoxLayout>

#include <tuple>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

enum class Input { keys, touch };
enum class Host { window, dialog, stack };

/// A host around the container that counts what reaches it and was not meant to.
class Around : public QDialog {
public:
    explicit Around(Host kind)
    {
        setObjectName(u"host"_s);
        pages = new QStackedWidget(this);
        auto *const start = new QPushButton(u"Verify"_s);
        pages->addWidget(start);
        auto *const rows = new QVBoxLayout(this);
        rows->addWidget(pages);
        if (kind == Host::dialog) {
            buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
            buttons->button(QDialogButtonBox::Ok)->setDefault(true);
            connect(buttons, &QDialogButtonBox::accepted, this, [this] { ++reached; });
            rows->addWidget(buttons);
        }
        connect(this, &QDialog::rejected, this, [this] { ++reached; });
    }

    int reached = 0;
    QStackedWidget *pages;
    QDialogButtonBox *buttons = nullptr;

protected:
    void mousePressEvent(QMouseEvent *) override { ++reached; }
    void mouseReleaseEvent(QMouseEvent *) override { ++reached; }
};

class Walk : public ContainerTest,
             public testing::WithParamInterface<std::tuple<Input, Qt::LayoutDirection, Host>> {
protected:
    void SetUp() override
    {
        ContainerTest::SetUp();
        QApplication::setLayoutDirection(std::get<Qt::LayoutDirection>(GetParam()));
        answer("/v1.0/init", threeApps);
        answer("/v1.0/start", R"({"result":{"deeplink":"parlo://send","reference":"R-1"}})");
        answer("/v1.0/check", R"({"result":{"sessionId":"S-1"}})");
        answer("/v1.0/country", R"({"result":{"list":[
            {"title":"Chad","countryCode":"TD","phoneCode":"+235"},
            {"title":"Norway","countryCode":"NO","phoneCode":"+47"}]}})");
        answer("/v1.0/send-otp", R"({"result":{"reference":"R-2"}})");
        answer("/v1.0/check-otp", R"({"result":{"sessionId":"S-2"}})");

        Parloquin kit;
        container.reset(kit.viewControllerForLogin());
        container->setKitDelegate(delegate);
        const auto host = std::get<Host>(GetParam());
        if (host == Host::window) {
            container->show();
            ASSERT_TRUE(QTest::qWaitForWindowActive(container.get()));
        } else {
            around = std::make_unique<Around>(host);
            around->pages->addWidget(container.get());
            if (host == Host::dialog) {
                around->pages->setCurrentWidget(container.get());
                container->setFocus(); // the button was there first
            }
            around->show();
            ASSERT_TRUE(QTest::qWaitForWindowActive(around.get()));
            around->pages->setCurrentWidget(container.get());
        }
        ASSERT_TRUE(settle(1));
    }
    void TearDown() override
    {
        if (around)
            around->pages->removeWidget(container.get());
        container->setParent(nullptr);
        ContainerTest::TearDown();
        EXPECT_TRUE(!around || around->reached == 0) << "the host got what was not its own";
    }

    [[nodiscard]] bool rests() const
    {
        return QTest::qWaitFor([this] { return container->property("atRest").toBool(); });
    }
    [[nodiscard]] bool seen(const char *name) const
    {
        return QTest::qWaitFor([&] {
            for (const auto *widget : container->findChildren<QWidget *>(QLatin1String(name))) {
                if (widget->isVisible() && container->property("atRest").toBool())
                    return true;
            }
            return false;
        });
    }
    /// With the keyboard where it is: somewhere in the kit, always.
    [[nodiscard]] QString focusName() const
    {
        const auto *focused = QApplication::focusWidget();
        EXPECT_TRUE(focused && (focused == container.get() || container->isAncestorOf(focused)))
            << "the focus is " << (focused ? "the host's" : "nowhere");
        return focused ? focused->objectName() : QString();
    }
    void tabTo(const char *name) const
    {
        for (int i = 0; i < 20 && focusName() != QLatin1String(name); ++i)
            hands::key(Qt::Key_Tab);
        EXPECT_EQ(focusName(), QLatin1String(name));
    }
    [[nodiscard]] QWidget *visible(const char *name) const
    {
        for (auto *widget : container->findChildren<QWidget *>(QLatin1String(name))) {
            if (widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    void touch(const char *name) { finger.tap(visible(name)); }
    [[nodiscard]] QWidget *row(const char *table, int section, int at) const
    {
        TableCell *cell = nullptr;
        const auto *rows = find<TableView>(table);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return (cell = rows->cellForRow({ section, at })) != nullptr;
        }));
        return cell;
    }

    std::unique_ptr<Around> around;
    hands::Finger finger;
};

TEST_P(Walk, LeadsAlongBothRoads)
{
    const bool byKeys = std::get<Input>(GetParam()) == Input::keys;

    // By messaging app.
    if (byKeys) {
        EXPECT_EQ(focusName(), u"tblKits");
        hands::key(Qt::Key_Home);
        hands::hold(Qt::Key_Return);
    } else {
        finger.tap(row("tblKits", 0, 0));
    }
    ASSERT_TRUE(QTest::qWaitFor([] { return !handlerArguments().isEmpty(); }));
    ASSERT_TRUE(settle(2));
    comeBack();
    ASSERT_TRUE(waitForOutcomes(1));
    EXPECT_EQ(takeHandlerStarts(), 1);
    ASSERT_TRUE(rests());

    // By SMS, and back again from each screen on the way.
    if (byKeys) {
        EXPECT_EQ(focusName(), u"tblKits") << "what had it before the overlay";
        tabTo("viewAlternativeKit");
        hands::key(Qt::Key_Space);
        ASSERT_TRUE(seen("viewCountryBack"));
        EXPECT_EQ(focusName(), u"viewCountryBack");
        hands::hold(Qt::Key_Escape);
        ASSERT_TRUE(seen("viewAlternativeKit"));
        EXPECT_EQ(focusName(), u"viewAlternativeKit");
        hands::hold(Qt::Key_Enter);
        ASSERT_TRUE(seen("viewCountryBack"));
        hands::key(Qt::Key_Return);
        ASSERT_TRUE(seen("tblCountries"));
        EXPECT_EQ(focusName(), u"tblCountries");
        (void)row("tblCountries", 1, 0);
        hands::key(Qt::Key_N);
        hands::hold(Qt::Key_Return);
        ASSERT_TRUE(seen("viewCountryBack"));
        EXPECT_EQ(focusName(), u"viewCountryBack");
        tabTo("txtPhoneNumber");
        hands::keys(u"41234567"_s);
        hands::hold(Qt::Key_Return);
    } else {
        touch("viewAlternativeKit");
        ASSERT_TRUE(seen("viewCountryBack"));
        touch("viewCountryBack");
        (void)row("tblCountries", 1, 0);
        ASSERT_TRUE(rests());
        finger.tap(row("tblCountries", 1, 0));
        ASSERT_TRUE(seen("txtPhoneNumber"));
        touch("txtPhoneNumber");
        hands::commit(u"41234567"_s);
        touch("btnContinue");
    }
    ASSERT_TRUE(seen("btnCheck"));
    (void)focusName();
    ASSERT_TRUE(QTest::qWaitFor([this] { return find("txtCode0")->hasFocus(); }));
    if (byKeys) {
        hands::keys(u"471"_s);
        EXPECT_EQ(focusName(), u"btnCheck");
        hands::hold(Qt::Key_Return);
    } else {
        for (const QString &digit : { u"4"_s, u"7"_s, u"1"_s })
            hands::commit(digit);
        EXPECT_EQ(focusName(), u"btnCheck");
        touch("btnCheck");
    }
    ASSERT_TRUE(waitForOutcomes(2));
    EXPECT_EQ(delegate->outcomes(), QStringList({ u"succeeded S-1"_s, u"succeeded S-2"_s }));
    ASSERT_TRUE(rests());
    EXPECT_EQ(server.requests().size(), 6U) << "each call went out once";

    for (const char *before : { "btnContinue", "viewAlternativeKit" }) {
        (void)focusName();
        if (byKeys)
            hands::key(Qt::Key_Left, Qt::AltModifier);
        else
            touch("btnBack");
        ASSERT_TRUE(seen(before)) << before;
    }
    (void)focusName();
}

TEST(Container, FitsIntoAHostsLayoutAndOnTheScreen)
{
    const std::unique_ptr<ParloquinViewController> container(Parloquin().viewControllerForLogin());
    EXPECT_NE(container->focusProxy(), nullptr);
    EXPECT_EQ(container->minimumSizeHint(), QSize(320, 480));
    EXPECT_EQ(container->sizeHint().width(), 390);
    EXPECT_LE(container->sizeHint().height(), container->screen()->availableGeometry().height());
    EXPECT_EQ(container->size(), container->sizeHint());
}

using Case = testing::TestParamInfo<Walk::ParamType>;

std::string nameOf(const Case &walk)
{
    constexpr const char *hosts[] = { "Window", "Dialog", "Stack" };
    const auto &[input, direction, host] = walk.param;
    return std::string(input == Input::keys ? "Keys" : "Touch")
        + (direction == Qt::LeftToRight ? "LeftToRight" : "RightToLeft")
        + hosts[static_cast<int>(host)];
}

INSTANTIATE_TEST_SUITE_P(Hosts, Walk,
    testing::Combine(testing::Values(Input::keys, Input::touch),
        testing::Values(Qt::LeftToRight, Qt::RightToLeft),
        testing::Values(Host::window, Host::dialog, Host::stack)),
    nameOf);

} // namespace
