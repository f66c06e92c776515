#pragma once

#include "Parloquin/Platform/ReachabilityTarget.h"

#include <QtCore/QByteArray>

#include <cstddef>
#include <map>
#include <vector>

struct nlattr;
struct nlmsghdr;

namespace parloquin {

/// \brief The links and default routes of the network at one moment, as the kernel dumps them.
class RouteSnapshot {
public:
    /// How far a dump has come: to be read on, ended, to be made again, or refused.
    enum class Progress { more, done, interrupted, failed };

    /// \brief Takes in one datagram of a dump.
    ///
    /// Trusts no length in it, and nothing that the kernel did not send or that answers another
    /// request.
    /// \param data aligned for a message header
    /// \param sender port of the sender; the kernel's is 0
    /// \param sequence number of the request that is answered
    [[nodiscard]] Progress take(
        const void *data, std::size_t size, quint32 sender, quint32 sequence);

    /// \brief What the default routes through links that are up make of the internet.
    [[nodiscard]] ReachabilityFlags flags() const;

private:
    struct Link {
        QByteArray name;
        bool isUp = false;
        bool isWwan = false;
    };
    struct Route {
        int family;
        int link;
        quint32 metric;
    };

    [[nodiscard]] Progress takeMessage(const nlmsghdr *message);
    [[nodiscard]] bool takeLink(const nlmsghdr *message);
    [[nodiscard]] bool takeRoute(const nlmsghdr *message);
    [[nodiscard]] static bool takeNextHops(const nlattr *attribute, std::vector<int> &links);

    std::map<int, Link> m_links; // by interface index
    std::vector<Route> m_routes;
    bool m_isInterrupted = false;
};

} // namespace parloquin
