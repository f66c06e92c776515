// How a host that quits while a call is under way ends.
#include "Network/Network.h"

namespace {

struct Leaving {
    const char *name;
    RawServer::Script script;
    const char *how = "return";
    /// Of the service, by name: its address of IPv4, told or not; of IPv6 nothing is said at all.
    std::optional<bool> hasAddress = {};
};

class Quitting : public testing::TestWithParam<Leaving> { };

TEST_P(Quitting, EndsACallWithinASecondAndWithoutItsOutcome)
{
    const auto &[name, script, how, hasAddress] = GetParam();
    std::unique_ptr<NameServer> names;
    if (hasAddress) {
        if (!isInOwnNetwork())
            return;
        ASSERT_TRUE(ip(QByteArray(wired) + "route add default via 10.9.0.1"));
        names = std::make_unique<NameServer>(
            NameServer::Names { { "127.0.0.1" }, {}, *hasAddress, false });
    }
    RawServer server;
    server.play(script);
    QString service = server.hostAndPort();
    if (hasAddress)
        service.replace(QStringLiteral("127.0.0.1"), QStringLiteral("service.test"));
    QProcess host;
    host.setStandardOutputFile(QProcess::nullDevice());
    host.start(QStringLiteral(CALLER), { service, QString::fromLatin1(how) });
    const std::size_t requests = hasAddress.value_or(true) ? 1 : 0;
    ASSERT_TRUE(requests == 0 || server.waitForRequests(1));
    ASSERT_TRUE(requests == 1 || QTest::qWaitFor([&] { return names->questions() > 0; }));
    QElapsedTimer time;
    time.start();
    host.write("q");
    EXPECT_TRUE(host.waitForFinished(20'000));
    EXPECT_TRUE(host.exitStatus() == QProcess::NormalExit && host.exitCode() == 0);
    EXPECT_LT(time.elapsed(), 1000);
    EXPECT_EQ(host.readAllStandardError(), "");
    EXPECT_EQ(server.requests().size(), requests);
}

const RawServer::Script silent { RawServer::read(), RawServer::hold() };
const QByteArray large = RawServer::http(200, QByteArray(1'000'000, ' ')).chopped(1);
const Leaving leavings[] = {
    { "Silent", silent },
    { "AmidTheAnswer", { RawServer::read(), RawServer::send(large), RawServer::hold() } },
    { "Dripping", { RawServer::read(), RawServer::drip(large, std::chrono::milliseconds(1)) } },
    { "SilentByExit", silent, "exit" },
    { "NoAddress", silent, "return", false },
    { "NoAddressByExit", silent, "exit", false },
    { "NoAnswerForIpv6", silent, "return", true },
};
INSTANTIATE_TEST_SUITE_P(Network, Quitting, testing::ValuesIn(leavings), byName);

} // namespace
