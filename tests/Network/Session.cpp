// The shared session by itself: pictures use it too.
#include "Network/Get.h"
#include "Parloquin/Platform/GLibPointers.h"
#include "support/ByName.h"
#include "support/RawServer.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslServer>
#include <QtTest/QTest>

#include <gtest/gtest.h>
#include <sys/socket.h>

using namespace parloquin;
using namespace std::chrono_literals;

namespace {

TEST(UrlSession, FetchesWhatHttpBringsAndNoMoreThanAllowed)
{
    RawServer server;
    const auto picture = [](int size) {
        return RawServer::http(
            200, QByteArray(size, 'x'), "Content-Type: Image/PNG; charset=x\r\n");
    };
    server.answer("/fits", picture(1000));
    server.answer("/large", picture(1001));
    server.answer("/untyped", RawServer::http(200, "1234", ""));
    server.answer("/gzip", RawServer::http(200, "\x1f\x8b\x08", "Content-Encoding: gzip\r\n"));
    const struct {
        QString url;
        std::string outcome;
    } rows[] = {
        { server.url(QStringLiteral("/fits")), "200 image/png 1000" },
        { server.url(QStringLiteral("/large")), "200 error -1005" },
        { server.url(QStringLiteral("/untyped")), "200  4" },
        { server.url(QStringLiteral("/gzip")), "200  3" },
        { server.url(QStringLiteral("/missing")), "404 application/json 31" },
        { QStringLiteral("http://") + RawServer::refusingHostAndPort(), "error -1004" },
        { QStringLiteral("file:///etc/hostname"), "error -1002" },
        { QStringLiteral("data:image/png,x"), "error -1002" },
        { server.url({}).replace(QStringLiteral("http"), QStringLiteral("ftp")), "error -1002" },
        { QStringLiteral("http:///fits"), "error -1002" },
        { QString(), "error -1002" },
    };
    for (const auto &row : rows) {
        Get get(row.url);
        get.task->resume();
        EXPECT_EQ(get.wait(), row.outcome) << row.url.toStdString();
        EXPECT_EQ(get.count(), 1);
    }
    for (const RawRequest &request : server.requests())
        EXPECT_EQ(request.header("User-Agent"), "Parloquin/1.0"); // nothing of the stack or system
}

TEST(UrlSession, KeepsNoCredentials)
{
    RawServer server;
    server.answer(
        "/locked", RawServer::http(401, "locked", "WWW-Authenticate: Basic realm=\"x\"\r\n"));
    QString withName = server.url(QStringLiteral("/locked"));
    Get named(withName.replace(QStringLiteral("//"), QStringLiteral("//name:secret@")));
    named.task->resume();
    named.wait();
    const auto asked = server.requests().size();
    EXPECT_EQ(server.requests().back().header("Host"), server.hostAndPort().toLatin1());
    Get nameless(server.url(QStringLiteral("/open")));
    nameless.task->resume();
    nameless.wait();
    EXPECT_EQ(server.requests().size(), asked + 1);
    EXPECT_EQ(server.requests().back().header("Authorization"), "");
}

TEST(UrlSession, FollowsNoRedirectAndKeepsNoCookie)
{
    RawServer elsewhere;
    RawServer server;
    for (const int status : { 301, 302, 303, 307, 308 }) {
        server.answer("/moved",
            RawServer::http(status, "moved",
                "Location: " + elsewhere.url(QStringLiteral("/")).toLatin1()
                    + "\r\nSet-Cookie: a=b; Path=/\r\n"));
        for (const char *method : { "GET", "POST" }) {
            UrlRequest request { QUrl(server.url(QStringLiteral("/moved"))), method,
                { { "Content-Type", "x" } },
                method == QByteArray("POST") ? std::optional<QByteArray>("x") : std::nullopt, 30s };
            Get get({});
            get.task = UrlSession::shared().dataTask(request, get.handler());
            get.task->resume();
            EXPECT_EQ(get.wait(), std::to_string(status) + "  5");
        }
    }
    EXPECT_EQ(server.requests().size(), 10U);
    for (const RawRequest &request : server.requests())
        EXPECT_EQ(request.header("Cookie"), "");
    EXPECT_EQ(elsewhere.connections(), 0);
}

TEST(UrlSession, CancelsOnce)
{
    RawServer server;
    server.answer("/", RawServer::http(200, "1234", ""));
    Get unsent(server.url(QStringLiteral("/")));
    unsent.task->cancel();
    unsent.task->resume();
    EXPECT_EQ(unsent.wait(), "error -999");
    EXPECT_EQ(server.connections(), 0);

    server.pause();
    Get underWay(server.url(QStringLiteral("/")));
    underWay.task->resume();
    underWay.task->resume();
    ASSERT_TRUE(server.waitForRequests(1));
    underWay.task->cancel();
    underWay.task->cancel();
    EXPECT_EQ(underWay.wait(), "error -999");

    server.proceed();
    Get whole(server.url(QStringLiteral("/")));
    whole.task->resume();
    EXPECT_EQ(whole.wait(), "200  4");
    whole.task->cancel();

    Get last(server.url(QStringLiteral("/"))); // whatever was still to come has come before it
    last.task->resume();
    EXPECT_EQ(last.wait(), "200  4");
    for (const Get *get : { &unsent, &underWay, &whole })
        EXPECT_EQ(get->count(), 1);
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST(UrlSession, KeepsNoCallWaitingBehindSlowPictures)
{
    RawServer server;
    server.play({ RawServer::read(), RawServer::hold() });
    std::vector<std::unique_ptr<Get>> pictures;
    for (int i = 0; i < 20; ++i) {
        pictures.push_back(std::make_unique<Get>(server.url(QStringLiteral("/"))));
        pictures.back()->task->resume();
    }
    ASSERT_TRUE(server.waitForRequests(6));
    UrlRequest request { QUrl(server.url(QStringLiteral("/call"))), "POST",
        { { "Content-Type", "x" } }, "x", 30s };
    UrlSession::shared().dataTask(request, [](auto...) {})->resume();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.posts() == 1; }));
    EXPECT_EQ(server.connections(), 7) << "pictures beyond six wait";
}

