// All that the sandbox answers, says and notes while the steps of Transcript.txt are played, word
// for word: what no other test thought of shows here. A step is a line that begins with "$ ", a
// comment one that begins with "# "; what follows a step was approved.
// clang-format off
//   { "start": {}, "options": [] }          from now on this sandbox, of this scenario
//   { "run": ["--help"], "file": "text" }   a program to its end; FILE stands for that file, PORT for one taken
//   { "call": "init", "with": {} }          right but for "headers", "body", "key", "signed" and so on;
//       "signs": "STAMP-PLAIN" (or DATA, BODY), "by" another key
//   { "get": "/", "headers": {} }, { "post": "/", "body": {} }  at the page, or with "service": true
//   { "raw": "GET / ..." }                  with ~XX for a byte
//   { "interrupt": 2, "call": "start" }     Ctrl-C while so many such calls wait
// With any request: "stalls", "unread", "said": until that is said; "probed": also whether the other
// side is gone; "at": another address than 127.0.0.1; "lasts": at least so many milliseconds,
// "within": at most.
// clang-format on
#include "Account.h"
#include "sandbox/service/Cipher.h"
#include "tests/support/Steps.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <iomanip>

namespace {

class Player {
public:
    /// \return what came of it, a line each
    std::string play(const std::string &step)
    try {
        m_step = json::parse(m_account.withValues(step));
        if (m_step.contains("start"))
            start();
        else if (m_step.contains("run"))
            run();
        else if (m_step.contains("interrupt"))
            interrupt();
        else
            ask();
        return m_account.take();
    } catch (const std::exception &error) {
        return m_account.take() + error.what() + '\n';
    }

private:
    struct Wire {
        int port;
        std::string bytes;
    };

    void start()
    {
        m_sandbox.emplace(m_step["start"], m_step.value("options", std::vector<std::string>()));
        m_sandbox->process().waitForOutput(m_step.value("said", ""));
        m_account = {};
        // With the colon before it: five digits alone may be part of an id.
        m_account.mean(":" + std::to_string(m_sandbox->port()), ":(port)");
        m_account.mean(":" + std::to_string(m_sandbox->pagePort()), ":(page's port)");
        m_account.mean(
            "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e", "(secret)");
        m_account.lines(m_sandbox->process().takeOutput());
    }

    void run()
    {
        const TemporaryFile file(m_step.value("file", ""));
        m_account.mean(file.path(), "FILE");
        const auto port = m_sandbox ? std::to_string(m_sandbox->port()) : "";
        m_account.mean(port, "PORT");
        m_account.mean(SANDBOX_VERSION, "VERSION");
        auto words = m_step["run"].get<std::vector<std::string>>();
        for (auto &word : words) {
            replaceEach(word, "FILE", file.path());
            replaceEach(word, "PORT", port);
        }
        words.insert(words.begin(),
            m_step.value("program", "") == "messenger" ? MESSENGER_PROGRAM : SANDBOX_PROGRAM);
        Process program(words);
        const auto code = program.waitForEnd();
        m_account.line("ends with " + std::to_string(code.value_or(-1)));
        // What Qt says of the session that a machine gives it differs.
        m_account.lines(rewritten(
            program.output(), "QStandardPaths: [^\n]*\n", [](const auto &) { return ""; }));
        for (const auto *name : { "FILE", "PORT", "VERSION" })
            m_account.forget(name);
    }

    void interrupt()
    {
        const auto asked = wire();
        std::vector<std::future<std::string>> answers;
        for (auto i = 0; i < m_step["interrupt"]; ++i)
            answers.push_back(std::async(std::launch::async, [&] { return exchange(asked); }));
        auto after = m_account.revision();
        for (std::size_t waiting = 0; waiting < answers.size();) {
            auto page = m_sandbox->get(
                "/sandbox/journal?wait=20&verdict=waiting&after=" + std::to_string(after));
            waiting += page["exchanges"].size();
            for (const auto &each : page["exchanges"])
                m_account.line("= " + each["verdict"].dump() + " " + each["reason"].dump());
            after = page["revision"];
            if (page["exchanges"].empty())
                break;
        }
        m_sandbox->process().signal(SIGINT);
        const auto code = m_sandbox->process().waitForEnd(std::chrono::seconds(20));
        m_account.line("ends with " + std::to_string(code.value_or(-1)));
        for (auto &each : answers)
            each.wait(); // what they get depends on who ends first
        m_account.lines(m_sandbox->process().takeOutput());
    }

