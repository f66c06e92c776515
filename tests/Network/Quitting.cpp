// How a host that quits while a call is under way ends.
#include "support/RawServer.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>

#include <gtest/gtest.h>

namespace {

class Host : public QProcess {
public:
    explicit Host(const QStringList &arguments)
    {
        setStandardOutputFile(nullDevice());
        start(QStringLiteral(NETWORK_HOST), arguments);
    }

    [[nodiscard]] bool endsWell()
    {
        return waitForFinished(10'000) && exitStatus() == NormalExit && exitCode() == 0;
    }
};

struct Leaving {
    const char *name;
    RawServer::Script script;
    const char *how = "return";
};

class Quitting : public testing::TestWithParam<Leaving> { };

TEST_P(Quitting, EndsACallWithinASecondAndWithoutItsOutcome)
{
    RawServer server;
    server.play(GetParam().script);
    Host host({ server.hostAndPort(), QString::fromLatin1(GetParam().how) });
    ASSERT_TRUE(server.waitForRequests(1));

    QElapsedTimer time;
    time.start();
    host.write("q");
    EXPECT_TRUE(host.endsWell());
    EXPECT_LT(time.elapsed(), 1000);
    EXPECT_EQ(host.readAllStandardError(), "");
    EXPECT_EQ(server.requests().size(), 1U);
}

const QByteArray large = RawServer::http(200, QByteArray(1'000'000, ' ')).chopped(1);
const Leaving leavings[] = {
    { "Silent", { RawServer::read(), RawServer::hold() } },
    { "AmidTheAnswer", { RawServer::read(), RawServer::send(large), RawServer::hold() } },
    { "Dripping", { RawServer::read(), RawServer::drip(large, std::chrono::milliseconds(1)) } },
    { "SilentByExit", { RawServer::read(), RawServer::hold() }, "exit" },
};

INSTANTIATE_TEST_SUITE_P(
    Network, Quitting, testing::ValuesIn(leavings), [](const auto &row) { return row.param.name; });

} // namespace
