// The shared session by itself: pictures use it too.
#include "Network/Network.h"

#include <QtNetwork/QSslConfiguration>
#include <QtNetwork/QSslKey>
#include <QtNetwork/QSslServer>

#include <sys/socket.h>

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
    server.answer("/", picture(1));
    server.answer("/fits?a=b%20c", picture(2));
    server.answer("/untyped", RawServer::http(200, "1234", ""));
    server.answer("/gzip", RawServer::http(200, "\x1f\x8b\x08", "Content-Encoding: gzip\r\n"));
    const std::pair<QString, std::string> rows[] = {
        { server.url(u"/fits"_s), "200 image/png 1000" },
        { server.url({}), "200 image/png 1" },
        { server.url(u"/fits?a=b%20c#d"_s), "200 image/png 2" },
        { server.url(u"/large"_s), "200 error -1005" },
        { server.url(u"/untyped"_s), "200  4" },
        { server.url(u"/gzip"_s), "200  3" },
        { server.url(u"/missing"_s), "404 application/json 31" },
        { u"http://"_s + RawServer::refusingHostAndPort(), "error -1004" },
        { u"file:///etc/hostname"_s, "error -1002" },
        { u"data:image/png,x"_s, "error -1002" },
        { server.url({}).replace(u"http"_s, u"ftp"_s), "error -1002" },
        { u"http:///fits"_s, "error -1002" },
        { QString(), "error -1002" },
    };
    for (const auto &[url, outcome] : rows) {
        Get get(url);
        ASSERT_EQ(get.outcome(), outcome) << url.toStdString();
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
    QString withName = server.url(u"/locked"_s);
    Get named(withName.replace(u"//"_s, u"//name:secret@"_s));
    named.outcome();
    const auto asked = server.requests().size();
    EXPECT_EQ(server.requests().back().header("Host"), server.hostAndPort().toLatin1());
    Get nameless(server.url(u"/open"_s));
    nameless.outcome();
    EXPECT_EQ(server.requests().size(), asked + 1);
    EXPECT_EQ(server.requests().back().header("Authorization"), "");
}

TEST(UrlSession, CancelsOnce)
{
    RawServer server;
    server.answer("/", RawServer::http(200, "1234", ""));
    Get unsent(server.url(u"/"_s));
    unsent.task->cancel();
    unsent.task->resume();
    EXPECT_EQ(unsent.wait(), "error -999");
    EXPECT_EQ(server.connections(), 0);

    server.pause();
    Get underWay(server.url(u"/"_s));
    underWay.task->resume();
    underWay.task->resume();
    ASSERT_TRUE(server.waitForRequests(1));
    underWay.task->cancel();
    underWay.task->cancel();
    EXPECT_EQ(underWay.wait(), "error -999");

    server.proceed();
    Get whole(server.url(u"/"_s));
    EXPECT_EQ(whole.outcome(), "200  4");
    whole.task->cancel();

    Get last(server.url(u"/"_s)); // whatever was still to come has come before it
    EXPECT_EQ(last.outcome(), "200  4");
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
        pictures.push_back(std::make_unique<Get>(server.url(u"/%1"_s.arg(i))));
        pictures.back()->task->resume();
    }
    ASSERT_TRUE(server.waitForRequests(6));
    Get(server.url(u"/call"_s), 1000, "POST").task->resume();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server.posts() == 1; }));
    EXPECT_EQ(server.connections(), 7) << "pictures beyond six wait";
    pictures[6]->task->cancel(); // as it waits
    EXPECT_EQ(pictures[6]->wait(), "error -999");
    for (std::size_t next = 7; next < 10; ++next) { // whose turn it is once one has ended
        pictures[next - 7]->task->cancel();
        ASSERT_TRUE(server.waitForRequests(next + 1));
        EXPECT_EQ(server.requests().back().path(), '/' + QByteArray::number(next));
    }
}

/// Answers over TLS, under a fresh certificate for 127.0.0.1 that only itself vouches for. Serves
/// on the main thread, so that waits for more than one condition at once turn its event loop.
class SecureServer : public QSslServer {
public:
    SecureServer()
    {
        const QString key = folder.filePath(u"key"_s);
        const QString certificate = folder.filePath(u"certificate"_s);
        QProcess openssl;
        openssl.start(u"openssl"_s,
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
            peer->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, 1); // in pieces
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
            u"https://%1:%2/"_s.arg(QLatin1String(row.host)).arg(server.serverPort()), 1'000'000);
        EXPECT_EQ(get.outcome(), row.outcome);
        EXPECT_EQ(server.requests, row.outcome == "error -1200" ? 0 : 1);
    }
}

} // namespace