    void ask()
    {
        const auto begun = std::chrono::steady_clock::now();
        m_account.answered(exchange(wire()), m_step.value("get", ""));
        if (std::chrono::steady_clock::now() - begun
            > std::chrono::milliseconds(m_step.value("within", 60000)))
            m_account.line("only after a while");
        const auto said = m_sandbox->process().takeOutput();
        m_account.lines(said);
        if (!m_step.contains("unread")) // else nobody knows how far it came
            m_account.noted(*m_sandbox, said);
    }

    Wire wire()
    {
        for (const auto *sent : { "(signature)", "(right signature)", "(data)", "(time stamp)",
                 "(time stamp, signed)" })
            m_account.forget(sent);
        m_plain.clear();
        m_account.asked(json::object());
        const auto page = !m_step.value("service", false);
        if (m_step.contains("raw"))
            return { page ? m_sandbox->pagePort() : m_sandbox->port(),
                rewritten(m_step["raw"].get<std::string>(), "~([0-9a-f]{2})",
                    [](const std::smatch &match) {
                        return std::string(1, char(std::stoi(match[1], nullptr, 16)));
                    }) };
        Request request;
        if (m_step.contains("call")) {
            request = rightCall();
        } else {
            request.method = m_step.contains("get") ? "GET" : "POST";
            request.path = m_step.value("get", m_step.value("post", ""));
        }
        if (m_step.contains("check")) {
            const json keys { { "client", "c" }, { "secret", std::string(64, '8') } };
            request.path = "/sandbox/scenario/check";
            auto scenario = m_step["check"];
            if (scenario.is_object())
                scenario.emplace("keys", keys);
            request.body = scenario.is_string() ? scenario.get<std::string>() : scenario.dump();
        }
        request.method = m_step.value("method", request.method);
        request.path = m_step.value("path", request.path);
        if (m_step.contains("body"))
            request.body = m_step["body"].is_string() ? m_step["body"].get<std::string>()
                                                      : m_step["body"].dump();
        if (m_step.contains("bytes"))
            request.body = std::string(m_step["bytes"].get<std::size_t>(), 'x');
        const auto port =
            m_step.contains("call") || !page ? m_sandbox->port() : m_sandbox->pagePort();
        request.set("Host", "127.0.0.1:" + std::to_string(port));
        if (request.method != "GET")
            request.set("Content-Length", std::to_string(request.body.size()));
        const auto changes = m_step.value("headers", json::object());
        for (const auto &[name, value] : changes.items()) {
            request.headers.erase(name);
            for (const auto &each : value.is_array() ? value : json::array({ value }))
                if (!each.is_null())
                    request.headers.emplace(name, each.get<std::string>());
        }
        auto bytes = request.method + " " + request.path + " HTTP/1.1\r\n";
        auto headers = json::array();
        for (const auto &[name, value] : request.headers) {
            const auto line = std::string(name).append(": ").append(value);
            bytes += line + "\r\n";
            if (!value.empty()) // see Account
                headers.push_back(line);
        }
        std::sort(headers.begin(), headers.end());
        m_account.asked({ { "method", request.method }, { "target", request.path },
            { "body", request.body }, { "headers", headers }, { "plainText", m_plain },
            { "lasts", m_step.value("lasts", 0.001) } });
        return { port, bytes + "\r\n" + request.body };
    }

