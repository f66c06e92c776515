// Datagrams that pass for the kernel's account of links and routes.
#include "Parloquin/Platform/Linux/RouteSnapshot.h"
#include "fuzz/Fuzz.h"

#include <linux/netlink.h>

#include <cstring>
#include <vector>

using namespace parloquin;
using Progress = RouteSnapshot::Progress;

void fuzz(const QByteArray &bytes)
{
    constexpr quint32 request = 7;
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::vector<char> whole(bytes.begin(), bytes.end()); // aligned, and ends where it ends
    RouteSnapshot strangers;
    require(strangers.take(whole.data(), size, 4711, request) == Progress::more
            && strangers.flags() == 0,
        "only the kernel counts");
    RouteSnapshot kernels;
    const Progress progress = kernels.take(whole.data(), size, 0, request);
    const auto flags = kernels.flags();
    require(flags == 0 || flags == reachable || flags == (reachable | isWWAN), "these or none");

    // Cut anywhere: never read beyond (the sanitizer watches).
    for (std::size_t cut = 0; cut < size; ++cut) {
        const std::vector<char> part(
            whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
        (void)RouteSnapshot().take(part.data(), cut, 0, request);
    }

    // The same messages a datagram each: as far, and the same network.
    RouteSnapshot pieces;
    Progress last = Progress::more;
    std::size_t length = 0;
    for (std::size_t at = 0; at < size && last == Progress::more; at += length) {
        nlmsghdr header {};
        std::memcpy(&header, whole.data() + at, std::min(sizeof header, size - at));
        length = size - at;
        if (header.nlmsg_len >= sizeof header && header.nlmsg_len <= length)
            length = std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), length);
        const std::vector<char> piece(whole.data() + at, whole.data() + at + length);
        last = pieces.take(piece.data(), length, 0, request);
    }
    require(last == progress && pieces.flags() == flags, "datagrams may be cut between messages");
}
