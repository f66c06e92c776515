#include "sandbox/exec/PrivateNetwork.h"

#include <net/if.h>
#include <net/route.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace sandbox {
namespace {
bool put(const char *file, const std::string &text)
{
    std::ofstream stream(file);
    return static_cast<bool>(stream << text << std::flush);
}

bool raiseLoopback(int socket)
{
    ifreq loopback {};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP | IFF_RUNNING;
    if (ioctl(socket, SIOCSIFFLAGS, &loopback) != 0)
        return false;
    rtentry route {};
    for (auto *address : { &route.rt_dst, &route.rt_genmask, &route.rt_gateway })
        address->sa_family = AF_INET;
    route.rt_dev = loopback.ifr_name;
    route.rt_flags = RTF_UP;
    return ioctl(socket, SIOCADDRT, &route) == 0;
}
}

bool hasDefaultRoute()
{
    std::string line;
    std::ifstream four("/proc/net/route");
    while (std::getline(four, line)) {
        std::istringstream fields(line);
        std::string device;
        std::string to;
        std::string gateway;
        unsigned flags = 0;
        fields >> device >> to >> gateway >> std::hex >> flags;
        if (to == "00000000" && (flags & RTF_UP) != 0 && (flags & RTF_REJECT) == 0)
            return true;
    }
    std::ifstream six("/proc/net/ipv6_route");
    while (std::getline(six, line)) {
        // The kernel's own entry that turns everything away stands on the loopback.
        if (line.starts_with(std::string(32, '0') + " 00 ") && !line.ends_with(" lo"))
            return true;
    }
    return false;
}

std::string enterPrivateNetwork()
{
    const auto user = std::to_string(geteuid());
    const auto group = std::to_string(getegid());
    if (unshare(CLONE_NEWNET) != 0) {
        // Who may not do so on the machine may do so as the only user of a place of their own.
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
            return std::string("unshare: ") + std::strerror(errno);
        if (!put("/proc/self/setgroups", "deny")
            || !put("/proc/self/uid_map", user + ' ' + user + " 1")
            || !put("/proc/self/gid_map", group + ' ' + group + " 1"))
            return std::string("/proc/self/uid_map: ") + std::strerror(errno);
    }
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool done = raiseLoopback(socket);
    const int fault = errno;
    close(socket);
    return done ? "" : std::string("the loopback's route: ") + std::strerror(fault);
}

}
