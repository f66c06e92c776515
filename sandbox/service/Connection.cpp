#include "sandbox/service/Connection.h"

#include "sandbox/service/CallForm.h"

#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <thread>

namespace sandbox {
namespace {
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t bufferSize = 65536;
constexpr std::size_t unboundedGarbage = 4096; // bytes, where no answer says how many
constexpr milliseconds lingering { 2000 };
constexpr milliseconds day { 24 * 60 * 60 * 1000 };

/// Printable bytes and NUL, the same each time.
std::string garbage(std::size_t size)
{
    std::mt19937 random(1); // NOLINT(bugprone-random-generator-seed): the same each time
    std::string bytes(size, '\0');
    for (auto &byte : bytes) {
        const auto drawn = random() % 96;
        byte = static_cast<char>(drawn == 95 ? 0 : ' ' + drawn);
    }
    return bytes;
}

/// How much of an answer goes out before the fault shows.
std::size_t untouchedBytes(const Fault &fault, std::size_t headSize, std::size_t wholeSize)
{
    const auto within = [&fault](std::size_t size) {
        return std::min(fault.bytes.value_or(size / 2), size);
    };
    switch (fault.moment) {
    case Fault::Moment::head:
        return within(headSize);
    case Fault::Moment::body:
        return headSize + within(wholeSize - headSize);
    case Fault::Moment::after:
        return wholeSize;
    default:
        return 0;
    }
}
}

Connection::Connection(int socket, int stopped, RequestCount &count)
    : m_socket(socket)
    , m_stopped(stopped)
    , m_count(count)
{
}

Connection::~Connection() { close(); }

Connection::Ready Connection::waitFor(short events, milliseconds patience) const
{
    const auto end = steady_clock::now() + patience;
    while (true) {
        const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now()).count();
        pollfd watched[] = { { m_stopped, POLLIN, 0 }, { m_socket, events, 0 } };
        const auto ready = ::poll(watched, 2, static_cast<int>(std::max<long long>(left, 0)));
        if (watched[0].revents != 0)
            return Ready::stopped;
        if (ready > 0)
            return Ready::yes;
        if (left <= 0)
            return Ready::late;
    }
}

bool Connection::receive(std::string &bytes, std::size_t most, milliseconds patience)
{
    if (waitFor(POLLIN, patience) != Ready::yes)
        return false;
    char buffer[bufferSize];
    const auto count = ::recv(m_socket, buffer, std::min(most, sizeof buffer), 0);
    if (count <= 0)
        return false;
    const std::string_view received(buffer, static_cast<std::size_t>(count));
    countLines(received);
    bytes += received;
    return true;
}

void Connection::countLines(std::string_view bytes)
{
    constexpr std::string_view post = "POST /v1.0/";
    constexpr std::size_t longest = 512;
    while (!bytes.empty()) {
        const auto end = std::min(bytes.find('\n'), bytes.size());
        m_line += bytes.substr(end - std::min(end, longest), std::min(end, longest));
        m_line.erase(0, m_line.size() - std::min(m_line.size(), longest));
        if (end == bytes.size())
            return;
        bytes.remove_prefix(end + 1);
        // Not only at its start: a second request follows the body of the first on its line.
        const auto at = m_line.find(post);
        const auto call = at == m_line.npos
            ? std::string()
            : m_line.substr(
                at + post.size(), m_line.find(' ', at + post.size()) - at - post.size());
        if (isCall(call))
            m_count.addPost(call);
        m_line.clear();
    }
}

bool Connection::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count =
            ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EAGAIN || waitFor(POLLOUT, day) != Ready::yes)
            return false;
    }
    return true;
}

bool Connection::dropFor(milliseconds duration)
{
    const auto end = steady_clock::now() + duration;
    while (true) {
        const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
        const auto ready = waitFor(POLLIN, std::max(left, milliseconds(0)));
        if (ready != Ready::yes)
            return ready == Ready::late;
        std::string dropped;
        if (!receive(dropped, bufferSize, milliseconds(0)))
            return false;
    }
}

void Connection::close()
{
    if (m_socket < 0)
        return;
    // With bytes left to read the system would send a reset in place of an orderly end.
    std::string dropped;
    while (receive(dropped, bufferSize, milliseconds(0)))
        dropped.clear();
    ::close(std::exchange(m_socket, -1));
}

void Connection::reset()
{
    // What was sent shall arrive: a reset drops what still waits here.
    for (int unsent = 1, tries = 0; unsent > 0 && tries < 1000; ++tries)
        if (::ioctl(m_socket, SIOCOUTQ, &unsent) != 0 || unsent == 0
            || waitFor(0, milliseconds(1)) != Ready::late)
            break;
    const linger atOnce { 1, 0 };
    ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    ::close(std::exchange(m_socket, -1));
}

void Connection::end()
{
    ::shutdown(m_socket, SHUT_WR);
    dropFor(lingering);
}

void Connection::dropUntilGone()
{
    while (dropFor(day)) { }
}

void Connection::play(
    const Fault &fault, std::string_view whole, std::size_t headSize, const std::string &filler)
{
    using Effect = Fault::Effect;
    const auto untouched =
        fault.effect == Effect::none ? whole.size() : untouchedBytes(fault, headSize, whole.size());
    if (!send(whole.substr(0, untouched)))
        return;
    const auto rest = whole.substr(untouched);
    const auto isWithinAnswer =
        fault.moment == Fault::Moment::head || fault.moment == Fault::Moment::body;
    switch (fault.effect) {
    case Effect::none:
    case Effect::cut:
        return end();
    case Effect::close:
        return close();
    case Effect::reset:
        return reset();
    case Effect::halfClose:
        ::shutdown(m_socket, SHUT_WR);
        return dropUntilGone();
    case Effect::stall:
        return dropUntilGone();
    case Effect::drip:
        for (const auto &byte : rest)
            if (!send({ &byte, 1 }) || !dropFor(std::chrono::seconds(1)))
                return;
        return end();
    case Effect::garbage:
        if (send(garbage(isWithinAnswer ? rest.size() : fault.bytes.value_or(unboundedGarbage))))
            end();
        return;
    case Effect::endless:
        while (send(filler)) { }
        return;
    }
}

}
