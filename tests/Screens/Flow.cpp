// The road by messaging app, from the first request to the outcome.
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Screens/Container.h"
#include "support/DeveloperWords.h"

#include <QtCore/QJsonObject>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

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

TEST_F(Flow, AsksOnEveryReturnWithTheLastReference)
{
    presentLoaded();
    comeBack(); // before any start: asks nothing
    tapRow(0);
    ASSERT_TRUE(settle(2));
    comeBack();
    ASSERT_TRUE(waitForOutcomes(1));
    ASSERT_TRUE(settle(3));

    answer("/v1.0/start", R"({"result":{"reference":"R-2"}})");
    comeBack();
    ASSERT_TRUE(waitForOutcomes(2));
    ASSERT_TRUE(waitForOverlay(false));
    tapRow(0);
    ASSERT_TRUE(settle(5));
    comeBack();
    ASSERT_TRUE(waitForOutcomes(3));

    EXPECT_EQ(paths(),
        QList<QByteArray>({ "/v1.0/init", "/v1.0/start", "/v1.0/check", "/v1.0/check",
            "/v1.0/start", "/v1.0/check" }));
    QStringList references;
    for (const RawRequest &request : server.requests()) {
        if (request.path() == "/v1.0/check")
            references << request.parameters().value(QStringLiteral("reference")).toString();
    }
    EXPECT_EQ(references,
        QStringList({ QStringLiteral("R-1"), QStringLiteral("R-1"), QStringLiteral("R-2") }));
    EXPECT_EQ(delegate->outcomes().count(QStringLiteral("succeeded S-1")), 3);
}

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
void PrintTo(const StartRow &row, std::ostream *out) { *out << row.name; }

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
INSTANTIATE_TEST_SUITE_P(Rows, StartAnswer, testing::ValuesIn(startRows),
    [](const auto &row) { return std::string(row.param.name); });

struct CheckRow {
    const char *name;
    QByteArray answer;
    QString outcome;
};
void PrintTo(const CheckRow &row, std::ostream *out) { *out << row.name; }

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
INSTANTIATE_TEST_SUITE_P(Rows, CheckAnswer, testing::ValuesIn(checkRows),
    [](const auto &row) { return std::string(row.param.name); });

struct InitRow {
    const char *name;
    QByteArray answer;
    int rows;
    bool hasPanel;
    QString description;
    QStringList outcomes;
};
void PrintTo(const InitRow &row, std::ostream *out) { *out << row.name; }

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
INSTANTIATE_TEST_SUITE_P(Rows, InitAnswer, testing::ValuesIn(initRows),
    [](const auto &row) { return std::string(row.param.name); });

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
