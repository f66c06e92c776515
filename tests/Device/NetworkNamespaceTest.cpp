#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Helper/Reachability.h"
#include "support/ByName.h"
#include "support/Console.h"
#include "support/OwnNetwork.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>
#include <libmnl/libmnl.h>

using namespace parloquin;

// A jail, where what the kernel is asked gets lost, or asking is refused.
static bool isLost = false;
static bool isRefused = false;

extern "C" ssize_t __real_mnl_socket_sendto( // NOLINT
    const mnl_socket *to, const void *text, size_t size);
extern "C" ssize_t __wrap_mnl_socket_sendto( // NOLINT
    const mnl_socket *to, const void *text, size_t size)
{
    return isLost ? static_cast<ssize_t>(size) : __real_mnl_socket_sendto(to, text, size);
}
extern "C" mnl_socket *__real_mnl_socket_open2(int bus, int flags); // NOLINT
extern "C" mnl_socket *__wrap_mnl_socket_open2(int bus, int flags) // NOLINT
{
    errno = EAFNOSUPPORT;
    return isRefused ? nullptr : __real_mnl_socket_open2(bus, flags);
}

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
    EXPECT_TRUE(QTest::qWaitFor(described, 10'000))
        << reachability->description().toStdString() << " is not " << GetParam().description;
}

const QByteArray both = QByteArray(wired) + modem;
const NetworkRow networkRows[] = {
    { "OtherTable", QByteArray(wired) + "route add default via 10.9.0.1 table 1000", "-R -------" },
    { "SeveralHops",
        both
            + "addr add fd00::2/64 dev d0 nodad\naddr add fd01::2/64 dev wwan0 nodad\n"
              "route add ::/0 nexthop via fd01::1 nexthop via fd00::1\nlink set w1 down",
        "-R -------" },
};
INSTANTIATE_TEST_SUITE_P(Network, NetworkStates, testing::ValuesIn(networkRows), byName);

// The host stands still meanwhile.
TEST(NetworkGate, StaysOpenInAJailAfterASecondAtMost)
{
    for (bool *const isSo : { &isLost, &isRefused }) {
        const auto reachability = std::get<std::shared_ptr<Reachability>>(
            Reachability::create(QualityOfService::standard, nullptr, DispatchQueue::main()));
        QElapsedTimer time;
        time.start();
        *isSo = true;
        std::unique_ptr<ApiSessionHelper> helper;
        EXPECT_EQ(printedBy([&] { helper = std::make_unique<ApiSessionHelper>(reachability); }),
            "\n\n[Parloquin]\nUnable to start network reachability notifier.\n[Parloquin]\n\n\n");
        ASSERT_LT(time.elapsed(), 5000);
        const auto error = reachability->startNotifier();
        *isSo = false;
        ASSERT_TRUE(error);
        EXPECT_EQ(std::visit([](const auto &fault) { return fault.code; }, *error),
            isSo == &isLost ? EAGAIN : EAFNOSUPPORT);
        QCoreApplication::processEvents();
        EXPECT_TRUE(helper->isNetworkReachable);
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
    const QByteArray route = "route add default via 10.9.0.1";
    const std::pair<QByteArray, bool> changes[] = {
        { wired + route, true },
        { "link set d1 down", false }, // the cable unplugged
        { "link set d1 up", true },
        { "route add unreachable ::/0\nroute del default", false }, // it refuses
        { "route del unreachable ::/0\n" + route, true },
        { "addr add fd00::2/64 dev d0 nodad\naddr del 10.9.0.2/24 dev d0", false },
        { "route add ::/0 via fd00::1", true },
        { "link set d0 down", false },
        { modem + QByteArray("route add default via 10.8.0.1"), true },
        { "link del wwan0", false },
        // Too small for IPv6, whose routes would tell as well of a link that goes.
        { "link set d1 mtu 1200\nlink set d0 mtu 1200 up\naddr add 10.9.0.2/24 dev d0\n" + route,
            true },
        { "link set d1 down", false },
    };
    for (const auto &[commands, isOpen] : changes) {
        ASSERT_TRUE(ip(commands));
        ASSERT_TRUE(QTest::qWaitFor([&, open = isOpen] { return gate == open; }, 10'000))
            << commands.constData();
    }
}

} // namespace
