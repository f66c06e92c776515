// The road by messaging app, from the first request to the outcome, and containers that go on it.
// What those leave behind while calls are out: tests/Faults.
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Screens/Container.h"
#include "support/Console.h"
#include "support/DeveloperWords.h"
#include "support/Widgets.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtNetwork/QLocalServer>

#include <atomic>

/// Outside of namespaces, as the macro has it.
static void forgetCompiledInKeys() { Q_CLEANUP_RESOURCE(HostKeys); }

namespace {

const QByteArray linkAndReference = R"({"meta":{"httpStatusCode":200},"result":
    {"deeplink":"parlo://send?text=a%20b%22%27%24(x)&to=c","reference":"R-1"}})";

class Flow : public ContainerTest {
protected:
    void SetUp() override
    {
        ContainerTest::SetUp();
        answerBothRoads();
        answer("/v1.0/start", linkAndReference);
    }

    void presentStarted()
    {
        presentLoaded();
        tapRow(1); // no handler
        tapRow(2); // names no link
        tapRow(0); // had the others asked for anything, it would stand in front
        ASSERT_SOON(!handlerArguments().isEmpty());
        ASSERT_TRUE(settle(2));
    }
};

TEST_F(Flow, LeadsFromTheListToASessionId)
{
    presentStarted();
    EXPECT_EQ(handlerArguments(), QStringList(u"parlo://send?text=a%20b%22%27%24(x)&to=c"_s));

    // The session id alone decides.
    answer("/v1.0/check", R"({"meta":{"httpStatusCode":500},
        "result":{"sessionId":"S-1","validationStatus":false}})");
    std::atomic<bool> isOnMain = true;
    delegate->whenTold = [&] { isOnMain = QThread::currentThread() == qApp->thread(); };
    comeBack();
    ASSERT_SOON(!isOnMain) << "told on the main thread, or never";
    EXPECT_EQ(delegate->outcomes(), QStringList(u"succeeded S-1"_s));
    answer("/v1.0/check", R"({"result":{"validationStatus":true}})");
    comeBack();
    ASSERT_TRUE(waitForOutcomes(2));
    EXPECT_EQ(delegate->outcomes().constLast(), u"failed 0"_s);
}

struct SecondStart {
    const char *name;
    QByteArray answer;
    bool opens;
    QString asked; ///< in the end: by two returns after the first, and one after this
    QStringList outcomes; ///< of all
    QStringList words; ///< to the developer, of the second
};

class SecondStarts : public Flow, public testing::WithParamInterface<SecondStart> { };

TEST_P(SecondStarts, ReplaceWhatTheFirstLeftAndNoMore)
{
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
    {
        const DeveloperWords developer;
        tapRow(0);
        ASSERT_TRUE(settle(5));
        QStringList words;
        for (const char *scheme : { "kite://", "not a url" })
            words += QLatin1String(scheme)
                + u": no handler for its links, so its app counts as not installed"_s;
        EXPECT_EQ(developer.heard(), words + GetParam().words);
    }
    EXPECT_EQ(GetParam().opens,
        QTest::qWaitFor(
            [] { return !handlerArguments().isEmpty(); }, GetParam().opens ? 5000 : 50));
    comeBack();
    ASSERT_TRUE(waitForOutcomes(static_cast<int>(GetParam().outcomes.size())));
    ASSERT_TRUE(settle(4 + static_cast<size_t>(GetParam().asked.count(u','))));
    QStringList asked;
    for (const RawRequest &request : server.requests()) {
        if (request.path() == "/v1.0/check")
            asked << request.parameters().value(u"reference"_s).toString();
    }
    EXPECT_EQ(asked.join(u','), GetParam().asked);
    EXPECT_EQ(delegate->outcomes(), GetParam().outcomes);
}

const QString yes = u"succeeded S-1"_s;
const QString refused = u"start: refused by the service, status %1, code none"_s;
const QString noLink = u"start: no link that could be opened came with the answer"_s;
const QString noHandler = u"kite: no handler for the link that the service sent"_s;
const SecondStart secondStarts[] = {
    { "Another",
        R"({"meta":{"httpStatusCode":200},"result":{"deeplink":"parlo://x","reference":"R-2"}})",
        true, u"R-1,R-1,R-2"_s, { yes, yes, yes }, {} },
    { "WithoutLink", R"({"result":{"reference":"R-2"}})", false, u"R-1,R-1,R-2"_s,
        { yes, yes, yes }, { refused.arg(0), noLink } },
    { "WithoutReference", R"({"result":{"deeplink":"parlo://x"}})", true, u"R-1,R-1"_s,
        { yes, yes }, { refused.arg(0) } },
    { "NoUrl", R"({"result":{"deeplink":"parlo://a b","reference":"R-2"}})", false,
        u"R-1,R-1,R-2"_s, { yes, yes, yes }, { refused.arg(0), noLink } },
    { "NoHandler", R"({"result":{"deeplink":"kite://send?text=code%20Q7","reference":"R-2"}})",
        false, u"R-1,R-1,R-2"_s, { yes, yes, yes }, { refused.arg(0), noHandler } },
    { "HandlerWithoutLinks", R"({"result":{"deeplink":"deaf://x","reference":"R-2"}})", false,
        u"R-1,R-1,R-2"_s, { yes, yes, yes },
        { refused.arg(0), QString(noHandler).replace(u"kite"_s, u"deaf"_s) } },
    { "Refused", R"({"meta":{"httpStatusCode":500}})", false, u"R-1,R-1"_s, { yes, yes },
        { refused.arg(500), noLink } },
    { "Failed", "no envelope", false, u"R-1,R-1,R-1"_s, { yes, yes, u"failed 1"_s, yes }, {} },
};
INSTANTIATE_TEST_SUITE_P(Rows, SecondStarts, testing::ValuesIn(secondStarts), byName);

