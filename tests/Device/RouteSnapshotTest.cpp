#include "Parloquin/Platform/Linux/RouteSnapshot.h"

#include <gtest/gtest.h>
#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>

#include <array>
#include <cstring>
#include <functional>
#include <memory>

using namespace parloquin;

namespace {

constexpr quint32 request = 7;
using Progress = RouteSnapshot::Progress;

/// Builds a datagram of whole messages.
class Datagram {
public:
    nlmsghdr *message(quint16 type, quint16 flags = NLM_F_MULTI)
    {
        nlmsghdr *header = mnl_nlmsg_put_header(m_bytes.data() + m_size);
        header->nlmsg_type = type;
        header->nlmsg_flags = flags;
        header->nlmsg_seq = request;
        m_last = header;
        return header;
    }
    void end() { m_size += MNL_ALIGN(m_last->nlmsg_len); }

    void link(int index, unsigned flags, quint16 messageFlags = NLM_F_MULTI)
    {
        nlmsghdr *header = message(RTM_NEWLINK, messageFlags);
        auto *info =
            static_cast<ifinfomsg *>(mnl_nlmsg_put_extra_header(header, sizeof(ifinfomsg)));
        info->ifi_index = index;
        info->ifi_flags = flags;
        mnl_attr_put_strz(header, IFLA_IFNAME, "eth0");
        end();
    }
    void route(quint32 link)
    {
        nlmsghdr *header = message(RTM_NEWROUTE);
        auto *info = static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(header, sizeof(rtmsg)));
        info->rtm_family = AF_INET;
        info->rtm_type = RTN_UNICAST;
        info->rtm_table = RT_TABLE_MAIN;
        mnl_attr_put_u32(header, RTA_OIF, link);
        end();
    }
    void done(int code = 0)
    {
        nlmsghdr *header = message(NLMSG_DONE);
        *static_cast<int *>(mnl_nlmsg_put_extra_header(header, sizeof(int))) = code;
        end();
    }
    void error(int code)
    {
        nlmsghdr *header = message(NLMSG_ERROR);
        static_cast<nlmsgerr *>(mnl_nlmsg_put_extra_header(header, sizeof(nlmsgerr)))->error = code;
        end();
    }

    [[nodiscard]] char *data() { return m_bytes.data(); }
    [[nodiscard]] std::size_t size() const { return m_size; }
    nlmsghdr *last() { return m_last; }

private:
    alignas(nlmsghdr) std::array<char, 4096> m_bytes {};
    std::size_t m_size = 0;
    nlmsghdr *m_last = nullptr;
};

constexpr unsigned up = IFF_UP | IFF_RUNNING;

struct MessageRow {
    const char *name;
    std::function<void(Datagram &)> fill;
    Progress progress;
    ReachabilityFlags flags;
    quint32 sender = 0;
};

class RouteMessages : public testing::TestWithParam<MessageRow> { };

TEST_P(RouteMessages, AreTakenByTheirOwnLengths)
{
    Datagram datagram;
    GetParam().fill(datagram);
    RouteSnapshot snapshot;
    EXPECT_EQ(snapshot.take(datagram.data(), datagram.size(), GetParam().sender, request),
        GetParam().progress);
    EXPECT_EQ(snapshot.flags(), GetParam().flags);
}

const MessageRow messageRows[] = {
    { "Whole", [](Datagram &d) { d.link(2, up), d.route(2), d.done(); }, Progress::done,
        reachable },
    { "NotYetDone", [](Datagram &d) { d.link(2, up), d.route(2); }, Progress::more, reachable },
    { "LinkDown", [](Datagram &d) { d.link(2, IFF_UP), d.route(2), d.done(); }, Progress::done, 0 },
    { "LinkUnknown", [](Datagram &d) { d.route(2), d.done(); }, Progress::done, 0 },
    { "NotFromTheKernel", [](Datagram &d) { d.link(2, up), d.route(2), d.done(); }, Progress::more,
        0, 4711 },
    { "OfAnotherRequest",
        [](Datagram &d) {
            d.link(2, up);
            d.route(2);
            d.last()->nlmsg_seq = request - 1;
            d.done();
        },
        Progress::done, 0 },
    { "Interrupted",
        [](Datagram &d) { d.link(2, up, NLM_F_MULTI | NLM_F_DUMP_INTR), d.route(2), d.done(); },
        Progress::interrupted, reachable },
    { "KernelBusy", [](Datagram &d) { d.error(-EBUSY); }, Progress::interrupted, 0 },
    { "KernelRefuses", [](Datagram &d) { d.error(-EPERM); }, Progress::failed, 0 },
    { "EndsWithCode", [](Datagram &d) { d.done(-ENOMEM); }, Progress::failed, 0 },
    { "ErrorCutShort",
        [](Datagram &d) {
            d.message(NLMSG_ERROR);
            d.end();
        },
        Progress::failed, 0 },
    { "LinkCutShort",
        [](Datagram &d) {
            mnl_nlmsg_put_extra_header(d.message(RTM_NEWLINK), sizeof(ifinfomsg) - 4);
            d.end();
        },
        Progress::failed, 0 },
    { "RouteCutShort",
        [](Datagram &d) {
            mnl_nlmsg_put_extra_header(d.message(RTM_NEWROUTE), 4);
            d.end();
        },
        Progress::failed, 0 },
    { "AttributeLongerThanItsMessage",
        [](Datagram &d) {
            d.route(2);
            auto *oif =
                static_cast<nlattr *>(mnl_nlmsg_get_payload_offset(d.last(), sizeof(rtmsg)));
            oif->nla_len = 400;
        },
        Progress::failed, 0 },
    { "NumberOfOneByte",
        [](Datagram &d) {
            d.link(2, up);
            nlmsghdr *header = d.message(RTM_NEWROUTE);
            mnl_nlmsg_put_extra_header(header, sizeof(rtmsg));
            mnl_attr_put_u8(header, RTA_OIF, 2);
            d.end();
        },
        Progress::failed, 0 },
    { "NextHopOfNoLength",
        [](Datagram &d) {
            nlmsghdr *header = d.message(RTM_NEWROUTE);
            mnl_nlmsg_put_extra_header(header, sizeof(rtmsg));
            const rtnexthop hop {};
            mnl_attr_put(header, RTA_MULTIPATH, sizeof(hop), &hop);
            d.end();
        },
        Progress::failed, 0 },
    { "MessageLongerThanItsDatagram",
        [](Datagram &d) {
            d.route(2);
            d.last()->nlmsg_len += 64;
        },
        Progress::failed, 0 },
    { "MessageOfNoLength",
        [](Datagram &d) {
            d.route(2);
            d.last()->nlmsg_len = 0;
        },
        Progress::failed, 0 },
};
INSTANTIATE_TEST_SUITE_P(Messages, RouteMessages, testing::ValuesIn(messageRows),
    [](const auto &row) { return row.param.name; });

// Every datagram cut at every byte: read exactly, nothing beyond (the sanitizer watches).
TEST(RouteMessages, CutAnywhereNeverReadBeyond)
{
    Datagram whole;
    whole.link(2, up);
    whole.route(2);
    whole.done();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto cut = std::make_unique<char[]>(size);
        std::memcpy(cut.get(), whole.data(), size);
        RouteSnapshot snapshot;
        EXPECT_NE(snapshot.take(cut.get(), size, 0, request), Progress::done) << size;
    }
}

} // namespace
