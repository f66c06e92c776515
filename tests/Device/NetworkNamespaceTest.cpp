#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Helper/Reachability.h"
#include "support/ByName.h"
#include "support/OwnNetwork.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <optional>

using namespace parloquin;

namespace {

constexpr int patience = 30000; // ms

std::shared_ptr<Reachability> watchNetwork()
{
    return std::get<std::shared_ptr<Reachability>>(
        Reachability::create(QualityOfService::standard, nullptr, DispatchQueue::main()));
}

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
    const auto reachability = watchNetwork();
    ASSERT_FALSE(reachability->startNotifier());
    // A cable just plugged in takes the kernel a moment; the change comes as an event.
    const auto described = [&] {
        return reachability->description() == QString::fromLatin1(GetParam().description);
    };
    EXPECT_TRUE(QTest::qWaitFor(described, patience))
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

/// Puts a pipe whose other end is closed into the place of each socket that hears of the network.
int breakWatches()
{
    int ends[2];
    if (::pipe(ends) != 0)
        return 0;
    ::close(ends[1]);
    int broken = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        sockaddr_nl address {};
        socklen_t size = sizeof address;
        const bool isSocket =
            ::getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0;
        if (isSocket && address.nl_family == AF_NETLINK && address.nl_groups != 0)
            broken += ::dup2(ends[0], descriptor) == descriptor ? 1 : 0;
    }
    ::close(ends[0]);
    return broken;
}

TEST(NetworkWatch, HearsOfEachChangeAlsoWhenItsSocketBroke)
{
    if (!isInOwnNetwork())
        return;
    // No addresses that the links give themselves: their news would come in between.
    const QByteArray quiet = "link set d0 addrgenmode none\nlink set d1 addrgenmode none\n";
    ASSERT_TRUE(ip(QByteArray(wired).replace("link set d1", quiet + "link set d1")
        + "addr add fd00::2/64 dev d0 nodad"));
    const auto reachability = watchNetwork();
    std::optional<bool> told;
    reachability->whenReachable = [&](Reachability &) { told = true; };
    reachability->whenUnreachable = [&](Reachability &) { told = false; };
    ASSERT_FALSE(reachability->startNotifier());
    const std::pair<const char *, bool> rows[] = {
        { "route add ::/0 via fd00::1", true },
        { "route del ::/0", false },
        { "route add default via 10.9.0.1", true },
        { "link set d1 down", false },
        { "link set d1 up", true },
        { "route del default", false },
    };
    for (bool isBroken : { false, true }) {
        // By what the new watch looks at first.
        ASSERT_EQ(isBroken ? breakWatches() : 1, 1);
        for (const auto &[change, isReachable] : rows) {
            ASSERT_TRUE(ip(change)) << change;
            (void)QTest::qWaitFor(
                [&, expected = isReachable] { return told == expected; }, patience);
            EXPECT_EQ(told, isReachable) << change;
        }
    }
}

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
