// How a host that quits while a call is under way ends.
#include "support/ByName.h"
#include "support/NameServer.h"
#include "support/OwnNetwork.h"
#include "support/RawServer.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <gtest/gtest.h>

namespace {

class Host : public QProcess {
public:
    explicit Host(const QStringList &arguments)
    {
        setStandardOutputFile(nullDevice());
        start(QStringLiteral(NETWORK_HOST), arguments);
    }

    void quitsWithinASecondAndWithoutAnOutcome()
    {
        QElapsedTimer time;
        time.start();
        write("q");
        EXPECT_TRUE(waitForFinished(20'000) && exitStatus() == NormalExit && exitCode() == 0);
        EXPECT_LT(time.elapsed(), 1000);
        EXPECT_EQ(readAllStandardError(), "");
    }
};

struct Leaving {
    const char *name;
    RawServer::Script script;
    const char *how = "return";
};

class Quitting : public testing::TestWithParam<Leaving> { };

struct LookUp {
    const char *name;
    bool hasAddress; // the one of IPv4; of IPv6 the name server says nothing at all
    const char *how = "return";
};

class QuittingAmidALookUp : public testing::TestWithParam<LookUp> { };

TEST_P(QuittingAmidALookUp, EndsACallWithinASecondAndWithoutItsOutcome)
{
    if (!isInOwnNetwork())
        return;
    ASSERT_TRUE(ip(QByteArray(wired) + "route add default via 10.9.0.1"));
    RawServer server;
    server.pause();
    const bool hasAddress = GetParam().hasAddress;
    const NameServer silent({ { "127.0.0.1" }, {}, hasAddress, false });
    Host host({ QStringLiteral("service.test:") + server.hostAndPort().section(u':', 1),
        QString::fromLatin1(GetParam().how) });
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return hasAddress ? server.connections() > 0 : silent.questions() > 0; }));
    host.quitsWithinASecondAndWithoutAnOutcome();
}

const LookUp lookUps[] = { { "NoAnswer", false }, { "NoAnswerByExit", false, "exit" },
    { "NoAnswerForIpv6", true } };
INSTANTIATE_TEST_SUITE_P(Network, QuittingAmidALookUp, testing::ValuesIn(lookUps), byName);

TEST_P(Quitting, EndsACallWithinASecondAndWithoutItsOutcome)
{
    RawServer server;
    server.play(GetParam().script);
    Host host({ server.hostAndPort(), QString::fromLatin1(GetParam().how) });
    ASSERT_TRUE(server.waitForRequests(1));
    host.quitsWithinASecondAndWithoutAnOutcome();
    EXPECT_EQ(server.requests().size(), 1U);
}

const QByteArray large = RawServer::http(200, QByteArray(1'000'000, ' ')).chopped(1);
const Leaving leavings[] = {
    { "Silent", { RawServer::read(), RawServer::hold() } },
    { "AmidTheAnswer", { RawServer::read(), RawServer::send(large), RawServer::hold() } },
    { "Dripping", { RawServer::read(), RawServer::drip(large, std::chrono::milliseconds(1)) } },
    { "SilentByExit", { RawServer::read(), RawServer::hold() }, "exit" },
};

INSTANTIATE_TEST_SUITE_P(Network, Quitting, testing::ValuesIn(leavings), byName);

} // namespace