struct End {
    const char *name;
    const char *path;
    const char *outcome;
};

class PicturesThatEnd : public testing::TestWithParam<End> { };

// However the first end, each makes room for another: a process may show any number.
TEST_P(PicturesThatEnd, MakeRoomForAllThatFollow)
{
    RawServer server;
    server.answer("/whole", RawServer::http(200, "1234", ""));
    server.answer("/large", RawServer::http(200, QByteArray(1001, 'x'), ""));
    server.answer("/dropped", QByteArray());
    server.answer("/cut", RawServer::http(200, "1234", "").chopped(1));
    const auto &[name, path, outcome] = GetParam();
    const bool cancels = std::string(outcome) == "error -999";
    if (cancels)
        server.pause();
    std::vector<std::unique_ptr<Get>> pictures;
    for (int i = 0; i < 66; ++i) {
        const QString which = i < 12 ? QString::fromLatin1(path) : QStringLiteral("/whole");
        pictures.push_back(std::make_unique<Get>(server.url(which)));
        pictures.back()->task->resume();
    }
    if (cancels) {
        ASSERT_TRUE(server.waitForRequests(6));
        for (int i = 0; i < 12; ++i)
            pictures[static_cast<std::size_t>(i)]->task->cancel();
        server.proceed();
    }
    for (std::size_t i = 0; i < pictures.size(); ++i)
        ASSERT_EQ(pictures[i]->wait(), i < 12 ? outcome : "200  4") << "picture " << i;
}

