#include "Parloquin/Platform/Linux/RouteSnapshot.h"

#include <gtest/gtest.h>
#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>

#include <array>
#include <cstring>
#include <memory>
#include <type_traits>

using namespace parloquin;

namespace {

constexpr quint32 request = 7;
using Progress = RouteSnapshot::Progress;

/// A datagram of whole messages.
class Datagram {
public:
    /// \param size of its body, which is zero
    Datagram &message(quint16 type, std::size_t size = 0, quint16 flags = NLM_F_MULTI)
    {
        m_last = m_size;
        nlmsghdr *header = mnl_nlmsg_put_header(m_bytes.data() + m_size);
        header->nlmsg_type = type;
        header->nlmsg_flags = flags;
        header->nlmsg_seq = request;
        mnl_nlmsg_put_extra_header(header, size);
        return ended();
    }
    template <class T> Datagram &attribute(quint16 type, const T &value)
    {
        mnl_attr_put(last(), type, sizeof(T), &value);
        return ended();
    }
    /// Changes the last message, or its body, as it stands.
    template <class T = nlmsghdr>
    Datagram &with(std::type_identity_t<void (*)(T &)> change, std::size_t offset = 0)
    {
        change(*reinterpret_cast<T *>(m_bytes.data() + m_last + offset));
        return *this;
    }

    Datagram &link(int index, unsigned flags, quint16 messageFlags = NLM_F_MULTI)
    {
        ifinfomsg info {};
        info.ifi_index = index;
        info.ifi_flags = flags;
        return message(RTM_NEWLINK, sizeof info, messageFlags)
            .body(info)
            .attribute(IFLA_IFNAME, std::array { 'e', 't', 'h', '0', '\0' });
    }
    Datagram &route(quint32 link)
    {
        rtmsg info {};
        info.rtm_family = AF_INET;
        info.rtm_type = RTN_UNICAST;
        info.rtm_table = RT_TABLE_MAIN;
        return message(RTM_NEWROUTE, sizeof info).body(info).attribute(RTA_OIF, link);
    }
    Datagram &done(int code = 0) { return message(NLMSG_DONE, sizeof code).body(code); }
    Datagram &error(int code)
    {
        return message(NLMSG_ERROR, sizeof(nlmsgerr)).body(nlmsgerr { code, {} });
    }

    [[nodiscard]] const char *data() const { return m_bytes.data(); }
    [[nodiscard]] std::size_t size() const { return m_size; }

private:
    nlmsghdr *last() { return reinterpret_cast<nlmsghdr *>(m_bytes.data() + m_last); }
    Datagram &ended()
    {
        m_size = m_last + MNL_ALIGN(last()->nlmsg_len);
        return *this;
    }
    template <class T> Datagram &body(const T &info)
    {
        std::memcpy(mnl_nlmsg_get_payload(last()), &info, sizeof info);
        return *this;
    }

    alignas(nlmsghdr) std::array<char, 4096> m_bytes {};
    std::size_t m_size = 0;
    std::size_t m_last = 0;
};

constexpr unsigned up = IFF_UP | IFF_RUNNING;
const Datagram whole = Datagram().link(2, up).route(2).done();

TEST(RouteMessages, AreTakenByTheirOwnLengths)
{
    const Datagram interrupted = Datagram().link(2, up, NLM_F_MULTI | NLM_F_DUMP_INTR);
    const auto longAttribute = [](nlattr &oif) { oif.nla_len = 400; };
    const struct {
        const char *name;
        Datagram datagram;
        Progress progress;
        ReachabilityFlags flags = 0;
        quint32 sender = 0;
    } rows[] = {
        { "whole", whole, Progress::done, reachable },
        { "not yet done", Datagram().link(2, up).route(2), Progress::more, reachable },
        { "link down", Datagram().link(2, IFF_UP).route(2).done(), Progress::done },
        { "link unknown", Datagram().route(2).done(), Progress::done },
        { "not from the kernel", whole, Progress::more, 0, 4711 },
        { "of another request",
            Datagram().link(2, up).route(2).with([](nlmsghdr &last) { --last.nlmsg_seq; }).done(),
            Progress::done },
        { "interrupted", Datagram(interrupted).route(2).done(), Progress::interrupted, reachable },
        { "kernel busy", Datagram().error(-EBUSY), Progress::interrupted },
        { "kernel refuses", Datagram().error(-EPERM), Progress::failed },
        { "ends with code", Datagram().done(-ENOMEM), Progress::failed },
        { "error cut short", Datagram().message(NLMSG_ERROR), Progress::failed },
        { "link cut short", Datagram().message(RTM_NEWLINK, sizeof(ifinfomsg) - 4),
            Progress::failed },
        { "route cut short", Datagram().message(RTM_NEWROUTE, 4), Progress::failed },
        { "attribute longer than its message",
            Datagram().route(2).with<nlattr>(longAttribute, sizeof(nlmsghdr) + sizeof(rtmsg)),
            Progress::failed },
        { "number of one byte",
            Datagram().link(2, up).message(RTM_NEWROUTE, sizeof(rtmsg)).attribute(RTA_OIF, char(2)),
            Progress::failed },
        { "next hop of no length",
            Datagram().message(RTM_NEWROUTE, sizeof(rtmsg)).attribute(RTA_MULTIPATH, rtnexthop {}),
            Progress::failed },
        { "message longer than its datagram",
            Datagram().route(2).with([](nlmsghdr &last) { last.nlmsg_len += 64; }),
            Progress::failed },
        { "message of no length",
            Datagram().route(2).with([](nlmsghdr &last) { last.nlmsg_len = 0; }),
            Progress::failed },
    };
    for (const auto &[name, datagram, progress, flags, sender] : rows) {
        RouteSnapshot snapshot;
        EXPECT_EQ(snapshot.take(datagram.data(), datagram.size(), sender, request), progress)
            << name;
        EXPECT_EQ(snapshot.flags(), flags) << name;
    }
}

// Every datagram cut at every byte: read exactly, nothing beyond (the sanitizer watches).
TEST(RouteMessages, CutAnywhereNeverReadBeyond)
{
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto cut = std::make_unique<char[]>(size);
        std::memcpy(cut.get(), whole.data(), size);
        RouteSnapshot snapshot;
        EXPECT_NE(snapshot.take(cut.get(), size, 0, request), Progress::done) << size;
    }
}

} // namespace
