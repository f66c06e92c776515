#include "Parloquin/Platform/ReachabilityTarget.h"

#include "Parloquin/Platform/GLibPointers.h"
#include "Parloquin/Platform/Linux/RouteSnapshot.h"
#include "Parloquin/Platform/SerialQueue.h"

#include <glib-unix.h>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <functional>
#include <utility>

namespace parloquin {

namespace {

constexpr int dumpTries = 30; // a network that changes without end must not hold us for ever
constexpr int drainLimit = 4096; // datagrams in one go, for the same reason
constexpr timeval dumpPatience { 1, 0 }; // s, us; the kernel answers at once
constexpr std::chrono::seconds retryDelay { 1 };

struct CloseSocket {
    void operator()(mnl_socket *socket) const { mnl_socket_close(socket); }
};
using Socket = std::unique_ptr<mnl_socket, CloseSocket>;

/// \return nothing with errno where the system refuses
Socket openSocket(unsigned groups, int flags)
{
    Socket socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC | flags));
    if (socket && mnl_socket_bind(socket.get(), groups, MNL_SOCKET_AUTOPID) < 0)
        socket.reset();
    return socket;
}

struct Datagram {
    ssize_t size = -1; // below 0: errno says why
    quint32 sender = 0; // port; the kernel's is 0
};

template <std::size_t Capacity>
Datagram receive(const Socket &socket, std::array<char, Capacity> &buffer)
{
    sockaddr_nl from {};
    iovec block { buffer.data(), buffer.size() };
    msghdr message {};
    message.msg_name = &from;
    message.msg_namelen = sizeof(from);
    message.msg_iov = &block;
    message.msg_iovlen = 1;
    Datagram datagram;
    do {
        datagram.size = ::recvmsg(mnl_socket_get_fd(socket.get()), &message, 0);
    } while (datagram.size < 0 && errno == EINTR);
    datagram.sender = from.nl_pid;
    return datagram;
}

RouteSnapshot::Progress dump(
    const Socket &socket, quint16 type, quint32 sequence, RouteSnapshot &snapshot)
{
    std::array<char, 256> request {};
    nlmsghdr *header = mnl_nlmsg_put_header(request.data());
    header->nlmsg_type = type;
    header->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    header->nlmsg_seq = sequence;
    // All zero: any family.
    mnl_nlmsg_put_extra_header(header, type == RTM_GETLINK ? sizeof(ifinfomsg) : sizeof(rtmsg));
    if (mnl_socket_sendto(socket.get(), header, header->nlmsg_len) < 0)
        return RouteSnapshot::Progress::failed;

    alignas(nlmsghdr) std::array<char, 65536> buffer; // the kernel fills at most half of it
    for (;;) {
        const Datagram datagram = receive(socket, buffer);
        if (datagram.size < 0)
            return RouteSnapshot::Progress::failed;
        errno = EBADMSG;
        const auto progress = snapshot.take(
            buffer.data(), static_cast<std::size_t>(datagram.size), datagram.sender, sequence);
        if (progress != RouteSnapshot::Progress::more)
            return progress;
    }
}

/// \return nothing with errno where the kernel does not say, or says something else on each try
std::optional<ReachabilityFlags> readFlags()
{
    quint32 sequence = 0;
    for (int i = 0; i < dumpTries; ++i) {
        // A socket for each try, so that no rest of an interrupted dump comes first.
        const Socket socket = openSocket(0, 0);
        if (!socket
            || ::setsockopt(mnl_socket_get_fd(socket.get()), SOL_SOCKET, SO_RCVTIMEO, &dumpPatience,
                   sizeof(dumpPatience))
                < 0)
            return std::nullopt;
        RouteSnapshot snapshot;
        auto progress = dump(socket, RTM_GETROUTE, ++sequence, snapshot);
        if (progress == RouteSnapshot::Progress::done)
            progress = dump(socket, RTM_GETLINK, ++sequence, snapshot);
        if (progress == RouteSnapshot::Progress::done)
            return snapshot.flags();
        if (progress == RouteSnapshot::Progress::failed)
            return std::nullopt;
    }
    return std::nullopt;
}

