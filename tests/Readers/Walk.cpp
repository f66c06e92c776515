// Both roads by what a screen reader finds and does alone: its tree, names, actions and texts.
#include "Screens/Container.h"
#include "support/Front.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

QString roleOf(const QAccessibleInterface *node)
{
    switch (node->role()) {
    case QAccessible::Window:
        return QStringLiteral("window");
    case QAccessible::Pane:
        return QStringLiteral("pane");
    case QAccessible::Button:
        return QStringLiteral("button");
    case QAccessible::StaticText:
        return QStringLiteral("text");
    case QAccessible::EditableText:
        return QStringLiteral("field");
    case QAccessible::List:
        return QStringLiteral("list");
    case QAccessible::ListItem:
        return QStringLiteral("row");
    case QAccessible::Heading:
        return QStringLiteral("heading");
    case QAccessible::AlertMessage:
        return QStringLiteral("alert");
    default:
        return QStringLiteral("role 0x%1").arg(node->role(), 0, 16);
    }
}

// As it is read: "pane SMS { button Back; field Phone number (+47) = 4123 }"
QString read(QAccessibleInterface *node)
{
    QString text = roleOf(node) + QLatin1Char(' ') + node->text(QAccessible::Name);
    const auto state = node->state();
    if (const QString more = node->text(QAccessible::Description);
        !more.isEmpty() && node->role() == QAccessible::EditableText)
        text += QStringLiteral(" (%1)").arg(more);
    if (const QString value = node->text(QAccessible::Value); !value.isEmpty())
        text += QStringLiteral(" = ") + value;
    if (state.checked)
        text += QStringLiteral(", checked");
    if (state.busy)
        text += QStringLiteral(", busy");
    QStringList parts;
    for (int i = 0; i < node->childCount(); ++i) {
        EXPECT_EQ(node->child(i)->parent(), node) << text.toStdString();
        EXPECT_EQ(node->indexOfChild(node->child(i)), i) << text.toStdString();
        parts.append(read(node->child(i)));
    }
    return parts.isEmpty()
        ? text
        : QStringLiteral("%1 { %2 }").arg(text, parts.join(QStringLiteral("; ")));
}

QAccessibleInterface *find(QAccessibleInterface *node, const QString &what)
{
    if (roleOf(node) + QLatin1Char(' ') + node->text(QAccessible::Name) == what)
        return node;
    for (int i = 0; i < node->childCount(); ++i) {
        if (auto *found = find(node->child(i), what))
            return found;
    }
    return nullptr;
}

struct Place {
    const char *name;
    bool dialog;
    bool stacked;
    Qt::LayoutDirection direction;
};

