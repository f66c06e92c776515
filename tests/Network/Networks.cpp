// Calls over networks as they are: names with addresses that are silent, name servers that are,
// proxies. Each case has a network of its own.
#include "Network/Network.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QTimer>

static std::atomic<std::chrono::milliseconds> settingsTake = 0ms;

extern "C" char **__real_g_proxy_resolver_lookup( // NOLINT
    GProxyResolver *system, const char *uri, GCancellable *cancelled, GError **error);
extern "C" char **__wrap_g_proxy_resolver_lookup( // NOLINT
    GProxyResolver *system, const char *uri, GCancellable *cancelled, GError **error)
{
    std::this_thread::sleep_for(settingsTake.load());
    EXPECT_EQ(std::string(uri).find('?'), std::string::npos) << uri << " is more than a place";
    return __real_g_proxy_resolver_lookup(system, uri, cancelled, error);
}

namespace {

constexpr char here[] = "127.0.0.1";

// A way to everywhere that nothing comes back from: no neighbour is asked for, nobody refuses.
constexpr char silentNetwork[] = "addr add fd00::2/64 dev d0 nodad\n"
                                 "link set d0 arp off\n"
                                 "route add default via 10.9.0.1\n";

QString port(const RawServer &server) { return server.hostAndPort().section(u':', 1); }

struct NamesRow {
    const char *name;
    NameServer::Names names;
    std::string outcome = "success";
    std::chrono::milliseconds atLeast = 0s;
    std::chrono::milliseconds timeout = 60s; // as it is
};

class ServiceName : public testing::TestWithParam<NamesRow> { };

TEST_P(ServiceName, CostsACallAtMostASecond)
{
    if (!isInOwnNetwork())
        return;
    const NamesRow &row = GetParam();
    ASSERT_TRUE(ip(QByteArray(wired) + silentNetwork));
    const NameServer names(row.names);
    RawServer server;
    server.answer("/v1.0/check", RawServer::http(200, R"({"meta":{"httpStatusCode":200}})"));
    setServiceHost(u"service.test:"_s + port(server));
    setServiceTimeout(row.timeout);
    AwaitedResult<CheckResponseModel> call;
    QElapsedTimer time;
    time.start();
    if (row.outcome == "success" && row.atLeast > 0s) { // the service takes as long
        server.pause();
        QTimer::singleShot(row.atLeast, Qt::PreciseTimer, qApp, [&] { server.proceed(); });
    }
    ApiRequest::check({}, call.handler());
    EXPECT_EQ(call.wait(), row.outcome);
    EXPECT_LE(server.requests().size(), 1);
    EXPECT_LT(time.elapsed(), (row.atLeast + 1s).count());
    EXPECT_GE(time.elapsed(), row.atLeast.count());
    EXPECT_GT(names.questions(), 0);
}

const NamesRow namesRows[] = {
    { "OneSilentAddress", { { here }, { "fd00::9" } } },
    { "TwoSilentAddresses", { { here }, { "fd00::8", "fd00::9" } } },
    { "ThreeSilentAddresses", { { here }, { "fd00::7", "fd00::8", "fd00::9" } } },
    { "SlowService", { { here }, {} }, "success", 2500ms },
    { "NoAnswerForIpv6", { { here }, {}, true, false } },
    { "NoAnswer", { {}, {}, false, false }, "general", 1500ms, 1500ms },
    { "NoSuchName", { {}, {} }, "general" },
};
INSTANTIATE_TEST_SUITE_P(Network, ServiceName, testing::ValuesIn(namesRows), byName);

struct ProxyRow {
    const char *name;
    const char *variable; // @ stands for the proxy's host and port, # for a name and a password
    const char *url;
    RawServer::Script script;
    std::string outcome;
    QByteArray head; // of what the proxy hears; # stands for the name and password as a proxy of
                     // HTTP hears them
};

class SystemProxy : public testing::TestWithParam<ProxyRow> { };

qint64 mostMemory() // that this process ever had, in KiB
{
    QFile status(u"/proc/self/status"_s);
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf("VmHWM:") + 6, 12).trimmed().split(' ').constFirst().toLongLong();
}

