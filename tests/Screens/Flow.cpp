// The road by messaging app, from the first request to the outcome.
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Screens/Container.h"
#include "support/ByName.h"
#include "support/DeveloperWords.h"

#include <QtCore/QJsonObject>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

/// Outside of namespaces, as the macro has it.
static void forgetCompiledInKeys() { Q_CLEANUP_RESOURCE(HostKeys); }

using namespace parloquin;

namespace {

const QByteArray linkAndReference = R"({"meta":{"httpStatusCode":200},"result":
    {"deeplink":"parlo://send?text=a%20b%22%27%24(x)&to=c","reference":"R-1"}})";
const QByteArray garbage = "no envelope";

class Flow : public ContainerTest {
protected:
    void SetUp() override
    {
        ContainerTest::SetUp();
        answer("/v1.0/init", threeApps);
        answer("/v1.0/start", linkAndReference);
        answer("/v1.0/check", R"({"meta":{"httpStatusCode":200},"result":{"sessionId":"S-1"}})");
    }

    void presentStarted()
    {
        presentLoaded();
        tapRow(0);
        ASSERT_TRUE(QTest::qWaitFor([] { return !handlerArguments().isEmpty(); }));
        ASSERT_TRUE(settle(2));
    }
};

TEST_F(Flow, LeadsFromTheListToASessionId)
{
    presentStarted();
    EXPECT_EQ(handlerArguments(),
        QStringList(QStringLiteral("parlo://send?text=a%20b%22%27%24(x)&to=c")));
    EXPECT_EQ(delegate->outcomes(), QStringList());

    comeBack();
    ASSERT_TRUE(waitForOutcomes(1));
    EXPECT_EQ(delegate->outcomes(), QStringList(QStringLiteral("succeeded S-1")));
    EXPECT_EQ(delegate->outcomesOnMainThread(), 0);
    EXPECT_TRUE(waitForOverlay(false));
    EXPECT_TRUE(container->isVisible()); // closing is the host's

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 3U);
    const QJsonObject start = requests[1].parameters();
    EXPECT_EQ(start.value(QStringLiteral("app")).toString(), QStringLiteral("parlo"));
    EXPECT_EQ(start.value(QStringLiteral("installedApps")).toString(),
        QStringLiteral(R"({"kite:\/\/":"0","not a url":"0","parlo:\/\/":"1"})"));
    EXPECT_EQ(requests[2].parameters(),
        QJsonObject({ { QStringLiteral("reference"), QStringLiteral("R-1") } }));
}

TEST_F(Flow, ShowsTheOverlayWhileEachCallIsOut)
{
    const auto heldBack = [this](const std::function<void()> &act, const char *path) {
        SCOPED_TRACE(path);
        server.pause();
        const auto before = server.requests().size();
        act();
        EXPECT_TRUE(waitForOverlay(true));
        EXPECT_TRUE(server.waitForRequests(before + 1));
        EXPECT_EQ(paths().constLast(), path);
        EXPECT_TRUE(overlayIsUp());
        server.proceed();
        EXPECT_TRUE(waitForOverlay(false));
    };
    heldBack([this] { present(); }, "/v1.0/init");
    heldBack([this] { tapRow(0); }, "/v1.0/start");
    ASSERT_TRUE(settle(2));
    heldBack([] { comeBack(); }, "/v1.0/check");
}

struct SecondStart {
    const char *name;
    QByteArray answer;
    bool opens;
    QString asks; ///< on the return after it, by that reference; empty: nothing
    QStringList outcomes; ///< of all
};

void PrintTo(const SecondStart &row, std::ostream *out) { *out << row.name; }

class SecondStarts : public Flow, public testing::WithParamInterface<SecondStart> { };

TEST_P(SecondStarts, ReplaceWhatTheFirstLeftAndNoMore)
{
    const auto asked = [this] {
        QStringList references;
        for (const RawRequest &request : server.requests()) {
            if (request.path() == "/v1.0/check")
                references << request.parameters().value(QStringLiteral("reference")).toString();
        }
        return references;
    };
    presentLoaded();
    comeBack(); // before any start: asks nothing
    tapRow(0);
    ASSERT_TRUE(settle(2));
    for (int i = 1; i <= 2; ++i) { // on every return anew
        comeBack();
        ASSERT_TRUE(waitForOutcomes(i) && settle(2 + static_cast<size_t>(i)));
    }
    (void)QTest::qWaitFor([] { return !handlerArguments().isEmpty(); });
    forgetHandlerArguments();

    answer("/v1.0/start", GetParam().answer);
    tapRow(0);
    ASSERT_TRUE(settle(5));
    EXPECT_EQ(GetParam().opens,
        QTest::qWaitFor(
            [] { return !handlerArguments().isEmpty(); }, GetParam().opens ? 5000 : 50));
    comeBack();
    ASSERT_TRUE(waitForOutcomes(static_cast<int>(GetParam().outcomes.size())));
    ASSERT_TRUE(settle(GetParam().asks.isEmpty() ? 5 : 6));
    const QString first = QStringLiteral("R-1");
    EXPECT_EQ(asked().mid(0, 2), QStringList({ first, first }));
    EXPECT_EQ(asked().mid(2).join(u','), GetParam().asks);
    EXPECT_EQ(delegate->outcomes(), GetParam().outcomes);
}

