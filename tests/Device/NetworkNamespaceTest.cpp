#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Helper/Reachability.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdio>
#include <mutex>

using namespace parloquin;

namespace {

constexpr int patience = 30000; // ms

bool run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, arguments);
    return process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

/// Runs commands of the network tool, one a line.
bool ip(const QByteArray &lines)
{
    // Not by QProcess: its way to fork confuses the thread checker about the threads to come.
    std::FILE *const tool = ::popen("ip -batch -", "w");
    const bool isWritten = tool && std::fputs(lines.constData(), tool) >= 0;
    return tool && ::pclose(tool) == 0 && isWritten;
}

/// Each case runs again inside a network of its own, where it may do as it likes.
class NetworkNamespace : public testing::Test {
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsSet("PARLOQUIN_TEST_NETWORK"))
            return;
        m_isInside = false;
        const auto *const info = testing::UnitTest::GetInstance()->current_test_info();
        const QString filter = QStringLiteral("--gtest_filter=%1.%2")
                                   .arg(QString::fromLatin1(info->test_suite_name()),
                                       QString::fromLatin1(info->name()));
        const QString unshare = QStringLiteral("unshare");
        for (const QString &how : { QStringLiteral("-n"), QStringLiteral("-rn") }) {
            if (!run(unshare, { how, QStringLiteral("true") }))
                continue;
            qputenv("PARLOQUIN_TEST_NETWORK", "1");
            EXPECT_TRUE(run(unshare, { how, QCoreApplication::applicationFilePath(), filter }));
            qunsetenv("PARLOQUIN_TEST_NETWORK");
            return;
        }
        GTEST_SKIP() << "the system allows no network namespaces";
    }

    bool m_isInside = true;
};

// A pair of links is a cable: its other end taken down unplugs it.
constexpr char wired[] = "link add d0 type veth peer name d1\nlink set d1 up\n"
                         "addr add 10.9.0.2/24 dev d0\n"
                         "link set d0 up\n";
constexpr char modem[] = "link add wwan0 type veth peer name w1\nlink set w1 up\n"
                         "addr add 10.8.0.2/24 dev wwan0\n"
                         "link set wwan0 up\n";

struct NetworkRow {
    const char *name;
    QByteArray setUp;
    const char *description;
};

class NetworkStates : public NetworkNamespace, public testing::WithParamInterface<NetworkRow> { };

TEST_P(NetworkStates, MakeTheFlags)
{
    if (!m_isInside)
        return;
    ASSERT_TRUE(ip(GetParam().setUp));
    const auto created =
        Reachability::create(QualityOfService::standard, nullptr, DispatchQueue::main());
    const auto &reachability = std::get<std::shared_ptr<Reachability>>(created);
    ASSERT_FALSE(reachability->startNotifier());
    // A cable just plugged in takes the kernel a moment; the change comes as an event.
    const auto described = [&] {
        return reachability->description() == QString::fromLatin1(GetParam().description);
    };
    EXPECT_TRUE(QTest::qWaitFor(described, patience))
        << reachability->description().toStdString() << " is not " << GetParam().description;
}

