#include "sandbox/exec/Exec.h"

#include "sandbox/exec/Children.h"
#include "sandbox/exec/PrivateNetwork.h"
#include "sandbox/exec/Registration.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace sandbox {
namespace {
constexpr int notRun = 126; // as shells say it
constexpr int notFound = 127;

void say(const std::string &words) { std::cerr << "parloquin-sandbox: " << words << std::endl; }

/// Passes on what the sandbox says, and finds the address in it.
class Relay {
public:
    Relay()
    {
        if (pipe2(m_pipe.data(), O_CLOEXEC) != 0)
            throw std::runtime_error(std::string("pipe: ") + std::strerror(errno));
    }
    ~Relay()
    {
        closeInput();
        close(m_pipe[0]);
    }
    Relay(const Relay &) = delete;
    Relay &operator=(const Relay &) = delete;

    int output() const { return m_pipe[0]; }
    int input() const { return m_pipe[1]; }
    void closeInput() { close(std::exchange(m_pipe[1], -1)); }

    void pass()
    {
        std::array<char, 65536> bytes {};
        const auto count = read(m_pipe[0], bytes.data(), bytes.size());
        if (count <= 0)
            return;
        std::cout.write(bytes.data(), count).flush();
        if (address().empty())
            m_start.append(bytes.data(), static_cast<std::size_t>(count));
    }

    /// Where the service listens; empty while it has not said so.
    std::string address() const
    {
        constexpr std::string_view words = " listens at ";
        const auto at = m_start.find(words);
        const auto end = m_start.find('\n', at);
        if (at == std::string::npos || end == std::string::npos)
            return {};
        return m_start.substr(at + words.size(), end - at - words.size());
    }

private:
    std::array<int, 2> m_pipe { -1, -1 };
    std::string m_start;
};

void provideRoute()
{
    if (hasDefaultRoute())
        return;
    const auto fault = enterPrivateNetwork();
    if (fault.empty())
        return say("no default route here: running in a private network");
    // Heard by a host whose kit is built for the loopback, as all are that find this sandbox.
    say("no default route here, nor a private network (" + fault + "): the host is told that there "
        + "is a route");
    setenv("PARLOQUIN_ROUTE", "default", 1);
}

/// What the kit keeps from the person it says to the developer.
void turnOnWords()
{
    const auto *const rules = std::getenv("QT_LOGGING_RULES");
    setenv("QT_LOGGING_RULES",
        ("parloquin*=true;" + std::string(rules != nullptr ? rules : "")).c_str(), 1);
}
}

int exec(const std::vector<std::string> &options, const std::vector<std::string> &command)
{
    if (command.empty()) {
        say("exec: expected a command to run\nTry parloquin-sandbox --help.");
        return 2;
    }
    provideRoute(); // before there is any other process
    Relay relay;
    Children children;

    Children::Start service { { "/proc/self/exe" }, relay.input() };
    service.words.insert(service.words.end(), options.begin(), options.end());
    const auto sandbox = children.start(service);
    relay.closeInput();
    const auto hear = [&relay] { relay.pass(); };
    const int ended =
        children.wait(sandbox, relay.output(), hear, [&relay] { return !relay.address().empty(); });
    if (ended >= 0)
        return ended; // and has said why

    const Registration registration(relay.address());
    if (const auto complaint = registration.complaint(); !complaint.empty())
        say(complaint);
    setenv("PARLOQUIN_SERVICE_HOST", relay.address().c_str(), 1);
    turnOnWords();

    const auto host = children.start({ command, -1, true });
    if (host < 0) {
        say(command.front() + ": " + std::strerror(-host));
        return host == -ENOENT ? notFound : notRun;
    }
    const int status = children.wait(host, relay.output(), hear);
    children.endAll();
    relay.pass(); // its last words
    return status;
}

}