const QString yes = QStringLiteral("succeeded S-1");
const SecondStart secondStarts[] = {
    { "Another", R"({"result":{"deeplink":"parlo://x","reference":"R-2"}})", true,
        QStringLiteral("R-2"), { yes, yes, yes } },
    { "WithoutLink", R"({"result":{"reference":"R-2"}})", false, QStringLiteral("R-2"),
        { yes, yes, yes } },
    { "WithoutReference", R"({"result":{"deeplink":"parlo://x"}})", true, {}, { yes, yes } },
    { "Refused", R"({"meta":{"httpStatusCode":500}})", false, {}, { yes, yes } },
    { "Failed", garbage, false, QStringLiteral("R-1"),
        { yes, yes, QStringLiteral("failed 1"), yes } },
};
INSTANTIATE_TEST_SUITE_P(Rows, SecondStarts, testing::ValuesIn(secondStarts), byName);

TEST_F(Flow, IgnoresAppsThatTheDeviceDoesNotHave)
{
    presentLoaded();
    tapRow(1); // no handler
    tapRow(2); // names no link
    QCoreApplication::processEvents();
    EXPECT_FALSE(overlayIsUp());
    tapRow(0);
    ASSERT_TRUE(server.waitForRequests(2));
    // Had the others asked for anything, it would stand in front.
    EXPECT_EQ(server.requests()[1].parameters().value(QStringLiteral("app")).toString(),
        QStringLiteral("parlo"));
    ASSERT_TRUE(settle(2));
    EXPECT_EQ(paths().size(), 2);
    EXPECT_EQ(delegate->outcomes(), QStringList());
}

struct StartRow {
    const char *name;
    QByteArray answer;
    bool opens;
    bool asks; ///< on the next return
    QStringList outcomes; ///< of the start itself
    QStringList words = {}; ///< to the developer
};

class StartAnswer : public Flow, public testing::WithParamInterface<StartRow> { };

TEST_P(StartAnswer, LeadsOnOrNot)
{
    answer("/v1.0/start", GetParam().answer);
    presentLoaded();
    const DeveloperWords developer;
    tapRow(0);
    ASSERT_TRUE(settle(2));
    QStringList words;
    for (const char *scheme : { "kite://", "not a url" })
        words += QLatin1String(scheme)
            + QStringLiteral(": no handler for its links, so its app counts as not installed");
    EXPECT_EQ(developer.heard(), words + GetParam().words);
    EXPECT_EQ(GetParam().opens,
        QTest::qWaitFor([] { return !handlerArguments().isEmpty(); }, GetParam().opens ? 5000 : 0));
    EXPECT_EQ(delegate->outcomes(), GetParam().outcomes);

    comeBack();
    QCoreApplication::processEvents();
    EXPECT_TRUE(GetParam().asks || !overlayIsUp());
    ASSERT_TRUE(waitForOutcomes(GetParam().asks ? 1 : 0));
    EXPECT_EQ(paths().count("/v1.0/check"), GetParam().asks ? 1 : 0);
}

const QString refused = QStringLiteral("start: refused by the service, status %1, code none");
const QString withoutStatus = refused.arg(0);
const QString noLink = QStringLiteral("start: no link that could be opened came with the answer");
const QString noHandler = QStringLiteral("%1: no handler for the link that the service sent");
const StartRow startRows[] = {
    { "Whole", linkAndReference, true, true, {} },
    { "WithoutLink", R"({"result":{"reference":"R"}})", false, true, {},
        { withoutStatus, noLink } },
    { "WithoutReference", R"({"result":{"deeplink":"parlo://x"}})", true, false, {},
        { withoutStatus } },
    { "NoUrl", R"({"result":{"deeplink":"parlo://a b","reference":"R"}})", false, true, {},
        { withoutStatus, noLink } },
    { "NoHandler", R"({"result":{"deeplink":"kite://send?text=code%20Q7","reference":"R"}})", false,
        true, {}, { withoutStatus, noHandler.arg(QStringLiteral("kite")) } },
    { "File", R"({"result":{"deeplink":"file:///etc/passwd","reference":"R"}})", false, true, {},
        { withoutStatus, noHandler.arg(QStringLiteral("file")) } },
    { "ServiceError", R"({"meta":{"httpStatusCode":500}})", false, false, {},
        { refused.arg(500), noLink } },
    { "Garbage", garbage, false, false, { QStringLiteral("failed 1") } },
};
INSTANTIATE_TEST_SUITE_P(Rows, StartAnswer, testing::ValuesIn(startRows), byName);

struct CheckRow {
    const char *name;
    QByteArray answer;
    QString outcome;
};

class CheckAnswer : public Flow, public testing::WithParamInterface<CheckRow> { };

TEST_P(CheckAnswer, DecidesByTheSessionIdAlone)
{
    answer("/v1.0/check", GetParam().answer);
    presentStarted();
    comeBack();
    ASSERT_TRUE(waitForOutcomes(1));
    EXPECT_EQ(delegate->outcomes(), QStringList(GetParam().outcome));
    EXPECT_TRUE(waitForOverlay(false));
}

const CheckRow checkRows[] = {
    { "Refused", R"({"result":{"sessionId":"S","validationStatus":false}})",
        QStringLiteral("succeeded S") },
    { "ErrorStatus", R"({"meta":{"httpStatusCode":500},"result":{"sessionId":"S"}})",
        QStringLiteral("succeeded S") },
    { "NoSession", R"({"result":{"validationStatus":true}})", QStringLiteral("failed 0") },
    { "NoResult", R"({"meta":{"httpStatusCode":200}})", QStringLiteral("failed 0") },
    { "Garbage", garbage, QStringLiteral("failed 1") },
};
INSTANTIATE_TEST_SUITE_P(Rows, CheckAnswer, testing::ValuesIn(checkRows), byName);

struct InitRow {
    const char *name;
    QByteArray answer;
    int rows;
    bool hasPanel;
    QString description;
    QStringList outcomes;
};

class InitAnswer : public Flow, public testing::WithParamInterface<InitRow> { };

TEST_P(InitAnswer, FillsTheScreen)
{
    answer("/v1.0/init", GetParam().answer);
    presentLoaded();
    EXPECT_EQ(find<TableView>("tblKits")->visibleCells().size(), GetParam().rows);
    EXPECT_EQ(find("viewAlternativeKit")->isVisible(), GetParam().hasPanel);
    EXPECT_EQ(find<Label>("lblDescription")->text(), GetParam().description);
    EXPECT_EQ(delegate->outcomes(), GetParam().outcomes);
}

const InitRow initRows[] = {
    { "Whole", threeApps, 3, true, QStringLiteral("Pick an app."), {} },
    { "NoResult", R"({"meta":{"httpStatusCode":200}})", 0, false, {}, {} },
    { "ServiceError", R"({"meta":{"httpStatusCode":403,"errorCode":"403003"}})", 0, false, {}, {} },
    { "NoList", R"({"result":{"description":"d","alternativeValidation":"call"}})", 0, true,
        QStringLiteral("d"), {} },
    { "NoAlternative", R"({"result":{"list":[{"text":"t"}],
        "alternativeValidationDescription":"x"}})",
        1, false, {}, {} },
    { "Garbage", garbage, 0, false, {}, { QStringLiteral("failed 1") } },
};
INSTANTIATE_TEST_SUITE_P(Rows, InitAnswer, testing::ValuesIn(initRows), byName);