const NetworkRow networkRows[] = {
    { "NoLinkUp", "", "-- -------" },
    { "LoopbackOnly", "link set lo up", "-- -------" },
    { "NoDefaultRoute", wired, "-- -------" },
    { "DefaultRoute", QByteArray(wired) + "route add default via 10.9.0.1", "-R -------" },
    { "Ipv6Only",
        "link add d0 type veth peer name d1\nlink set d1 up\nlink set d0 up\naddr add "
        "fd00::2/64 dev d0 nodad\n"
        "route add ::/0 via fd00::1",
        "-R -------" },
    { "CableUnplugged", QByteArray(wired) + "route add default via 10.9.0.1\nlink set d1 down",
        "-- -------" },
    { "LinkTakenDown", QByteArray(wired) + "route add default via 10.9.0.1\nlink set d0 down",
        "-- -------" },
    { "RouteThatRefuses", QByteArray(wired) + "route add unreachable default", "-- -------" },
    { "OtherTable", QByteArray(wired) + "route add default via 10.9.0.1 table 1000", "-R -------" },
    { "Modem", QByteArray(modem) + "route add default via 10.8.0.1", "WR -------" },
    { "WiredBeforeModem",
        QByteArray(wired) + modem
            + "route add default via 10.8.0.1 metric 200\n"
              "route add default via 10.9.0.1 metric 100",
        "-R -------" },
    { "ModemBeforeWired",
        QByteArray(wired) + modem
            + "route add default via 10.8.0.1 metric 100\n"
              "route add default via 10.9.0.1 metric 200",
        "WR -------" },
    { "ModemWhileUnplugged",
        QByteArray(wired) + modem
            + "route add default via 10.8.0.1 metric 200\n"
              "route add default via 10.9.0.1 metric 100\nlink set d1 down",
        "WR -------" },
    { "SeveralHops",
        QByteArray(wired) + modem
            + "addr add fd00::2/64 dev d0 nodad\naddr add fd01::2/64 dev wwan0 nodad\n"
              "route add ::/0 nexthop via fd01::1 nexthop via fd00::1\nlink set w1 down",
        "-R -------" },
};
INSTANTIATE_TEST_SUITE_P(Network, NetworkStates, testing::ValuesIn(networkRows),
    [](const auto &row) { return row.param.name; });

TEST_F(NetworkNamespace, TheGateFollowsTheNetwork)
{
    if (!m_isInside)
        return;
    const ApiSessionHelper &helper = ApiSessionHelper::shared();
    EXPECT_TRUE(helper.isNetworkReachable); // open until the main queue has run
    const auto becomes = [&](bool isReachable) {
        return QTest::qWaitFor([&] { return helper.isNetworkReachable == isReachable; }, patience);
    };
    EXPECT_TRUE(becomes(false));
    const struct {
        QByteArray change;
        bool isReachable;
    } steps[] = {
        { QByteArray(wired) + "route add default via 10.9.0.1", true },
        { "route del default", false },
        { "link set d0 up\naddr add fd00::2/64 dev d0 nodad\nroute add ::/0 via fd00::1", true },
        { "link set d1 down", false },
        { "link set d1 up", true },
        { "link del d0", false },
        { QByteArray(modem) + "route add default via 10.8.0.1", true },
    };
    for (const auto &step : steps) {
        ASSERT_TRUE(ip(step.change));
        EXPECT_TRUE(becomes(step.isReachable)) << step.change.constData();
    }
}

// More events than the socket holds while nobody reads: what holds in the end is what counts.
TEST_F(NetworkNamespace, LostEventsDoNotLeaveItStale)
{
    if (!m_isInside)
        return;
    ASSERT_TRUE(ip(QByteArray(wired) + modem));
    std::mutex mutex;
    std::condition_variable changed;
    bool isHeld = false;
    bool mayGo = false;
    const auto created = Reachability::create(QualityOfService::standard, nullptr, nullptr);
    const auto &reachability = std::get<std::shared_ptr<Reachability>>(created);
    reachability->whenReachable = [&](Reachability &) {
        std::unique_lock lock(mutex);
        isHeld = true;
        changed.notify_all();
        changed.wait(lock, [&] { return mayGo; });
    };
    ASSERT_FALSE(reachability->startNotifier());
    ASSERT_TRUE(ip("route add default via 10.9.0.1"));
    {
        std::unique_lock lock(mutex);
        ASSERT_TRUE(
            changed.wait_for(lock, std::chrono::milliseconds(patience), [&] { return isHeld; }));
    }
    QByteArray flaps;
    for (int i = 0; i < 10000; ++i)
        flaps += "route del default\nroute add default via 10.9.0.1\n";
    ASSERT_TRUE(ip(flaps + "route del default\nroute add default via 10.8.0.1"));
    {
        const std::lock_guard lock(mutex);
        mayGo = true;
        changed.notify_all();
    }
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return reachability->description() == QStringLiteral("WR -------"); }, patience));
}

} // namespace
