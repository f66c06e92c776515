#include "Parloquin/Platform/Linux/RouteSnapshot.h"

#include <QtCore/QFile>

#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace parloquin {

namespace {

/// Calls the block with each attribute of the range until it returns false.
/// \return false where the block did or a length does not hold
template <typename Block>
bool forEachAttribute(const void *begin, const void *end, const Block &block)
{
    const auto *attribute = static_cast<const nlattr *>(begin);
    const auto left = [&] {
        return static_cast<int>(
            static_cast<const char *>(end) - reinterpret_cast<const char *>(attribute));
    };
    for (; mnl_attr_ok(attribute, left()); attribute = mnl_attr_next(attribute)) {
        if (!block(attribute))
            return false;
    }
    return left() <= 0; // what is left over belongs to no attribute
}

template <typename Block>
bool forEachAttribute(const nlmsghdr *message, std::size_t header, const Block &block)
{
    // To the end of the message: the library's own tail counts padding that may not be there.
    const auto *payload = static_cast<const char *>(mnl_nlmsg_get_payload(message));
    return forEachAttribute(mnl_nlmsg_get_payload_offset(message, header),
        payload + mnl_nlmsg_get_payload_len(message), block);
}

// The library takes a length of 2 GiB and more for a negative one, which fits everywhere.
bool fits(const nlmsghdr *message, int left)
{
    return mnl_nlmsg_ok(message, left) && message->nlmsg_len <= static_cast<quint32>(left);
}

std::optional<quint32> number(const nlattr *attribute)
{
    if (mnl_attr_validate(attribute, MNL_TYPE_U32) < 0)
        return std::nullopt;
    return mnl_attr_get_u32(attribute);
}

bool isText(const nlattr *attribute)
{
    return mnl_attr_validate(attribute, MNL_TYPE_NUL_STRING) >= 0;
}

// Most modems' drivers say what they are only here.
bool isWwanInSysfs(const QByteArray &name)
{
    QFile file(QStringLiteral("/sys/class/net/%1/uevent").arg(QFile::decodeName(name)));
    return file.open(QIODevice::ReadOnly)
        && file.read(4096).split('\n').contains(QByteArrayLiteral("DEVTYPE=wwan"));
}

} // namespace

RouteSnapshot::Progress RouteSnapshot::take(
    const void *data, std::size_t size, quint32 sender, quint32 sequence)
{
    if (sender != 0)
        return Progress::more;

    int left = static_cast<int>(size);
    const auto *message = static_cast<const nlmsghdr *>(data);
    for (; fits(message, left); message = mnl_nlmsg_next(message, &left)) {
        if (message->nlmsg_seq != sequence)
            continue;
        if ((message->nlmsg_flags & NLM_F_DUMP_INTR) != 0)
            m_isInterrupted = true;
        const Progress progress = takeMessage(message);
        if (progress == Progress::done && m_isInterrupted)
            return Progress::interrupted;
        if (progress != Progress::more)
            return progress;
    }
    return left > 0 ? Progress::failed : Progress::more;
}

RouteSnapshot::Progress RouteSnapshot::takeMessage(const nlmsghdr *message)
{
    const std::size_t size = mnl_nlmsg_get_payload_len(message);
    const auto taken = [](bool isTaken) { return isTaken ? Progress::more : Progress::failed; };
    switch (message->nlmsg_type) {
    case NLMSG_DONE:
        // The end of a dump may carry the code it ended with.
        if (size >= sizeof(int) && *static_cast<const int *>(mnl_nlmsg_get_payload(message)) < 0)
            return Progress::failed;
        return Progress::done;
    case NLMSG_OVERRUN:
        m_isInterrupted = true;
        return Progress::more;
    case NLMSG_ERROR: {
        if (size < sizeof(nlmsgerr))
            return Progress::failed;
        const int code = static_cast<const nlmsgerr *>(mnl_nlmsg_get_payload(message))->error;
        if (code == -EBUSY || code == -EINTR || code == -EAGAIN)
            return Progress::interrupted;
        return taken(code == 0);
    }
    case RTM_NEWLINK:
        return taken(size >= sizeof(ifinfomsg) && takeLink(message));
    case RTM_NEWROUTE:
        return taken(size >= sizeof(rtmsg) && takeRoute(message));
    default:
        return Progress::more;
    }
}