TEST_P(SystemProxy, CarriesACallAndHearsNoMoreThanItHasTo)
{
    if (!isInOwnNetwork())
        return;
    const ProxyRow &row = GetParam();
    RawServer proxy;
    proxy.play(row.script);
    for (const char *variable : { "http_proxy", "HTTP_PROXY", "https_proxy", "HTTPS_PROXY",
             "no_proxy", "NO_PROXY", "all_proxy", "ALL_PROXY", "XDG_CURRENT_DESKTOP" })
        qunsetenv(variable);
    QByteArray value = row.variable;
    value.replace("@", "@" + proxy.hostAndPort().toLatin1()).replace("//@", "//");
    value.replace("#", "n%25%40me:p%25%3A%40%2F%C3%A9");
    const qsizetype equals = value.indexOf('=');
    qputenv(value.left(equals).constData(), value.sliced(equals + 1));

    // What https takes once in a process is not the proxy's doing.
    const GLibPointer<GTlsDatabase> certificates(
        g_tls_backend_get_default_database(g_tls_backend_get_default()));
    const qint64 before = mostMemory();
    Get get(QString::fromLatin1(row.url).replace(u'@', port(proxy)));
    EXPECT_EQ(get.outcome(), row.outcome);
    EXPECT_LT(mostMemory() - before, 64 * 1024); // of the 1000 MB that one sends
    ASSERT_EQ(proxy.requests().size(), row.head.isEmpty() ? 0U : 1U);
    QByteArray head = row.head;
    head.replace("#", "Proxy-Authorization: Basic " + QByteArray("n%@me:p%:@/\xc3\xa9").toBase64());
    const QByteArray heard = head.isEmpty() ? head : proxy.requests().front().head;
    EXPECT_TRUE(heard.contains(head)) << "heard " << heard.toStdString() << "not " << head.data();
    EXPECT_EQ(heard.contains("Proxy-Auth"), head.contains("Proxy-Auth")) << heard.toStdString();
}

RawServer::Script endless()
{
    RawServer::Script script { RawServer::read(), RawServer::send("HTTP/1.0 200 OK\r\nX: ") };
    script.insert(script.end(), 1000, RawServer::send(QByteArray(1'000'000, 'x')));
    return script;
}

const QByteArray socksAgrees("\5\2\1\0\5\0\0\1\0\0\0\0\0\0", 14); // name, password and place
const RawServer::Step wholeAnswer = RawServer::send(RawServer::http(200, "1234"));
const RawServer::Script refuses { RawServer::read(), RawServer::send(RawServer::http(407, "")) };
const ProxyRow proxyRows[] = {
    { "Plain", "http_proxy=http://@", "http://b\374cher.de/a?b#c",
        { RawServer::read(), wholeAnswer }, "200 application/json 4",
        "GET http://xn--bcher-kva.de/a?b HTTP/1.1\r\nHost: xn--bcher-kva.de\r\n" },
    { "NotForThisMachine", "http_proxy=http://@", "http://localhost:@/",
        { RawServer::read(), wholeAnswer }, "200 application/json 4", "GET / HTTP/1.1\r\n" },
    // Where nobody listens: the proxy would have answered.
    { "NotForAnyOfItsAddresses", "http_proxy=http://@", "http://127.0.0.2:@/", refuses,
        "error -1004", "" },
    { "NotForThemByHttps", "https_proxy=http://@", "https://[::1]:@/", refuses, "error -1004", "" },
    { "PlainWithANameAlone", "http_proxy=http://name@", "http://icons.test/", refuses,
        "407 application/json 0", "\r\nProxy-Authorization: Basic bmFtZTo=\r\n" },
    { "PlainWithAName", "http_proxy=http://#@", "http://icons.test/", refuses,
        "407 application/json 0", "\r\n#\r\n" },
    { "Socks", "http_proxy=socks5://#@", "http://icons.test/",
        { RawServer::send(socksAgrees), RawServer::read(), wholeAnswer }, "200 application/json 4",
        "GET / HTTP/1.1\r\nHost: icons.test\r\n" },
    { "Connect", "https_proxy=http://@", "https://b\374cher.de/", refuses, "error -1004",
        "CONNECT xn--bcher-kva.de:443 HTTP/1.0\r\n" },
    { "ConnectWithAName", "https_proxy=http://#@", "https://icons.test/",
        { RawServer::read(), RawServer::send("HTTP/1.0 200 OK\r\n\r\n"), wholeAnswer, // no TLS
            RawServer::hold() },
        "error -1200", "\r\n#\r\n" },
    { "ConnectWithoutEnd", "https_proxy=http://#@", "https://icons.test/", endless(), "error -1004",
        "#" },
};
INSTANTIATE_TEST_SUITE_P(Network, SystemProxy, testing::ValuesIn(proxyRows), byName);