const End pictureEnds[] = {
    { "Whole", "/whole", "200  4" },
    { "Refused", "/missing", "404 application/json 31" },
    { "TooLarge", "/large", "200 error -1005" },
    { "Cut", "/cut", "200 error -1005" },
    { "Dropped", "/dropped", "error -1005" },
    { "GivenUp", "/whole", "error -999" },
};
INSTANTIATE_TEST_SUITE_P(Ends, PicturesThatEnd, testing::ValuesIn(pictureEnds), byName);

/// Answers over TLS, under a fresh certificate for 127.0.0.1 that only itself vouches for. Serves
/// on the main thread, so that waits for more than one condition at once turn its event loop.
class SecureServer : public QSslServer {
public:
    SecureServer()
    {
        const QString key = folder.filePath(QStringLiteral("key"));
        const QString certificate = folder.filePath(QStringLiteral("certificate"));
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
            QStringLiteral(
                "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=x "
                "-addext subjectAltName=IP:127.0.0.1 -keyout %1 -out %2")
                .arg(key, certificate)
                .split(u' '));
        QFile keyFile(key);
        if (!openssl.waitForFinished() || !keyFile.open(QIODevice::ReadOnly))
            qFatal("SecureServer: no certificate");
        authority.reset(g_tls_file_database_new(certificate.toUtf8().constData(), nullptr));
        QSslConfiguration configuration;
        configuration.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
        configuration.setLocalCertificateChain(QSslCertificate::fromPath(certificate));
        setSslConfiguration(configuration);
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
            auto *peer = static_cast<QSslSocket *>(nextPendingConnection());
            connect(peer, &QIODevice::readyRead, this, [this, peer] {
                ++requests;
                peer->write(answer);
                if (saysGoodbye) {
                    peer->disconnectFromHost();
                    return;
                }
                while (peer->bytesToWrite() + peer->encryptedBytesToWrite() > 0
                    && peer->waitForBytesWritten()) { }
                ::shutdown(static_cast<int>(peer->socketDescriptor()), SHUT_WR);
            });
        });
    }

    const QTemporaryDir folder;
    GLibPointer<GTlsDatabase> authority; ///< which knows this server and nobody else
    QByteArray answer;
    bool saysGoodbye = true; ///< by TLS, before the connection ends
    int requests = 0;
};

TEST(UrlSession, FetchesOverTlsFromWhomItCanTrust)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "Once Qt has started a process the race detector misses locks in this one.";
#endif
    SecureServer server;
    const QByteArray body(900'000, 'x'); // more than the call and the socket hold at once
    const QByteArray toTheEnd = "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n\r\n" + body;
    const struct {
        const char *host;
        bool trusts;
        QByteArray answer;
        std::string outcome;
        bool saysGoodbye = true;
    } rows[] = {
        { "127.0.0.1", false, toTheEnd, "error -1200" },
        { "127.0.0.1", true, toTheEnd, "200 image/png 900000" },
        { "127.0.0.1", true, RawServer::http(200, body), "200 application/json 900000" },
        { "127.0.0.1", true, RawServer::http(200, body).chopped(1), "200 error -1005" },
        { "127.0.0.1", true, toTheEnd, "200 error -1005", false }, // cut off, for all we know
        { "127.0.0.1", true, RawServer::http(200, body), "200 application/json 900000", false },
        { "localhost", true, toTheEnd, "error -1200" }, // a name that the certificate lacks
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        g_tls_backend_set_default_database(
            g_tls_backend_get_default(), row.trusts ? server.authority.get() : nullptr);
        server.saysGoodbye = row.saysGoodbye;
        server.answer = row.answer;
        server.requests = 0;
        Get get(
            QStringLiteral("https://%1:%2/").arg(QLatin1String(row.host)).arg(server.serverPort()),
            1'000'000);
        get.task->resume();
        ASSERT_TRUE(QTest::qWaitFor([&] { return get.count() > 0; }));
        EXPECT_EQ(get.wait(), row.outcome);
        EXPECT_EQ(server.requests, row.outcome == "error -1200" ? 0 : 1);
    }
}

} // namespace