bool RouteSnapshot::takeLink(const nlmsghdr *message)
{
    const auto *info = static_cast<const ifinfomsg *>(mnl_nlmsg_get_payload(message));
    Link link;
    // Set up by the administrator, and with a carrier.
    constexpr unsigned up = IFF_UP | IFF_RUNNING;
    link.isUp = (info->ifi_flags & up) == up;
    link.isWwan = info->ifi_type == ARPHRD_RAWIP || info->ifi_type == ARPHRD_PHONET_PIPE;

    const auto takeKind = [&link](const nlattr *attribute) {
        if (mnl_attr_get_type(attribute) != IFLA_INFO_KIND)
            return true;
        if (!isText(attribute))
            return false;
        const QByteArray kind(mnl_attr_get_str(attribute));
        link.isWwan = link.isWwan || kind == "wwan" || kind == "rmnet";
        return true;
    };
    const bool isWhole = forEachAttribute(message, sizeof(ifinfomsg), [&](const nlattr *attribute) {
        switch (mnl_attr_get_type(attribute)) {
        case IFLA_IFNAME:
            if (!isText(attribute))
                return false;
            link.name = mnl_attr_get_str(attribute);
            return true;
        case IFLA_LINKINFO: {
            const auto *begin = static_cast<const char *>(mnl_attr_get_payload(attribute));
            return forEachAttribute(begin, begin + mnl_attr_get_payload_len(attribute), takeKind);
        }
        default:
            return true;
        }
    });
    // The names that kernel and device manager give to modems.
    link.isWwan = link.isWwan || link.name.startsWith("ww") || link.name.startsWith("rmnet");
    m_links.insert_or_assign(info->ifi_index, link);
    return isWhole;
}

bool RouteSnapshot::takeRoute(const nlmsghdr *message)
{
    const auto *info = static_cast<const rtmsg *>(mnl_nlmsg_get_payload(message));
    quint32 table = info->rtm_table;
    quint32 metric = 0;
    std::vector<int> links;
    const bool isWhole = forEachAttribute(message, sizeof(rtmsg), [&](const nlattr *attribute) {
        const auto type = mnl_attr_get_type(attribute);
        if (type == RTA_MULTIPATH)
            return takeNextHops(attribute, links);
        if (type != RTA_TABLE && type != RTA_PRIORITY && type != RTA_OIF)
            return true;
        const auto value = number(attribute);
        if (!value)
            return false;
        if (type == RTA_TABLE)
            table = *value;
        else if (type == RTA_PRIORITY)
            metric = *value;
        else
            links.push_back(static_cast<int>(*value));
        return true;
    });

    // Default routes that lead somewhere; kernels also list ones that refuse. Any table may be the
    // one that policy sends us to.
    const bool isInternet = info->rtm_family == AF_INET || info->rtm_family == AF_INET6;
    if (isInternet && info->rtm_dst_len == 0 && info->rtm_type == RTN_UNICAST
        && table != RT_TABLE_LOCAL && (info->rtm_flags & RTM_F_CLONED) == 0) {
        for (const int link : links)
            m_routes.push_back({ info->rtm_family, link, metric });
    }
    return isWhole;
}

bool RouteSnapshot::takeNextHops(const nlattr *attribute, std::vector<int> &links)
{
    const auto *at = static_cast<const char *>(mnl_attr_get_payload(attribute));
    std::size_t left = mnl_attr_get_payload_len(attribute);
    while (left >= sizeof(rtnexthop)) {
        const auto *hop = reinterpret_cast<const rtnexthop *>(at);
        const std::size_t length = RTNH_ALIGN(hop->rtnh_len);
        if (hop->rtnh_len < sizeof(rtnexthop) || hop->rtnh_len > left)
            return false;
        links.push_back(hop->rtnh_ifindex);
        at += std::min(length, left);
        left -= std::min(length, left);
    }
    return left == 0;
}

ReachabilityFlags RouteSnapshot::flags() const
{
    // Of each family the route that traffic takes: the one of the lowest metric.
    std::map<int, std::pair<quint32, const Link *>> best;
    for (const Route &route : m_routes) {
        const auto link = m_links.find(route.link);
        if (link == m_links.end() || !link->second.isUp)
            continue;
        const auto found = best.find(route.family);
        if (found == best.end() || route.metric < found->second.first)
            best.insert_or_assign(route.family, std::pair(route.metric, &link->second));
    }
    if (best.empty())
        return 0;
    const bool isOverModem = std::all_of(best.begin(), best.end(), [](const auto &entry) {
        const Link &link = *entry.second.second;
        return link.isWwan || isWwanInSysfs(link.name);
    });
    return isOverModem ? reachable | isWWAN : reachable;
}

} // namespace parloquin
