#include "Parloquin/Platform/Linux/RouteSnapshot.h"

#include <QtCore/QByteArray>

#include <gtest/gtest.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>

#include <array>

using namespace parloquin;

namespace {

constexpr quint32 request = 7;
using Progress = RouteSnapshot::Progress;

template <class T> QByteArray bytes(const T &value)
{
    return { reinterpret_cast<const char *>(&value), sizeof value };
}

QByteArray padded(const QByteArray &bytes)
{
    return bytes.leftJustified(NLMSG_ALIGN(bytes.size()), '\0');
}

QByteArray message(quint16 type, const QByteArray &body = {}, quint16 flags = NLM_F_MULTI,
    quint32 sequence = request, qsizetype excess = 0)
{
    const auto length = static_cast<quint32>(NLMSG_HDRLEN + body.size() + excess);
    return padded(bytes(nlmsghdr { length, type, flags, sequence, 0 }) + body);
}

template <class T> QByteArray attribute(quint16 type, const T &value, int excess = 0)
{
    const auto length = static_cast<quint16>(NLA_HDRLEN + sizeof value + excess);
    return padded(bytes(nlattr { length, type }) + bytes(value));
}

QByteArray link(unsigned flags, quint16 messageFlags = NLM_F_MULTI)
{
    ifinfomsg info {};
    info.ifi_index = 2;
    info.ifi_flags = flags;
    const std::array name { 'e', 't', 'h', '0', '\0' };
    return message(RTM_NEWLINK, bytes(info) + attribute(IFLA_IFNAME, name), messageFlags);
}

QByteArray routeBody(int excess = 0) // of its attribute
{
    rtmsg info {};
    info.rtm_family = AF_INET;
    info.rtm_type = RTN_UNICAST;
    info.rtm_table = RT_TABLE_MAIN;
    return bytes(info) + attribute(RTA_OIF, quint32 { 2 }, excess);
}

QByteArray done(int code = 0) { return message(NLMSG_DONE, bytes(code)); }
QByteArray error(int code) { return message(NLMSG_ERROR, bytes(nlmsgerr { code, {} })); }

constexpr unsigned up = IFF_UP | IFF_RUNNING;
const QByteArray route = message(RTM_NEWROUTE, routeBody());
const QByteArray whole = link(up) + route + done();

TEST(RouteMessages, AreTakenByTheirOwnLengths)
{
    const QByteArray interrupted = link(up, NLM_F_MULTI | NLM_F_DUMP_INTR);
    const QByteArray otherRequest = message(RTM_NEWROUTE, routeBody(), NLM_F_MULTI, request - 1);
    const QByteArray noBody(sizeof(rtmsg), '\0');
    const auto ofLength = [](qsizetype excess) {
        return message(RTM_NEWROUTE, routeBody(), NLM_F_MULTI, request, excess);
    };
    const struct {
        const char *name;
        QByteArray datagram;
        Progress progress;
        ReachabilityFlags flags = 0;
        quint32 sender = 0;
    } rows[] = {
        { "whole", whole, Progress::done, reachable },
        { "not yet done", link(up) + route, Progress::more, reachable },
        { "link down", link(IFF_UP) + route + done(), Progress::done },
        { "link unknown", route + done(), Progress::done },
        { "not from the kernel", whole, Progress::more, 0, 4711 },
        { "of another request", link(up) + otherRequest + done(), Progress::done },
        { "interrupted", interrupted + route + done(), Progress::interrupted, reachable },
        { "overrun", message(NLMSG_OVERRUN) + whole, Progress::interrupted, reachable },
        { "kernel busy", error(-EBUSY), Progress::interrupted },
        { "kernel called away", error(-EINTR), Progress::interrupted },
        { "kernel has no room", error(-EAGAIN), Progress::interrupted },
        { "kernel says yes", error(0) + whole, Progress::done, reachable },
        { "kernel refuses", error(-EPERM), Progress::failed },
        { "ends with code", done(-ENOMEM), Progress::failed },
        { "error cut short", message(NLMSG_ERROR), Progress::failed },
        { "link cut short", message(RTM_NEWLINK, QByteArray(sizeof(ifinfomsg) - 4, '\0')),
            Progress::failed },
        { "route cut short", message(RTM_NEWROUTE, QByteArray(4, '\0')), Progress::failed },
        { "attribute longer than its message", message(RTM_NEWROUTE, routeBody(392)),
            Progress::failed },
        { "number of one byte",
            link(up) + message(RTM_NEWROUTE, noBody + attribute(RTA_OIF, char { 2 })),
            Progress::failed },
        { "next hop of no length",
            message(RTM_NEWROUTE, noBody + attribute(RTA_MULTIPATH, rtnexthop {})),
            Progress::failed },
        { "message longer than its datagram", ofLength(64), Progress::failed },
        { "message of no length", ofLength(-NLMSG_HDRLEN - routeBody().size()), Progress::failed },
    };
    for (const auto &[name, datagram, progress, flags, sender] : rows) {
        RouteSnapshot snapshot;
        const auto size = static_cast<std::size_t>(datagram.size());
        EXPECT_EQ(snapshot.take(datagram.data(), size, sender, request), progress) << name;
        EXPECT_EQ(snapshot.flags(), flags) << name;
    }
}

} // namespace
