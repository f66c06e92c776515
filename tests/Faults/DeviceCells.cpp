// What the device may do: its network, its modems and the bus that tells of them.
#include "Faults/FaultTest.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Platform/Telephony.h"
#include "support/ModemBus.h"
#include "support/OwnNetwork.h"

#include <fcntl.h>
#include <libmnl/libmnl.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

using namespace parloquin;

namespace {

constexpr int patience = 20000; // ms

/// Datagrams that the kernel marks from now on as parts of a dump that something came between.
std::atomic<int> interruptions = 0;
/// While this holds, what the kernel tells is not read.
std::atomic<bool> isHeld = false;
/// The next socket that something is read from breaks.
std::atomic<bool> breaks = false;
/// And then the next watch is refused, and the first look at the network after that.
std::atomic<int> binds = 0;
/// How often there was no room for it then.
std::atomic<int> overruns = 0;

} // namespace

// Stands between the kit and the system, see the link options.
extern "C" ssize_t __real_recvmsg(int fd, msghdr *message, int flags); // NOLINT
extern "C" ssize_t __wrap_recvmsg(int fd, msghdr *message, int flags) // NOLINT
{
    isHeld.wait(true);
    if (breaks.exchange(false)) {
        binds = 3;
        const int none = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        ::dup2(none, fd);
        ::close(none);
    }
    const ssize_t size = __real_recvmsg(fd, message, flags);
    if (size < 0 && errno == ENOBUFS)
        ++overruns;
    if (size < static_cast<ssize_t>(sizeof(nlmsghdr)) || interruptions == 0)
        return size;
    auto *header = static_cast<nlmsghdr *>(message->msg_iov->iov_base);
    if ((header->nlmsg_flags & NLM_F_MULTI) != 0) {
        header->nlmsg_flags |= NLM_F_DUMP_INTR;
        --interruptions;
    }
    return size;
}

extern "C" int __real_mnl_socket_bind(mnl_socket *socket, unsigned groups, pid_t pid); // NOLINT
extern "C" int __wrap_mnl_socket_bind(mnl_socket *socket, unsigned groups, pid_t pid) // NOLINT
{
    const bool isRefused = binds > 0 && binds-- != 2;
    errno = EACCES;
    return isRefused ? -1 : __real_mnl_socket_bind(socket, groups, pid);
}

