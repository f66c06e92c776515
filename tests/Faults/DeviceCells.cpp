// What the device may do: its network, its modems and the bus that tells of them.
#include "Faults/FaultTest.h"
#include "Faults/SystemBus.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Platform/Telephony.h"
#include "support/OwnNetwork.h"

#include <QtTest/QTest>

#include <linux/netlink.h>
#include <sys/socket.h>

#include <atomic>
#include <cerrno>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20000; // ms

/// Datagrams that the kernel marks from now on as parts of a dump that something came between.
std::atomic<int> interruptions = 0;
/// While this holds, what the kernel tells is not read.
std::atomic<bool> isHeld = false;
/// How often there was no room for it then.
std::atomic<int> overruns = 0;

} // namespace

// Stands between the kit and the system, see the link options.
extern "C" ssize_t __real_recvmsg(int fd, msghdr *message, int flags); // NOLINT
extern "C" ssize_t __wrap_recvmsg(int fd, msghdr *message, int flags) // NOLINT
{
    isHeld.wait(true);
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

namespace {

/// Until the kit has taken what the kernel told it, whatever lay between.
bool gateBecomes(bool isReachable)
{
    int same = 0;
    return QTest::qWaitFor(
        [&] {
            const bool is = ApiSessionHelper::shared().isNetworkReachable == isReachable;
            same = is ? same + 1 : 0;
            return same == 20;
        },
        patience);
}

const QByteArray route = "route add default via 10.9.0.1\n";
const QByteArray flaps = ("route del default\n" + route).repeated(1000);

/// From a cable with a default route.
struct Network {
    const char *fault;
    QByteArray breaks;
    QByteArray restores;
    int interruptions = 0; ///< of the dumps that follow the break
    bool inSample = false;
};
const Network networks[] = {
    { "no default route", "route del default", route },
    { "loopback only", "link del d0", wired + route, 0, true },
    { "cable unplugged", "link set d1 down", "link set d1 up" },
    { "link taken down", "link set d0 down", "link set d0 up\n" + route },
    { "route that refuses", "route replace unreachable default",
        "route del unreachable default\n" + route },
    { "IPv6 only", "addr del 10.9.0.2/24 dev d0",
        "addr add fd00::2/64 dev d0 nodad\nroute add ::/0 via fd00::1" },
    { "modem only", "link set d1 down",
        QByteArray(modem) + "route add default via 10.8.0.1 metric 9" },
    { "netlink overrun", flaps + "route del default", route + flaps },
    { "interrupted dump", "route del default", route, 20 },
    { "dump interrupted for seconds", "route del default", route, 200 },
};

void change(const FaultTest &test, const QByteArray &commands, bool isReachable)
{
    const bool isTooMuch = commands.size() > flaps.size();
    const int before = overruns;
    {
        const auto pause = test.pause();
        isHeld = isTooMuch;
        EXPECT_TRUE(ip(commands));
        isHeld = false;
        isHeld.notify_all();
    }
    EXPECT_TRUE(gateBecomes(isReachable)) << commands.right(200).constData();
    EXPECT_EQ(overruns > before, isTooMuch);
}

/// The call is refused at once, and the next one after the network has come back is not.
Cell cut(const Network &row, const QByteArray &call, const QStringList &outcomes)
{
    const auto setUp = [](FaultTest &test) {
        ApiSessionHelper::shared().isNetworkReachable = false;
        change(test, wired + route, true);
    };
    const auto act = [=](FaultTest &test) {
        test.goTo(call);
        test.setOutcome(call, "success");
        interruptions = row.interruptions;
        change(test, row.breaks, false);
        EXPECT_EQ(interruptions, 0) << "not so often";
        test.make(call);
        test.waitForAnswers();
        EXPECT_EQ(test.posts(call), 0);
        change(test, row.restores, true);
        if (call == "init") {
            test.goTo("check");
            test.make("check");
            test.waitForAnswers();
        }
        const bool hasModem = row.restores.startsWith(modem);
        change(test, hasModem ? "link del wwan0\nlink del d0" : "link del d0", false);
    };
    Cell cell { row.fault, call, setUp, act, outcomes, {}, row.inSample };
    cell.inOwnNetwork = true;
    return cell;
}

struct Modem {
    const char *fault;
    std::function<void(SystemBus &)> prepare;
    QString country; ///< that is sent; empty: none
    std::function<void(SystemBus &)> change; ///< while the container is open
    QString countryThen;
    bool inSample = false;
};

/// A SIM each, in a modem of the same number; the last one is told of.
void insert(SystemBus &bus, const QStringList &identifiers)
{
    for (int i = 0; i < identifiers.size(); ++i) {
        bus.addSim(i, identifiers.at(i));
        bus.addModem(i);
        bus.tellOf(i);
    }
}
std::function<void(SystemBus &)> busWith(const QStringList &identifiers)
{
    return [identifiers](SystemBus &bus) {
        bus.start();
        bus.startService();
        insert(bus, identifiers);
    };
}
void beginAnew(SystemBus &bus)
{
    busWith({ u"26201"_s })(bus);
    Telephony::shared().ask(); // as another container does
}
void setAddress(const QString &path)
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path.toUtf8());
}