/// \brief The kernel's word that links, addresses or routes have changed. Lives on its queue.
class RouteWatch {
public:
    /// \param broken it will hear no more
    /// \return nothing with errno where the system refuses
    static std::shared_ptr<RouteWatch> start(
        std::function<void()> changed, std::function<void()> broken)
    {
        Socket socket = openSocket(RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR
                | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE,
            SOCK_NONBLOCK);
        if (!socket)
            return nullptr;
        auto watch = std::make_shared<RouteWatch>();
        watch->m_socket = std::move(socket);
        watch->m_broken = std::move(broken);
        watch->m_changed = std::move(changed);
        watch->m_events.reset(g_unix_fd_source_new(mnl_socket_get_fd(watch->m_socket.get()),
            static_cast<GIOCondition>(G_IO_IN | G_IO_ERR | G_IO_HUP)));
        const GUnixFDSourceFunc read = [](gint, GIOCondition, gpointer self) -> gboolean {
            static_cast<RouteWatch *>(self)->read();
            return G_SOURCE_CONTINUE;
        };
        g_source_set_callback(watch->m_events.get(), G_SOURCE_FUNC(read), watch.get(), nullptr);
        g_source_attach(watch->m_events.get(), g_main_context_get_thread_default());
        return watch;
    }

private:
    void read()
    {
        const auto changed = m_changed; // kept here: who is told may take us down
        // Lost events change nothing: what holds now is read afresh in any case.
        if (drain())
            changed();
    }

    /// \return whether anything has changed
    bool drain()
    {
        bool isChanged = false;
        std::array<char, 64> head; // what changed does not matter, only who says so
        for (int i = 0; i < drainLimit; ++i) {
            const Datagram datagram = receive(m_socket, head);
            if (datagram.size >= 0) {
                isChanged = isChanged || datagram.sender == 0;
                continue;
            }
            if (errno == ENOBUFS) {
                isChanged = true;
                continue;
            }
            if (errno != EAGAIN) {
                m_broken();
                m_events.reset(); // it would be ready for ever
            }
            break;
        }
        return isChanged;
    }

    Socket m_socket;
    std::function<void()> m_changed;
    std::function<void()> m_broken;
    GLibPointer<GSource> m_events; // goes before the socket closes
};

class DefaultRouteTarget final : public ReachabilityTarget {
public:
    ~DefaultRouteTarget() override { static_cast<void>(setDispatchQueue(nullptr)); }
    Q_DISABLE_COPY_MOVE(DefaultRouteTarget)
    DefaultRouteTarget() = default;

    bool setCallback(std::shared_ptr<ReachabilityContext> context) override
    {
        if (m_queue)
            m_queue->sync([&] { m_context.swap(context); });
        else
            m_context.swap(context);
        return true;
    }

    bool setDispatchQueue(SerialQueue *queue) override
    {
        if (m_queue)
            m_queue->sync([this] { m_watch.reset(); });
        m_queue = queue;
        if (!m_queue)
            return true;
        qint32 code = 0;
        m_queue->sync([&] {
            m_watch = startWatch();
            code = m_watch ? 0 : errno;
        });
        setLastError(code);
        return code == 0;
    }

    std::optional<ReachabilityFlags> flags() override
    {
        const auto flags = readFlags();
        if (!flags)
            setLastError(errno);
        return flags;
    }

private:
    std::shared_ptr<RouteWatch> startWatch()
    {
        return RouteWatch::start([this] { tell(); }, [this] { watchAgain(); });
    }

    void watchAgain()
    {
        m_queue->asyncAfter(retryDelay, [this, broken = std::weak_ptr(m_watch)] {
            if (broken.expired())
                return;
            if (auto watch = startWatch()) {
                m_watch = std::move(watch);
                tell(); // of what has changed in between
            } else {
                watchAgain();
            }
        });
    }

    void tell()
    {
        // Kept here: who is told may take us down.
        const auto context = m_context;
        if (!context)
            return;
        if (const auto flags = readFlags())
            context->changed(*flags);
        else
            m_queue->asyncAfter(retryDelay, [this, weak = std::weak_ptr(m_watch)] {
                if (weak.lock())
                    tell();
            });
    }

    SerialQueue *m_queue = nullptr;
    std::shared_ptr<ReachabilityContext> m_context; // touched on the queue while there is one
    std::shared_ptr<RouteWatch> m_watch; // on the queue
};

} // namespace

std::unique_ptr<ReachabilityTarget> ReachabilityTarget::ofDefaultRoute()
{
    return std::make_unique<DefaultRouteTarget>();
}

} // namespace parloquin