TEST_F(Flow, TellsAtOnceThatThereIsNoNetwork)
{
    ApiSessionHelper::shared().isNetworkReachable = false;
    present();
    ASSERT_TRUE(waitForOutcomes(1));
    EXPECT_TRUE(waitForOverlay(false));
    EXPECT_EQ(delegate->outcomes(), QStringList(QStringLiteral("failed 1")));
    EXPECT_EQ(delegate->outcomesOnMainThread(), 1);
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(Flow, StopsAProgramWithoutKeysAndSaysWhatItLacks)
{
    const auto open = [this] {
        forgetCompiledInKeys();
        present();
        (void)settle(1);
    };
    EXPECT_DEATH(open(), "usable ParloquinSecret");
}

TEST_F(Flow, AsksTheDelegateOfTheMoment)
{
    presentStarted();
    server.pause();
    comeBack();
    ASSERT_TRUE(server.waitForRequests(3));
    const auto successor = std::make_shared<RecordingDelegate>();
    container->setKitDelegate(successor);
    server.proceed();
    EXPECT_TRUE(QTest::qWaitFor([&] { return successor->outcomes().size() == 1; }));

    container->setKitDelegate(nullptr); // from now on outcomes are dropped
    ASSERT_TRUE(waitForOverlay(false));
    const DeveloperWords developer;
    comeBack();
    ASSERT_TRUE(settle(4));
    EXPECT_EQ(developer.heard(),
        QStringList(QStringLiteral("an outcome reaches nobody: no delegate is set")));
    EXPECT_EQ(paths().count("/v1.0/check"), 2);
    EXPECT_EQ(successor->outcomes().size(), 1);
    EXPECT_EQ(delegate->outcomes().size(), 0);
}

} // namespace
