// What the environment may change in a kit that is built for the loopback, and in no other.
#include "Parloquin/Platform/Rehearsal.h"

#include "Network/Network.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "support/Console.h"

#include <QtNetwork/QLocalSocket>

namespace {

constexpr char sandbox[] = "127.0.0.1:8046";

class Rehearsal : public testing::Test {
protected:
    void TearDown() override
    {
        setBuiltFor(u"verify.example:443"_s);
        for (const char *each :
            { "PARLOQUIN_SERVICE_HOST", "PARLOQUIN_ROUTE", "PARLOQUIN_DESKTOP" })
            qunsetenv(each);
    }
};

TEST_F(Rehearsal, ServiceIsOnTheLoopbackOrWhereItWasBuiltToBe)
{
    const auto hostOf = [](const char *built, const char *given) {
        setBuiltFor(QString::fromLatin1(built));
        qputenv("PARLOQUIN_SERVICE_HOST", given);
        return parloquin::Rehearsal::serviceHost();
    };
    testing::internal::CaptureStderr();
    for (const char *taken : { "127.0.0.1:9046", "127.255.0.9:65535", "[::1]:1" })
        EXPECT_EQ(hostOf(sandbox, taken), QLatin1String(taken));
    EXPECT_EQ(hostOf("[::1]:8046", sandbox), QLatin1String(sandbox));
    for (const char *built : { "verify.example:443", "192.0.2.1:80", "localhost:80" })
        EXPECT_EQ(hostOf(built, "127.0.0.1:9046"), QLatin1String(built));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    testing::internal::CaptureStderr();
    for (const char *refused : { "", "localhost:8046", "127.0.0.1.example:80", "128.0.0.1:8046",
             "0.0.0.0:8046", "127.0.0.256:8046", "127.0.0.01:8046", "127.1:8046",
             "me@127.0.0.1:8046", "127.0.0.1:80@verify.example", "127.0.0.1:8046/v2",
             "127.0.0.1:8046?", "127.0.0.1", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1:99999",
             "127.0.0.1:8046\n", " 127.0.0.1:8046" })
        EXPECT_EQ(hostOf(sandbox, refused), QLatin1String(sandbox)) << refused;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), // once
        "Parloquin: PARLOQUIN_SERVICE_HOST= is left alone: write a loopback address and a port, as "
        "127.0.0.1:8046\n");
}

TEST_F(Rehearsal, RouteIsReadAnewForEachCall)
{
    const auto isSent = [](const char *route, const char *built) {
        setBuiltFor(QString::fromLatin1(built));
        qputenv("PARLOQUIN_ROUTE", route);
        // Where there is no route, the answer is there before the call returns.
        AwaitedResult<InitResponseModel> call;
        const auto log = printedBy([&] { ApiRequest::initializer(call.handler()); });
        if (call.count() == 0)
            return true;
        EXPECT_TRUE(call.onThisThread() && log.empty()) << log;
        EXPECT_EQ(call.wait(), "connection");
        return false;
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
    EXPECT_FALSE(isSent("default", "verify.example:443"));
    gate = true;
    EXPECT_TRUE(server.waitForRequests(3));
    EXPECT_EQ(server.connections(), 3);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(isSent("elsewhere", sandbox));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Parloquin: PARLOQUIN_ROUTE=elsewhere is left alone: write none or default\n");
}

TEST_F(Rehearsal, DesktopIsTheSocketOfALoopbackBuildAlone)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("desktop"));
    qputenv("PARLOQUIN_DESKTOP", path.toLocal8Bit());
    qputenv("XDG_DATA_DIRS", HANDLERS); // of the machine, which has an app for the link
    QUrl link(QStringLiteral("has-handler://send?text=a%0Ab"));
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
    for (const auto &answer :
        { QByteArray("yes\n"), QByteArray("no\n"), QByteArray("yes"), QByteArray("") }) {
        std::thread kit(ask, &can, &isOpened);
        QByteArrayList questions;
        std::unique_ptr<QLocalSocket> silent; // it says nothing, and stays
        const QDeadlineTimer patience(9000);
        for (int i = 0; i < 2 && desktop.waitForNewConnection(5000); ++i) {
            std::unique_ptr<QLocalSocket> socket(desktop.nextPendingConnection());
            while (!socket->canReadLine() && socket->waitForReadyRead(5000)) { }
            questions += socket->readLine();
            socket->write(answer);
            socket->waitForBytesWritten(5000);
            if (answer.isEmpty())
                silent = std::move(socket);
        }
        kit.join();
        EXPECT_FALSE(patience.hasExpired()) << "a second and a half for each question must do";
        EXPECT_EQ(questions.join(), "can has-handler\nopen has-handler://send?text=a%0Ab\n");
        EXPECT_EQ(can, answer == "yes\n");
        EXPECT_EQ(isOpened, answer == "yes\n");
    }

    setBuiltFor(QStringLiteral("verify.example:443"));
    ask(&can, &isOpened);
    EXPECT_TRUE(can && isOpened) << "by the machine's own";
    setBuiltFor(QString::fromLatin1(sandbox));
    link = QUrl(QStringLiteral("file:///etc/passwd"));
    ask(&can, &isOpened);
    EXPECT_FALSE(can || isOpened);
    EXPECT_FALSE(desktop.hasPendingConnections() || desktop.waitForNewConnection(0));
}

} // namespace
