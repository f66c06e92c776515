// The road by messaging app, from the first request to the outcome, and containers that go on it.
// What those leave behind while calls are out: tests/Faults.
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Screens/Container.h"
#include "support/Console.h"
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

TEST_F(Flow, TellsWhatCameOfItOnTheNetworksThread)
{
    presentStarted();
    std::atomic<bool> isOnMain = true;
    delegate->whenTold = [&] { isOnMain = QThread::currentThread() == qApp->thread(); };
    comeBack();
    EXPECT_SOON(!isOnMain) << "told on the main thread, or never";
}

TEST_F(Flow, OpensTheAppWhereTheSessionsBusIsSilent)
{
    const QTemporaryDir folder;
    QLocalServer bus;
    ASSERT_TRUE(bus.listen(folder.filePath(u"bus"_s)));
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.fullServerName().toUtf8());
    const std::string log = printedBy([this] { presentStarted(); }); // in five seconds
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    EXPECT_EQ(log.find("Cannot open"), std::string::npos) << log.substr(0, 4000);
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
