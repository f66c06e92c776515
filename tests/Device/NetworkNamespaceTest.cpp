#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Helper/Reachability.h"
#include "support/ByName.h"
#include "support/OwnNetwork.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

struct NetworkRow {
    const char *name;
    QByteArray setUp;
    const char *description;
};

class NetworkStates : public testing::TestWithParam<NetworkRow> { };

TEST_P(NetworkStates, MakeTheFlags)
{
    if (!isInOwnNetwork())
        return;
    ASSERT_TRUE(ip(GetParam().setUp));
    const auto reachability = std::get<std::shared_ptr<Reachability>>(
        Reachability::create(QualityOfService::standard, nullptr, DispatchQueue::main()));
    ASSERT_FALSE(reachability->startNotifier());
    // A cable just plugged in takes the kernel a moment; the change comes as an event.
    const auto described = [&] {
        return reachability->description() == QString::fromLatin1(GetParam().description);
    };
    EXPECT_TRUE(QTest::qWaitFor(described, 30'000))
        << reachability->description().toStdString() << " is not " << GetParam().description;
}

const QByteArray both = QByteArray(wired) + modem;
const QByteArray ways = both + "route add default via 10.8.0.1 metric 200\n";
const NetworkRow networkRows[] = {
    { "OtherTable", QByteArray(wired) + "route add default via 10.9.0.1 table 1000", "-R -------" },
    { "WiredBeforeModem", ways + "route add default via 10.9.0.1 metric 100", "-R -------" },
    { "ModemBeforeWired", ways + "route add default via 10.9.0.1 metric 300", "WR -------" },
    { "SeveralHops",
        both
            + "addr add fd00::2/64 dev d0 nodad\naddr add fd01::2/64 dev wwan0 nodad\n"
              "route add ::/0 nexthop via fd01::1 nexthop via fd00::1\nlink set w1 down",
        "-R -------" },
};
INSTANTIATE_TEST_SUITE_P(Network, NetworkStates, testing::ValuesIn(networkRows), byName);

// What every call asks before it is sent.
TEST(NetworkGate, IsOpenUntilTheNetworkIsKnownAndGoesWithIt)
{
    if (!isInOwnNetwork())
        return;
    const auto &gate = ApiSessionHelper::shared().isNetworkReachable;
    EXPECT_TRUE(gate);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !gate; })) << "no way out";
    ASSERT_TRUE(ip(QByteArray(wired) + "route add default via 10.9.0.1"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return gate.load(); })) << "back in the network";
    const ApiSessionHelper own(nullptr); // without a watch
    EXPECT_TRUE(own.isNetworkReachable);
}

} // namespace