    Request rightCall()
    {
        const auto with = m_step.value("with", json::object());
        const auto plain = with.is_string() ? with.get<std::string>() : canonical(with);
        m_plain = plain;
        auto request = m_sandbox->request(m_step["call"], plain);
        const auto as = m_step.value("as", "");
        auto stamp = m_step.value("stamp", timeStampOf(m_step.value("ahead", 0)));
        while (as == "url" && signature(stamp, plain).find_first_of("+/") == std::string::npos)
            stamp = std::to_string(std::stoll(stamp) - 1000); // until URLs write it otherwise
        const auto signedStamp = stamp.substr(0, stamp.size() - (as == "seconds" ? 3 : 0));
        const auto data = encrypted(plain, m_step.contains("key") ? std::string(32, 'k') : secret);
        request.body = json { { "data", data } }.dump();
        auto sign = signature(signedStamp, m_step.value("signed", plain));
        if (m_step.contains("signs")) {
            auto text = m_step["signs"].get<std::string>();
            for (const auto &[mark, value] : { std::pair("STAMP", stamp), { "PLAIN", plain },
                     { "DATA", data }, { "BODY", request.body } })
                replaceEach(text, mark, value);
            const auto by = m_step.value("by", "");
            sign = signatureOf(text, by == "bytes of the secret" ? secret : by);
        }
        if (as == "hex" || as == "HEX" || as == "Base64 of hex") {
            std::ostringstream digits;
            const auto bytes = *sandbox::fromBase64(sign);
            for (const unsigned char c : bytes)
                digits << (as == "HEX" ? std::uppercase : std::nouppercase) << std::hex
                       << std::setw(2) << std::setfill('0') << int(c);
            sign = as.size() == 3 ? digits.str() : sandbox::toBase64(digits.str());
        } else if (as == "unpadded") {
            sign.pop_back();
        } else if (as == "url") {
            std::replace(sign.begin(), sign.end(), '+', '-');
            std::replace(sign.begin(), sign.end(), '/', '_');
        }
        request.set("X-TRZ-Req-Timestamp", stamp);
        request.set("X-TRZ-Req-Signature", sign);
        request.set("X-TRZ-Lang", m_step.value("language", "en"));
        m_account.mean(stamp, "(time stamp)");
        m_account.mean(signedStamp, "(time stamp, signed)"); // behind that in the order of names
        m_account.mean(sign, "(signature)");
        m_account.mean(signature(stamp, plain), "(right signature)");
        m_account.mean(data, "(data)");
        return request;
    }

    /// \return all that came, and how it ended unless in order
    std::string exchange(const Wire &wire)
    {
        constexpr std::size_t most = 100000;
        const auto socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_in address { AF_INET, htons(static_cast<std::uint16_t>(wire.port)),
            { inet_addr(m_step.value("at", "127.0.0.1").c_str()) }, {} };
        if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            return "(nobody listens)";
        auto isReset = ::send(socket, wire.bytes.data(), wire.bytes.size(), MSG_NOSIGNAL) < 0;
        if (m_step.value("half", false))
            ::shutdown(socket, SHUT_WR);
        if (m_step.contains("unread")) {
            m_sandbox->process().waitForOutput(m_step["unread"]);
            ::close(socket);
            return "(unread)";
        }
        // Where nothing ends it, it is over once the sandbox has said so and nothing more comes.
        const auto stalls = m_step.contains("stalls");
        if (const auto said = m_step.value("said", m_step.value("stalls", "")); !said.empty())
            m_sandbox->process().waitForOutput(said);
        std::string all;
        pollfd watched { socket, POLLIN, 0 };
        auto isOver = isReset;
        while (!isOver && all.size() < most && ::poll(&watched, 1, stalls ? 300 : 30000) == 1) {
            std::string bytes(65536, '\0');
            const auto count = ::recv(socket, bytes.data(), bytes.size(), 0);
            all += bytes.substr(0, std::max(count, 0L));
            isReset = count < 0;
            isOver = count <= 0;
        }
        auto isGone = false;
        if (m_step.value("probed", false) && isOver && !isReset) {
            ::send(socket, "x", 1, MSG_NOSIGNAL); // which one that is gone answers with a reset
            watched.events = 0;
            isGone = ::poll(&watched, 1, 300) == 1;
        }
        ::close(socket);
        all.resize(std::min(all.size(), most));
        return all + (isReset ? "(reset)" : isGone ? "(gone)" : isOver ? "" : "(goes on)");
    }

    std::optional<Sandbox> m_sandbox;
    Account m_account;
    json m_step;
    std::string m_plain; ///< parameters of the request
};

}

TEST(SandboxTranscript, IsAsApproved)
{
    const std::string path = SANDBOX_SOURCE "/tests/Sandbox/Transcript.txt";
    auto steps = transcript::read(path);
    // The steps of one start beside those of the others: all wait more than they work. Of those
    // that follow one that differs nothing would be learnt, but that each waits in vain.
    const auto isMeant = std::getenv("TRANSCRIPT") != nullptr;
    std::vector<std::future<void>> played;
    for (auto from = steps.begin(); from != steps.end();) {
        const auto to = std::find_if(std::next(from), steps.end(),
            [](const auto &step) { return step.head.starts_with("$ {\"start\":"); });
        played.push_back(std::async(std::launch::async, [from, to, isMeant] {
            Player player;
            for (auto step = from; step != to; ++step)
                if (const auto approved = step->text; step->head.starts_with("$ "))
                    if (step->text = player.play(step->head.substr(2));
                        step->text != approved && !isMeant)
                        return;
        }));
        from = to;
    }
    for (auto &each : played)
        each.get();
    transcript::takeIfMeant(steps, path);
    transcript::expectApproved(steps, path);
}