namespace {

const QByteArray route = "route add default via 10.9.0.1\n";
const QByteArray flaps = ("route del default\n" + route).repeated(1000);

/// From a cable with a default route.
struct Network {
    const char *fault;
    QByteArray breaks;
    QByteArray restores;
    int interruptions = 0; ///< of the dumps that follow the break
    bool inSample = false;
    bool breaksSocket = false;
};
const Network networks[] = {
    { "no default route", "route del default", route },
    { "modem only", "link set d1 down",
        QByteArray(modem) + "route add default via 10.8.0.1 metric 9" },
    { "netlink overrun", flaps + "route del default", route + flaps },
    { "interrupted dump", "route del default", route, 20 },
    { "dump interrupted for seconds", "route del default", route, 200 },
    { "netlink broken", "route del default", route, 0, true, true },
};

/// Until the kit has taken what the kernel told it, whatever lay between.
void change(FaultTest &test, const QByteArray &commands, bool isReachable)
{
    const bool isTooMuch = commands.size() > flaps.size();
    const int before = overruns;
    {
        const auto pause = test.yardstick.pause();
        isHeld = isTooMuch;
        EXPECT_TRUE(ip(commands));
        isHeld = false;
        isHeld.notify_all();
    }
    int same = 0;
    const auto isThrough = [&] {
        same = ApiSessionHelper::shared().isNetworkReachable == isReachable ? same + 1 : 0;
        return same == 20;
    };
    EXPECT_TRUE(QTest::qWaitFor(isThrough, patience)) << commands.right(200).constData();
    EXPECT_EQ(overruns > before, isTooMuch);
}

/// The call is refused at once, and the next one after the network has come back is not.
Cell cut(const Network &row, const QByteArray &call, const QStringList &outcomes)
{
    const auto act = [=](FaultTest &test) {
        ApiSessionHelper::shared().isNetworkReachable = false;
        change(test, wired + route, true);
        test.goTo(call);
        test.setOutcome(call, "success");
        interruptions = row.interruptions;
        breaks = row.breaksSocket;
        change(test, row.breaks, false);
        EXPECT_EQ(interruptions, 0) << "not so often";
        test.makeAndWait(call);
        EXPECT_EQ(test.posts(call), 0);
        change(test, row.restores, true);
        if (call == "init") {
            test.goTo("check");
            test.makeAndWait("check");
        }
        change(test, row.restores.startsWith(modem) ? "link del wwan0\nlink del d0" : "link del d0",
            false);
    };
    return { row.fault, call, act, outcomes, {}, row.inSample, isInOwnNetwork };
}

struct Modem {
    const char *fault;
    QByteArray prepare; ///< steps
    QString country; ///< that is sent; empty: none
    QByteArray change; ///< while the container is open
    QString countryThen;
    bool inSample = false;
};
const QByteArray service = "start bus; start service; await";
const QByteArray austrian = service + "; modem 0 23201";
const QByteArray german = "modem 0 26201";
const QByteArray anew = "end silence; " + service + "; " + german + "; ask";
const Modem modems[] = {
    { "no bus", "end bus", {}, anew, u"de"_s },
    { "silent bus", "start silence", {}, anew, u"de"_s, true },
    { "dying bus", austrian, u"at"_s, "end bus; ask", {} },
    { "no modem service", "start bus", {}, "start service; " + german, u"de"_s },
    { "dying modem service", austrian, u"at"_s, "end service", {} },
    { "silent modem service", "start bus; start plain-service; mute", {},
        "end plain-service; start service; " + german, u"de"_s },
    { "0 modems", service, {}, german, u"de"_s },
    { "2 modems", service + "; modem 0 20801; modem 1 26201", u"fr"_s, "takeOut 0", {} },
    { "SIM removed", austrian, u"at"_s, "takeOut 0", {}, true },
    { "SIM locked", service + "; modem 0 locked", {}, "unlock 0 26201", u"de"_s },
    { "SIM exchanged", austrian, u"at"_s, "sim 1 26201; put 0 1", u"de"_s },
};

/// The country becomes that, and `start` says so to the service.
void start(FaultTest &test, const QString &country)
{
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return Telephony::shared().isoCountryCode().value_or(QString()) == country; },
        patience))
        << country.toStdString();
    FaultTest::forgetHandlerArguments();
    const auto before = Yardstick::output().size();
    test.makeAndWait("start");
    EXPECT_TRUE(FaultTest::waitForLink());
    const QByteArray sent = Yardstick::output().mid(before);
    const QByteArray key = "\"countryCode\":";
    EXPECT_TRUE(
        country.isEmpty() ? !sent.contains(key) : sent.contains(key + '"' + country.toUtf8() + '"'))
        << sent.constData();
}

Cell told(const Modem &row)
{
    const auto act = [&row](FaultTest &test) {
        ModemBus bus;
        const auto play = [&](const QByteArray &steps) {
            const auto pause = test.yardstick.pause();
            bus.play(steps);
        };
        play(row.prepare);
        test.goTo("start");
        start(test, row.country);
        play(row.change);
        start(test, row.countryThen);
        EXPECT_TRUE(test.leadTo("check"));
        test.makeAndWait("check");
    };
    return { row.fault, "start", act, { u"succeeded"_s }, "apps 2 icon link", row.inSample };
}

} // namespace

std::vector<Cell> deviceCells()
{
    const QString failed = u"failed 1"_s;
    std::vector<Cell> cells;
    for (const Network &row : networks)
        cells.push_back(cut(row, "init", { failed, u"succeeded"_s }));
    for (const char *call : { "start", "check", "check-otp" })
        cells.push_back(cut(networks[0], call, { failed }));
    for (const char *call : { "country", "send-otp" }) // nobody is told
        cells.push_back(cut(networks[0], call, {}));
    for (const Modem &row : modems)
        cells.push_back(told(row));
    return cells;
}
