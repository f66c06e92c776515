#include "Client.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

namespace {
/// How a connection ended, or that it did not. Closed: our half went with the other.
using End = std::string_view;
constexpr End fin = "fin", closed = "closed", reset = "reset", quiet = "quiet", endless = "endless";

struct Row {
    const char *fault;
    End end;
    /// Of "<bytes>;<bytes of the body beyond those promised>;<the first bytes, ~ for NUL>".
    const char *seen;
};

/// Others show in calls of the kit, which fail of them.
const Row rows[] = {
    { "close@request+300", closed, "^0;" },
    { "reset@before", reset, "^0;" },
    { "half-close@before", fin, "^0;" },
    { "endless@head", endless, ";none;HTTP/1.1 200 [^]*xxx$" },
    { "drip@body+3", quiet, ";-[0-9]{3};[^]*\r\n\r\n.{4}$" }, // the first at once
    { "cut@body", fin, ";-[0-9]{3};" },
    { "close@after", closed, ";0;[^]*Connection: keep-alive\r\n" },
    { "stall@after", quiet, ";0;" },
    { "garbage@after+20", fin, ";20;" },
    { "redirect:308:http://a.example/b", fin, ";0;.* 308 [^]*\nLocation: http://a.example/b" },
    { "length:none", fin, ";none;[^]*\r\n\r\n\\{\"data[^]*\\}$" },
    { "chunks:endless", endless, ";none;[^]*chunked[^]*\\}\r\n1000\r\nxxx" },
    { "cookie", fin, ";0;[^]*\nSet-Cookie: " },
    { "body:700", fin, ";0;[^]*\r\n\r\nx{700}$" },
    { "flag:on", fin, ";0;[^]*X-TRZ-Encrypted: 1\r\n[^]*\\{\"meta" },
};

/// A right call as it goes over the wire.
std::string wireOf(const Sandbox &sandbox, const std::string &call, const std::string &parameters)
{
    const auto request = sandbox.request(call, parameters);
    auto wire = "POST " + request.path
        + " HTTP/1.1\r\nAccept-Encoding: gzip\r\nHost: 127.0.0.1\r\nContent-Length: "
        + std::to_string(request.body.size());
    for (const auto &[name, value] : request.headers)
        wire.append("\r\n").append(name).append(": ").append(value);
    return wire + "\r\n\r\n" + request.body;
}

/// \param sent whether all of \p request went out \return the connection, to be closed
int ask(int port, const std::string &request, bool *sent = nullptr)
{
    const auto socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address { AF_INET, htons(port), { htonl(INADDR_LOOPBACK) }, {} };
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        ADD_FAILURE() << "cannot connect";
    const auto count = ::send(socket, request.data(), request.size(), MSG_NOSIGNAL);
    if (sent)
        *sent = count >= 0;
    return socket;
}

/// Sends \p request and reads until the end, until nothing more comes, or far too much.
std::string seenBy(int port, const std::string &request, End &end)
{
    auto sent = false;
    const auto socket = ask(port, request, &sent);
    end = sent ? quiet : reset;
    std::string all;
    pollfd watched { socket, POLLIN, 0 };
    while (end == quiet && ::poll(&watched, 1, all.empty() ? 2000 : 500) == 1) {
        std::string bytes(65536, '\0');
        const auto count = ::recv(socket, bytes.data(), bytes.size(), 0);
        all += bytes.substr(0, std::max(count, 0L));
        if (count <= 0 || all.size() > 4000000)
            end = count < 0 ? reset : count == 0 ? fin : endless;
    }
    if (end == fin) { // a socket that is gone answers with a reset
        ::send(socket, "x", 1, MSG_NOSIGNAL);
        watched.events = 0;
        end = ::poll(&watched, 1, 300) == 1 ? closed : fin;
    }
    ::close(socket);
    std::smatch length;
    const auto body = all.find("\r\n\r\n") + 4;
    const auto head = all.substr(0, body);
    const auto isKnown = std::regex_search(head, length, std::regex("Content-Length: ([0-9]+)"));
    auto seen = std::to_string(all.size()) + ";"
        + (isKnown ? std::to_string(long(all.size() - body) - std::stol(length[1])) : "none") + ";"
        + all.substr(0, 1500);
    std::replace(seen.begin(), seen.end(), '\0', '~');
    return seen;
}
}

class SandboxFault : public testing::TestWithParam<Row> { };

TEST_P(SandboxFault, ShowsOnTheWire)
{
    Sandbox sandbox;
    const auto request = wireOf(sandbox, "start", R"({"app":"parlo"})");
    const auto seenAfter = [&](const json &outcomes, End &end) {
        EXPECT_EQ(sandbox.post("/sandbox/outcomes", outcomes)["status"], 200);
        return seenBy(sandbox.port(), request, end);
    };
    auto end = quiet;
    const auto seen =
        seenAfter({ { "start", { { { "fault", GetParam().fault } }, "success" } } }, end);
    EXPECT_TRUE(std::regex_search(seen, std::regex(GetParam().seen))) << seen;
    EXPECT_EQ(end, GetParam().end);
    sandbox.process().waitForOutput(std::string("fault ") + GetParam().fault);

    seenAfter({ { "connection", { { { "fault", "reset@accept" } } } } }, end);
    EXPECT_EQ(end, reset);
    EXPECT_TRUE(holds(seenBy(sandbox.port(), request, end), ";0;")) << "only once";
    EXPECT_EQ(sandbox.get("/sandbox/requests")["start"], json({ { "posts", 2 }, { "faults", 1 } }));
}

INSTANTIATE_TEST_SUITE_P(Language, SandboxFault, testing::ValuesIn(rows), [](const auto &row) {
    return std::regex_replace(row.param.fault, std::regex("[^a-z0-9]+"), "_");
});

// Another's calls come between. No answer is read: some have no end.
TEST(SandboxWeather, IsThatOfItsSeed)
{
    const auto weatherOf = [](const char *seed, const std::vector<std::string> &calls) {
        Sandbox sandbox(json::object(), { "--faults", seed });
        std::vector<std::string> faults;
        for (auto i = 0; i < 8; ++i)
            for (const auto &call : calls) {
                sandbox.process().takeOutput();
                const auto *own = call == "start" ? R"({"app":"parlo"})" : "{}";
                const auto socket = ask(sandbox.port(), wireOf(sandbox, call, own));
                auto said = sandbox.process().waitForOutput("fault ");
                ::close(socket);
                said.erase(0, said.find("fault "));
                if (call == "country")
                    faults.push_back(said.substr(0, said.find('\n')));
            }
        return faults;
    };
    const auto one = weatherOf("100:7", { "country" });
    EXPECT_EQ(weatherOf("100:7", { "start", "country" }), one);
    EXPECT_NE(weatherOf("100:8", { "country" }), one);
}

// For the first call for a country, seed 6 draws 0 of 100 and seed 172 draws 5.
TEST(SandboxWeather, SpoilsTheShareThatWasAskedForAndNoMore)
{
    const std::pair<const char *, int> rows[] = { { "0:6", 0 }, { "1:6", 1 }, { "5:172", 0 },
        { "6:172", 1 } };
    for (const auto &[weather, faults] : rows) {
        Sandbox sandbox(json::object(), { "--faults", weather });
        const auto socket = ask(sandbox.port(), wireOf(sandbox, "country", "{}"));
        sandbox.process().waitForOutput(faults != 0 ? "fault " : "accepted");
        ::close(socket);
        EXPECT_EQ(sandbox.get("/sandbox/requests")["country"],
            json({ { "posts", 1 }, { "faults", faults } }))
            << weather;
    }
}
