#include "sandbox/service/Front.h"

#include "sandbox/service/CallForm.h"
#include "sandbox/service/HttpMessage.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <thread>

namespace sandbox {
namespace {
constexpr int waitingCallers = 128; // a client that loads its icons at once brings many
constexpr int mostConnections = 512; // each holds a thread
constexpr std::size_t mostOfRequest = 1048576; // of a request; a real one has a few hundred
constexpr std::chrono::seconds patience { 10 }; // for the next bytes of a request

sockaddr_in addressOf(int port)
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int connectTo(int port)
{
    const auto socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = addressOf(port);
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return socket;
    ::close(socket);
    return -1;
}

/// The call that the request line in \p head asks for; empty when it asks for something else.
std::string callOf(const std::string &head)
{
    constexpr std::string_view post = "POST /v1.0/";
    if (head.starts_with("GET /sandbox/icons/"))
        return std::string(iconName);
    if (!head.starts_with(post))
        return {};
    auto name = head.substr(post.size(), head.find(' ', post.size()) - post.size());
    return isCall(name) ? name : std::string();
}

/// Of a request of which the head is there: what follows it is what it says, if that can be read.
std::size_t wholeSize(const std::string &request, std::size_t headSize)
{
    const auto length = HttpMessage(request.substr(0, headSize)).take("Content-Length");
    std::size_t size = 0;
    std::from_chars(length.data(), length.data() + length.size(), size);
    return headSize + std::min(size, mostOfRequest);
}

/// The HTTP library packs its answers where it may; here a fault shall meet the bytes as they are.
std::string withoutPacking(const std::string &request)
{
    HttpMessage message(request);
    message.take("Accept-Encoding");
    return message.head() + message.body();
}
}

Front::Front(Outcomes &outcomes, RequestCount &count, Played played)
    : m_outcomes(outcomes)
    , m_count(count)
    , m_played(std::move(played))
    , m_stopped(::eventfd(0, EFD_CLOEXEC))
{
}

Front::~Front()
{
    ::close(m_socket);
    ::close(m_stopped);
}

int Front::bind(int port)
{
    m_socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(m_socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    auto address = addressOf(port);
    auto *plain = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    if (::bind(m_socket, plain, size) != 0 || ::listen(m_socket, waitingCallers) != 0
        || ::getsockname(m_socket, plain, &size) != 0)
        return -1;
    return ntohs(address.sin_port);
}

void Front::run(int backPort)
{
    m_backPort = backPort;
    pollfd watched[] = { { m_stopped, POLLIN, 0 }, { m_socket, POLLIN, 0 } };
    while (true) {
        {
            std::unique_lock lock(m_mutex);
            m_ended.wait(lock, [this] { return m_connections < mostConnections; });
        }
        ::poll(watched, 2, -1);
        if (watched[0].revents != 0)
            break;
        const auto socket = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            if (errno == EMFILE || errno == ENFILE) // until some have ended
                ::poll(watched, 1, 100);
            continue;
        }
        const int on = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        const std::lock_guard lock(m_mutex);
        ++m_connections;
        std::thread([this, socket] {
            {
                Connection client(socket, m_stopped, m_count);
                serve(client);
            }
            const std::lock_guard ended(m_mutex);
            --m_connections;
            m_ended.notify_all();
        }).detach();
    }
    std::unique_lock lock(m_mutex);
    m_ended.wait(lock, [this] { return m_connections == 0; });
}

void Front::stop()
{
    const std::uint64_t one = 1;
    static_cast<void>(::write(m_stopped, &one, sizeof one)); // stays readable from now on
}

std::string Front::ask(Connection &client, const std::string &request) const
{
    std::string answer;
    RequestCount uncounted;
    Connection behind(connectTo(m_backPort), m_stopped, uncounted);
    if (!behind.send(request))
        return answer;
    pollfd watched[] = { { behind.socket(), POLLIN, 0 }, { client.socket(), POLLIN, 0 },
        { m_stopped, POLLIN, 0 } };
    while (::poll(watched, 3, -1) >= 0 && watched[2].revents == 0) {
        if (watched[0].revents != 0 && !behind.receive(answer, mostOfRequest, patience))
            return answer;
        // One that only ended its own half still wants the answer.
        std::string dropped;
        if (watched[1].revents != 0 && !client.receive(dropped, mostOfRequest, patience))
            watched[1].fd = -1;
    }
    return {};
}

void Front::serve(Connection &client)
{
    const std::string connection(connectionName);
    if (const auto outcome = m_outcomes.take(connection); outcome.fault) {
        m_played(connection, outcome.fault.text);
        return client.play(outcome.fault, {}, 0, std::string(4096, 'x'));
    }

    std::string request;
    auto headEnd = request.npos;
    while (headEnd == request.npos && request.size() < mostOfRequest) {
        if (!client.receive(request, mostOfRequest, patience))
            break; // the service behind says what it thinks of half a head
        headEnd = request.find("\r\n\r\n");
    }
    if (request.empty())
        return;
    const auto size = headEnd == request.npos ? request.size() : wholeSize(request, headEnd + 4);
    const auto isWithin = [](const Outcome &outcome) { return outcome.fault.isWithinRequest(); };
    if (const auto call = callOf(request); !call.empty())
        if (const auto outcome = m_outcomes.takeIf(call, isWithin)) {
            const auto &fault = outcome->fault;
            m_count.addFault(call);
            m_played(call, fault.text);
            const auto until = std::min(fault.bytes.value_or(size / 2), size);
            while (request.size() < until
                && client.receive(request, until - request.size(), patience)) { }
            return client.play(fault, {}, 0, std::string(4096, 'x'));
        }
    while (request.size() < size && client.receive(request, mostOfRequest, patience)) { }

    const auto bytes = ask(client, headEnd == request.npos ? request : withoutPacking(request));
    if (bytes.empty())
        return;
    HttpMessage answer(bytes);
    const auto name = answer.take(faultHeader);
    auto fault = name.empty() ? Fault() : Fault::parse(name);
    answer.apply(fault);
    if (answer.isEndless()) {
        fault.effect = Fault::Effect::endless;
        fault.moment = Fault::Moment::after;
    }
    const auto head = answer.head();
    client.play(fault, head + answer.body(), head.size(), answer.filler());
}

}