TEST_F(Flow, FillsTheScreenWithWhatCame)
{
    const struct {
        QByteArray answer;
        int rows;
        bool hasPanel;
    } answers[] = {
        { R"({"meta":{"httpStatusCode":403,"errorCode":"403003"}})", 0, false },
        { R"({"result":{"description":"d","alternativeValidation":"call"}})", 0, true },
        { R"({"result":{"list":[{"text":"t"}],"alternativeValidationDescription":"x"}})", 1,
            false },
        { "garbage", 0, false },
    };
    for (const auto &row : answers) {
        SCOPED_TRACE(row.answer.constData());
        answer("/v1.0/init", row.answer);
        const auto before = server.requests().size();
        present();
        ASSERT_TRUE(settle(before + 1));
        EXPECT_EQ(server.requests().size(), before + 1) << "asked once";
        EXPECT_EQ(find<TableView>("tblKits")->visibleCells().size(), row.rows);
        EXPECT_EQ(find("viewAlternativeKit")->isVisible(), row.hasPanel);
        EXPECT_EQ(visible("lblEmpty") != nullptr, row.rows == 0);
    }
    EXPECT_EQ(delegate->outcomes(), QStringList(u"failed 1"_s)) << "of the garbage";
}

TEST_F(Flow, OpensTheAppWhereTheSessionsBusIsSilent)
{
    const QTemporaryDir folder;
    QLocalServer bus;
    ASSERT_TRUE(bus.listen(folder.filePath(u"bus"_s)));
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.fullServerName().toUtf8());
    presentStarted(); // in five seconds
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
}

TEST_F(Flow, PrintsWhyAnAppCannotBeStarted)
{
    presentLoaded();
    const QByteArray tooLong(200'000, 'x'); // for an argument of a program
    answer("/v1.0/start", R"({"result":{"deeplink":"parlo://send?text=)" + tooLong + R"("}})");
    const std::string log = printedBy([&] {
        tapRow(0);
        (void)settle(2);
        answer("/v1.0/start", linkAndReference);
        tapRow(0);
        (void)QTest::qWaitFor([] { return !handlerArguments().isEmpty(); }); // behind the other
    });
    EXPECT_NE(log.find("\u26A0\uFE0F\nCannot open the app for parlo: links: Failed to execute"),
        std::string::npos)
        << log.substr(0, 4000);
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

TEST_F(Flow, TellsTheDeveloperThatNobodyListens)
{
    presentStarted();
    container->setKitDelegate(nullptr);
    const DeveloperWords developer;
    comeBack();
    ASSERT_TRUE(settle(3));
    EXPECT_EQ(developer.heard(), QStringList(u"an outcome reaches nobody: no delegate is set"_s));
    EXPECT_EQ(delegate->outcomes(), QStringList());
}

using Lifetime = Flow;

// Such a call fails at once, within the event that made it; that of the first screen after show().
TEST_F(Lifetime, DeletesItselfOverAMissingNetwork)
{
    bool mayGo = true;
    delegate->whenTold = [&] {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        EXPECT_TRUE(mayGo) << "told within show()";
        if (mayGo)
            container.reset();
    };
    auto &isReachable = ApiSessionHelper::shared().isNetworkReachable;
    for (const bool isStarted : { false, true }) {
        isReachable = true;
        const auto before = server.requests().size();
        present();
        ASSERT_TRUE(settle(before + 1));
        if (isStarted) {
            tapRow(0);
            ASSERT_TRUE(settle(before + 2));
        }
        isReachable = false;
        isStarted ? comeBack() : tapRow(0);
        EXPECT_SOON(!container);
        comeBack(); // nobody is left to ask
    }
    const int connections = server.connections();
    mayGo = false;
    present();
    mayGo = true;
    EXPECT_SOON(!container);
    EXPECT_EQ(server.connections(), connections);
    EXPECT_EQ(delegate->outcomes().join(u','), u"failed 1,failed 1,failed 1");
}

} // namespace
