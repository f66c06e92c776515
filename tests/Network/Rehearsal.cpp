// What the environment may change in a kit that is built for the loopback, and in no other.
#include "Parloquin/Platform/Rehearsal.h"

#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "support/RawServer.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QTemporaryDir>
#include <QtNetwork/QLocalServer>
#include <QtNetwork/QLocalSocket>

#include <gtest/gtest.h>

#include <thread>

using namespace parloquin;

namespace {

struct HostRow {
    const char *name;
    const char *built;
    const char *given;
    bool isTaken;
};
void PrintTo(const HostRow &row, std::ostream *out) { *out << row.name; }

class Rehearsed : public testing::TestWithParam<HostRow> { };

TEST_P(Rehearsed, ServiceIsOnTheLoopbackOrWhereItWasBuiltToBe)
{
    setBuiltFor(QString::fromLatin1(GetParam().built));
    qputenv("PARLOQUIN_SERVICE_HOST", GetParam().given);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Rehearsal::serviceHost().toStdString(),
        GetParam().isTaken ? GetParam().given : GetParam().built);
    const bool isReal = !QByteArray(GetParam().built).contains("8046");
    EXPECT_EQ(testing::internal::GetCapturedStderr().empty(), GetParam().isTaken || isReal);
}

constexpr char sandbox[] = "127.0.0.1:8046";
const HostRow hosts[] = {
    { "AnotherPort", sandbox, "127.0.0.1:9046", true },
    { "AnotherAddress", sandbox, "127.255.0.9:65535", true },
    { "SixthVersion", sandbox, "[::1]:1", true },
    { "FromTheSixth", "[::1]:8046", sandbox, true },
    { "Nothing", sandbox, "", false },
    { "Name", sandbox, "localhost:8046", false },
    { "NameLikeAnAddress", sandbox, "127.0.0.1.example:80", false },
    { "Beyond", sandbox, "128.0.0.1:8046", false },
    { "Any", sandbox, "0.0.0.0:8046", false },
    { "TooLargeANumber", sandbox, "127.0.0.256:8046", false },
    { "OctalNumber", sandbox, "127.0.0.01:8046", false },
    { "ShortAddress", sandbox, "127.1:8046", false },
    { "User", sandbox, "me@127.0.0.1:8046", false },
    { "UserLikeAnAddress", sandbox, "127.0.0.1:80@verify.example", false },
    { "Path", sandbox, "127.0.0.1:8046/v2", false },
    { "Query", sandbox, "127.0.0.1:8046?", false },
    { "NoPort", sandbox, "127.0.0.1", false },
    { "PortZero", sandbox, "127.0.0.1:0", false },
    { "PortTooLarge", sandbox, "127.0.0.1:65536", false },
    { "PortOfFiveNines", sandbox, "127.0.0.1:99999", false },
    { "LineBehind", sandbox, "127.0.0.1:8046\n", false },
    { "BlankBefore", sandbox, " 127.0.0.1:8046", false },
    { "BuiltForAService", "verify.example:443", "127.0.0.1:9046", false },
    { "BuiltForAnAddress", "192.0.2.1:80", "127.0.0.1:9046", false },
    { "BuiltForAName", "localhost:80", "127.0.0.1:9046", false },
};
INSTANTIATE_TEST_SUITE_P(Hosts, Rehearsed, testing::ValuesIn(hosts),
    [](const auto &row) { return std::string(row.param.name); });

TEST(Rehearsal, RouteIsReadAnewForEachCall)
{
    const auto isSent = [](const char *route, const char *built) {
        setBuiltFor(QString::fromLatin1(built));
        qputenv("PARLOQUIN_ROUTE", route);
        // Where there is no route, the answer is there before the call returns.
        const auto isOver = std::make_shared<std::atomic<bool>>(false);
        ApiRequest::initializer([isOver](const auto &) { *isOver = true; });
        return !*isOver;
    };
    RawServer server;
    server.pause(); // no answer comes before that
    setServiceHost(server.hostAndPort());
    auto &gate = ApiSessionHelper::shared().isNetworkReachable;
    gate = true;
    EXPECT_TRUE(isSent("default", sandbox));
    EXPECT_FALSE(isSent("none", sandbox));
    EXPECT_TRUE(isSent("none", "verify.example:443"));
    gate = false;
    EXPECT_TRUE(isSent("default", sandbox));
    EXPECT_FALSE(isSent("elsewhere", sandbox));
    EXPECT_FALSE(isSent("default", "verify.example:443"));
}

TEST(Rehearsal, DesktopIsTheSocketOfALoopbackBuildAlone)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("desktop"));
    qputenv("PARLOQUIN_DESKTOP", path.toLocal8Bit());
    const QUrl link(QStringLiteral("none-has-this://send?text=a%0Ab"));
    const auto ask = [&link](bool *can, bool *isOpened) {
        *can = UrlOpener::canOpen(link);
        *isOpened = true;
        UrlOpener::open(link, [isOpened](const QString &) { *isOpened = false; });
    };
    bool can = false;
    bool isOpened = false;
    setBuiltFor(QString::fromLatin1(sandbox));
    ask(&can, &isOpened); // nobody listens there
    EXPECT_FALSE(can || isOpened);

    QLocalServer desktop;
    ASSERT_TRUE(desktop.listen(path));
    for (const auto &answer : { QByteArray("yes\n"), QByteArray("no\n"), QByteArray("yes") }) {
        std::thread kit(ask, &can, &isOpened);
        QByteArrayList questions;
        for (int i = 0; i < 2 && desktop.waitForNewConnection(5000); ++i) {
            const std::unique_ptr<QLocalSocket> socket(desktop.nextPendingConnection());
            while (!socket->canReadLine() && socket->waitForReadyRead(5000)) { }
            questions += socket->readLine();
            socket->write(answer);
            socket->waitForBytesWritten(5000);
        }
        kit.join();
        EXPECT_EQ(questions.join(), "can none-has-this\nopen none-has-this://send?text=a%0Ab\n");
        EXPECT_EQ(can, answer == "yes\n");
        EXPECT_EQ(isOpened, answer == "yes\n");
    }

    EXPECT_FALSE(UrlOpener::canOpen(QUrl(QStringLiteral("file:///etc/passwd"))));
    setBuiltFor(QStringLiteral("verify.example:443"));
    ask(&can, &isOpened);
    EXPECT_FALSE(can || isOpened);
    EXPECT_FALSE(desktop.hasPendingConnections() || desktop.waitForNewConnection(0));
}

} // namespace