const auto noBus = [](SystemBus &bus) { setAddress(bus.folder.filePath(u"none"_s)); };
const auto silentBus = [](SystemBus &bus) {
    EXPECT_TRUE(bus.silent.listen(bus.folder.filePath(u"silent"_s)));
    setAddress(bus.silent.fullServerName());
};
const auto dies = [](SystemBus &bus) {
    bus.stop();
    Telephony::shared().ask();
};
const auto silentService = [](SystemBus &bus) {
    bus.start();
    bus.startService(false);
};
const auto modemComes = [](SystemBus &bus) { insert(bus, { u"26201"_s }); };
const auto serviceComes = [](SystemBus &bus) {
    bus.startService();
    modemComes(bus);
};
const auto isTakenOut = [](SystemBus &bus) { bus.putIn(0, {}); };
const auto isExchanged = [](SystemBus &bus) {
    bus.addSim(1, u"26201"_s);
    bus.putIn(0, 1);
};
const auto oneModem = busWith({ u"23201"_s });

const Modem modems[] = {
    { "no bus", noBus, {}, beginAnew, u"de"_s },
    { "silent bus", silentBus, {}, beginAnew, u"de"_s, true },
    { "dying bus", oneModem, u"at"_s, dies, {} },
    { "no modem service", [](auto &bus) { bus.start(); }, {}, serviceComes, u"de"_s },
    { "dying modem service", oneModem, u"at"_s, [](auto &bus) { bus.stopService(); }, {} },
    { "silent modem service", silentService, {}, serviceComes, u"de"_s },
    { "0 modems", busWith({}), {}, modemComes, u"de"_s },
    { "2 modems", busWith({ u"20801"_s, u"26201"_s }), u"fr"_s, isTakenOut, {} }, // not the second
    { "SIM removed", oneModem, u"at"_s, isTakenOut, {}, true },
    { "SIM locked", busWith({ {} }), {}, [](auto &bus) { bus.unlock(0, u"26201"_s); }, u"de"_s },
    { "SIM exchanged", oneModem, u"at"_s, isExchanged, u"de"_s },
};

/// The country becomes that, and `start` says so to the service.
void start(FaultTest &test, const QString &country)
{
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return Telephony::shared().isoCountryCode().value_or(QString()) == country; },
        patience))
        << country.toStdString();
    FaultTest::forgetHandlerArguments();
    const auto before = test.console().size();
    test.make("start");
    test.waitForAnswers();
    EXPECT_TRUE(QTest::qWaitFor([] { return !FaultTest::handlerArguments().isEmpty(); }));
    const QByteArray sent = test.console().mid(before);
    const QByteArray key = "\"countryCode\":";
    EXPECT_TRUE(
        country.isEmpty() ? !sent.contains(key) : sent.contains(key + '"' + country.toUtf8() + '"'))
        << sent.constData();
}

Cell told(const Modem &row)
{
    const auto bus = std::make_shared<std::unique_ptr<SystemBus>>();
    const auto setUp = [=](FaultTest &test) {
        const auto pause = test.pause();
        *bus = std::make_unique<SystemBus>();
        row.prepare(**bus);
    };
    const auto act = [=](FaultTest &test) {
        test.goTo("start");
        start(test, row.country);
        {
            const auto pause = test.pause();
            row.change(**bus);
        }
        start(test, row.countryThen);
        EXPECT_TRUE(test.leadTo("check"));
        test.make("check");
        test.waitForAnswers();
        const auto pause = test.pause();
        bus->reset();
    };
    return { row.fault, "start", setUp, act, { u"succeeded"_s }, "apps 2 icon link", row.inSample };
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