class ReaderWalk : public ContainerTest, public testing::WithParamInterface<Place> {
protected:
    void SetUp() override
    {
        ContainerTest::SetUp();
        QApplication::setLayoutDirection(GetParam().direction);
        answer("/v1.0/init", threeApps);
        answer("/v1.0/start", R"({"result":{"deeplink":"parlo://x","reference":"R-1"}})");
        answer("/v1.0/check", R"({"result":{"sessionId":"S-1"}})");
        answer("/v1.0/country", R"({"result":{"list":[{"title":"Norway","countryCode":"NO",
            "phoneCode":"+47"},{"title":"Chad","countryCode":"TD","phoneCode":"+235"},
            {"title":"Corsica"},{"title":"Nauru","countryCode":"NR","phoneCode":"+674"}]}})");
        answer("/v1.0/send-otp", R"({"result":{"reference":"R-2"}})");
        answer("/v1.0/check-otp", R"({"result":{"sessionId":"S-2"}})");
    }
    void TearDown() override
    {
        ContainerTest::TearDown();
        host.reset();
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    void open()
    {
        Parloquin kit;
        container.reset(kit.viewControllerForLogin());
        container->setKitDelegate(delegate);
        if (GetParam().dialog || GetParam().stacked) {
            host.reset(GetParam().dialog ? new QDialog : new QWidget);
            auto *column = new QVBoxLayout(host.get());
            auto *pages = new QStackedWidget;
            pages->addWidget(container.get());
            column->addWidget(pages);
            auto *fine = new QPushButton(QStringLiteral("Fine"));
            fine->setDefault(true);
            column->addWidget(fine);
        }
        ASSERT_TRUE(comesToFront(*container->window()));
    }

    [[nodiscard]] QAccessibleInterface *kit() const
    {
        return QAccessible::queryAccessibleInterface(container.get());
    }
    /// All that there is, once it is that.
    void expectToRead(const QString &expected) const
    {
        if (HasFailure()) // a walk that went wrong ends there
            return;
        const QString whole = (host ? QStringLiteral("pane") : QStringLiteral("window"))
            + QStringLiteral(" Parloquin { %1 }").arg(expected);
        (void)QTest::qWaitFor([&] { return read(kit()) == whole; });
        EXPECT_EQ(read(kit()).toStdString(), whole.toStdString());
    }
    QAccessibleInterface *await(const QString &what) const
    {
        QAccessibleInterface *found = nullptr;
        if (HasFailure())
            return found;
        EXPECT_TRUE(QTest::qWaitFor([&] { return (found = ::find(kit(), what)) != nullptr; }))
            << what.toStdString() << " is not in " << read(kit()).toStdString();
        return found;
    }
    void press(const QString &what) const
    {
        if (auto *found = await(what))
            found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    void write(const QString &what, const QString &text) const
    {
        if (auto *found = await(what))
            found->editableTextInterface()->insertText(0, text);
    }
    [[nodiscard]] bool showsSymbol() const
    {
        const auto symbols = container->findChildren<QWidget *>(QStringLiteral("imgEmpty"));
        return std::any_of(
            symbols.begin(), symbols.end(), [](auto *one) { return one->isVisible(); });
    }
    [[nodiscard]] std::string outcome(int count) const
    {
        return waitForOutcomes(count) ? delegate->outcomes().constLast().toStdString() : "none";
    }

    std::unique_ptr<QWidget> host;
};

TEST_P(ReaderWalk, LeadsToASessionOnBothRoads)
{
    const QString apps = QStringLiteral(
        "button Close; pane Parloquin { text Pick an app.; list Messaging apps { row Verify with "
        "Parlo; row Verify with Kite; row Murmur }; button Don't use any of these apps? Get a code "
        "by SMS instead }");
    server.pause();
    open();
    expectToRead(QStringLiteral("alert Loading, busy"));
    server.proceed();
    expectToRead(apps);

    auto *const stale = await(QStringLiteral("button Close"));
    server.pause();
    press(QStringLiteral("row Verify with Parlo"));
    expectToRead(QStringLiteral("alert Loading, busy"));
    ASSERT_TRUE(stale);
    stale->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(container->isVisible()) << "closed by a button under the veil";
    server.proceed();
    ASSERT_FALSE(HasFailure());
    ASSERT_TRUE(settle(2));
    expectToRead(apps);
    comeBack();
    EXPECT_EQ(outcome(1), "succeeded S-1");

    press(QStringLiteral("button Don't use any of these apps? Get a code by SMS instead"));
    expectToRead(QStringLiteral("button Back; pane SMS { button Select Country..; field Phone "
                                "number; button Send SMS }"));
    server.pause();
    press(QStringLiteral("button Select Country.."));
    expectToRead(QStringLiteral(
        "button Back; pane Country List { list Country List { text Loading the countries… } }"));
    server.proceed();
    expectToRead(QStringLiteral(
        "button Back; pane Country List { list Country List { heading C; row Chad, +235; row "
        "Corsica, checked; heading N; row Norway, +47; row Nauru, +674 } }"));
    press(QStringLiteral("row Norway, +47"));
    write(QStringLiteral("field Phone number"), QStringLiteral("41234567"));
    expectToRead(QStringLiteral("button Back; pane SMS { button Country, Norway; field Phone "
                                "number (+47) = 41234567; button Send SMS }"));
    press(QStringLiteral("button Send SMS"));
    expectToRead(QStringLiteral(
        "button Back; pane SMS { field Code, digit 1 of 3; field Code, digit 2 of 3; field Code, "
        "digit 3 of 3; button Send Code; button Didn't you receive the code? Tap here to try "
        "again }"));
    for (const int digit : { 1, 2, 3 })
        write(QStringLiteral("field Code, digit %1 of 3").arg(digit), QString::number(digit + 3));
    press(QStringLiteral("button Send Code"));
    ASSERT_FALSE(HasFailure());
    EXPECT_EQ(outcome(2), "succeeded S-2");
    EXPECT_EQ(
        server.requests().back().parameters().value(QStringLiteral("code")), QStringLiteral("456"));

    press(QStringLiteral("button Back"));
    await(QStringLiteral("field Phone number"));
    press(QStringLiteral("button Back"));
    await(QStringLiteral("list Messaging apps"));
    press(QStringLiteral("button Close"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !container->isVisible(); }));
}

INSTANTIATE_TEST_SUITE_P(Hosts, ReaderWalk,
    testing::Values(Place { "Window", false, false, Qt::LeftToRight },
        Place { "WindowRightToLeft", false, false, Qt::RightToLeft },
        Place { "Dialog", true, false, Qt::LeftToRight },
        Place { "DialogRightToLeft", true, false, Qt::RightToLeft },
        Place { "StackedPage", false, true, Qt::LeftToRight },
        Place { "StackedPageRightToLeft", false, true, Qt::RightToLeft }),
    [](const auto &row) { return row.param.name; });

// Nothing comes: the list says so instead of staying blank, and asks for nothing.
class EmptyLists : public ReaderWalk { };

TEST_P(EmptyLists, SayWhatTheyWaitForAndWhatTheyGot)
{
    const std::pair<const char *, QByteArray> nothings[] = { { "no list", R"({"result":{}})" },
        { "an empty list", R"({"result":{"list":[]}})" }, { "garbage", "x" } };
    for (const auto &[what, json] : nothings) {
        SCOPED_TRACE(what);
        answer("/v1.0/init", json);
        const auto before = server.requests().size();
        open();
        await(QStringLiteral("text No apps to show"));
        EXPECT_EQ(server.requests().size(), before + 1);
        container.reset();
    }

    answer("/v1.0/init", threeApps);
    open();
    press(QStringLiteral("button Don't use any of these apps? Get a code by SMS instead"));
    for (const auto &[what, json] : nothings) {
        SCOPED_TRACE(what);
        answer("/v1.0/country", json);
        server.pause();
        press(QStringLiteral("button Select Country.."));
        await(QStringLiteral("text Loading the countries…"));
        EXPECT_TRUE(showsSymbol());
        server.proceed();
        await(QStringLiteral("text No countries to show"));
        EXPECT_TRUE(showsSymbol());
        press(QStringLiteral("button Back"));
        await(QStringLiteral("field Phone number"));
    }
}

INSTANTIATE_TEST_SUITE_P(Window, EmptyLists,
    testing::Values(Place { "Window", false, false, Qt::LeftToRight }),
    [](const auto &row) { return row.param.name; });

} // namespace
