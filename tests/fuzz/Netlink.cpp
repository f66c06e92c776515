// Datagrams that pass for the kernel's account of links and routes.
#include "Parloquin/Platform/Linux/RouteSnapshot.h"
#include "fuzz/Fuzz.h"

#include <linux/netlink.h>

#include <cstring>
#include <vector>

using namespace parloquin;
using Progress = RouteSnapshot::Progress;

namespace {

constexpr quint32 request = 7;

/// Aligned for a message header, and ending where the bytes end.
struct Datagram {
    Datagram(const std::uint8_t *data, std::size_t size)
        : bytes(data, data + size)
    {
    }
    std::vector<std::uint8_t> bytes;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Datagram whole(data, size);
    const auto *bytes = whole.bytes.data();

    RouteSnapshot strangers;
    require(strangers.take(bytes, size, 4711, request) == Progress::more, "only the kernel counts");
    require(strangers.flags() == 0, "a stranger's routes do not count");
    (void)strangers.take(bytes, size, 0, request + 1);

    RouteSnapshot kernels;
    const Progress progress = kernels.take(bytes, size, 0, request);
    const auto flags = kernels.flags();
    require(flags == 0 || flags == reachable || flags == (reachable | isWWAN), "these or none");

    // The same messages a datagram each: as far, and the same network.
    RouteSnapshot pieces;
    Progress last = Progress::more;
    std::size_t at = 0;
    while (at < size && last == Progress::more) {
        nlmsghdr header {};
        std::memcpy(&header, bytes + at, std::min(sizeof header, size - at));
        const std::size_t left = size - at;
        const std::size_t length = header.nlmsg_len < sizeof header || header.nlmsg_len > left
            ? left
            : std::min<std::size_t>(NLMSG_ALIGN(header.nlmsg_len), left);
        const Datagram piece(bytes + at, length);
        last = pieces.take(piece.bytes.data(), length, 0, request);
        at += length;
    }
    require(last == progress && pieces.flags() == flags, "datagrams may be cut between messages");
    return 0;
}