// The desktop has its proxies worked out by a service of the session, which says nothing.
TEST(SystemProxy, HoldsNoCallUpThatIsNeverTold)
{
    if (!isInOwnNetwork())
        return;
    ASSERT_TRUE(ip(QByteArray(wired) + silentNetwork));
    const QTemporaryDir folder;
    QDir(folder.path()).mkpath(u"glib-2.0/settings"_s);
    QFile settings(folder.filePath(u"glib-2.0/settings/keyfile"_s));
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("[system/proxy]\nmode='auto'\nautoconfig-url='http://127.0.0.1:1/'\n");
    settings.close();
    const QString bus = folder.filePath(u"bus"_s);
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(bus));
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    qputenv("GSETTINGS_BACKEND", "keyfile");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.toUtf8());

    const NameServer names({ { here }, {} });
    RawServer server;
    server.answer("/", RawServer::http(200, "1234"));
    for (const int most : { 2500, 1000 }) { // ms; the second knows of the first
        Get get(u"http://icons.test:%1/"_s.arg(port(server)));
        QElapsedTimer time;
        time.start();
        EXPECT_EQ(get.outcome(), "200 application/json 4");
        EXPECT_LT(time.elapsed(), most);
    }
    EXPECT_TRUE(silent.hasPendingConnections() || silent.waitForNewConnection(0));
}

TEST(SystemProxy, IsWaitedForAgainOnceTheSystemIsInOrder)
{
    if (!isInOwnNetwork())
        return;
    RawServer proxy;
    proxy.answer("http://icons.test/", RawServer::http(200, "1234"));
    qputenv("http_proxy", proxy.url({}).toLatin1());
    qunsetenv("XDG_CURRENT_DESKTOP");
    const std::string told = "200 application/json 4";
    const auto outcomeAfter = [](std::chrono::milliseconds delay) {
        settingsTake = delay;
        return Get(u"http://icons.test/"_s).outcome();
    };
    EXPECT_EQ(outcomeAfter(3s), "error -1003") << "without its proxy";
    EXPECT_EQ(outcomeAfter(400ms), "error -1003") << "in as bad an order as before";
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcomeAfter(0ms) == told; }));
    EXPECT_EQ(outcomeAfter(400ms), told) << "it is just slow";
}

TEST(UrlSession, TellsNoWayToANetworkFromARefusal)
{
    if (!isInOwnNetwork())
        return;
    const auto outcomeAt = [](const char *address) {
        return Get(u"http://%1:1/"_s.arg(QLatin1String(address))).outcome();
    };
    EXPECT_EQ(outcomeAt("203.0.113.9"), "error -1009") << "no route";
    ASSERT_TRUE(ip("route add unreachable 203.0.113.0/24\n"));
    EXPECT_EQ(outcomeAt("203.0.113.9"), "error -1009") << "a route that refuses";
    EXPECT_EQ(outcomeAt("127.0.0.1"), "error -1004") << "nobody listens";
}

TEST(UrlSession, SaysOnceWhatHttpsNeeds)
{
    if (!isInOwnNetwork()) // for a process of its own, by whose variable GIO has no TLS
        return;
    qputenv("GIO_USE_TLS", "dummy");
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) {
        Get get(u"https://127.0.0.1:1/"_s);
        EXPECT_EQ(get.outcome(), "error -1200");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Parloquin: GIO has no TLS, so nothing comes by https; install glib-networking.\n");
}

} // namespace
