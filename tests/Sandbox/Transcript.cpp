// All that the sandbox answers, says and notes while the steps of Transcript.txt are played, word
// for word: what no other test thought of shows here. A step is a line that begins with "$ ", a
// comment one that begins with "#"; what follows a step was approved.
//   { "start": {}, "options": [] }         from now on this sandbox, of this scenario
//   { "run": ["--help"], "file": "text" }  the program to its end; FILE stands for that file
//   { "call": "init", "with": {} }         right but for "headers", "body", "key", "signed" and so
//   on { "get": "/", "headers": {} }, { "post": "/", "body": {} }  at the page, or with "service":
//   true { "raw": "GET / ..." }                 with ~XX for a byte { "interrupt": 2, "call":
//   "start" }    Ctrl-C while so many such calls wait
#include "Client.h"
#include "sandbox/service/Cipher.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <iomanip>
#include <set>
#include <sstream>

namespace {
void replaceEach(std::string &text, const std::string &from, const std::string &to)
{
    for (auto at = text.find(from); at != text.npos && !from.empty();
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

/// \p text with each match of \p pattern in place of which \p as says
template <typename As>
std::string rewritten(const std::string &text, const std::string &pattern, const As &as)
{
    std::string result;
    auto rest = text.begin();
    static std::map<std::string, std::regex> known;
    const auto &regex = known.try_emplace(pattern, pattern).first->second;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
        result.append(rest, text.begin() + match->position()).append(as(*match));
        rest = text.begin() + match->position() + match->length();
    }
    return result.append(rest, text.end());
}

/// One line, whatever the bytes.
std::string visible(const std::string &text)
{
    const auto isUtf8 = json::accept(json(text).dump(-1, ' ', false, json::error_handler_t::ignore))
        && json(text).dump(-1, ' ', false, json::error_handler_t::replace).find("\xef\xbf\xbd")
            == std::string::npos;
    std::ostringstream line;
    for (const unsigned char c : text)
        if (c < 0x20 || c == 0x7f || (c >= 0x80 && !isUtf8))
            line << "~" << std::hex << std::setw(2) << std::setfill('0') << int(c);
        else
            line << char(c);
    return line.str();
}

/// Of what is long the beginning, and what any other change shows in.
std::string shortened(const std::string &text)
{
    constexpr std::size_t most = 1000;
    constexpr std::size_t kept = 300;
    if (text.size() <= most)
        return text;
    return text.substr(0, kept) + " ... " + std::to_string(text.size()) + " bytes, digest "
        + sandbox::toBase64(sandbox::hmacSha256(text, "digest")).substr(0, 12);
}

/// "now", or in how many whole minutes: so long a test may take.
std::string distanceOf(const std::string &time)
{
    std::tm parts {};
    ::strptime(time.c_str(), "%Y-%m-%dT%H:%M:%S", &parts);
    const auto ahead = ::timegm(&parts) - std::time(nullptr);
    const auto minutes = (ahead + (ahead > 0 ? 55 : 0)) / 60;
    return minutes == 0 ? "(now)" : "(in " + std::to_string(minutes) + " min)";
}

/// What cannot be read, as long cipher text: only its length is told.
std::string withoutLongWords(const std::string &text)
{
    constexpr std::size_t longest = 100;
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const auto isPart = [](unsigned char c) {
            return std::isalnum(c) != 0 || c == '+' || c == '/';
        };
        const auto end = std::find_if_not(text.begin() + static_cast<long>(at), text.end(), isPart);
        const auto size = static_cast<std::size_t>(end - text.begin()) - at;
        result += size > longest ? "(" + std::to_string(size) + " letters)" : text.substr(at, size);
        at += size;
        if (at < text.size())
            result += text[at++];
    }
    return result;
}

class Player {
public:
    /// \return what came of it, a line each
    std::string play(std::string text)
    {
        for (const auto &[name, value] : m_meant)
            replaceEach(text, name, value);
        text = rewritten(text, "\\(([0-9]+) letters\\)",
            [](const auto &match) { return std::string(std::stoul(match[1]), 'p'); });
        m_step = json::parse(text);
        m_lines.clear();
        if (m_step.contains("start"))
            start();
        else if (m_step.contains("run"))
            run();
        else if (m_step.contains("interrupt"))
            interrupt();
        else
            tellAnswer(exchange(wire()));
        return m_lines;
    }

private:
    struct Wire {
        int port;
        std::string bytes;
    };

    void line(const std::string &text) { m_lines += shortened(visible(masked(text))) + '\n'; }

    void lines(const std::string &text)
    {
        std::istringstream all(text);
        for (std::string each; std::getline(all, each);)
            line(each);
    }

    void mean(const std::string &value, const std::string &name) { m_meant[name] = value; }

    /// What differs from run to run by a name: the same name where it is the same.
    std::string masked(std::string text)
    {
        text = rewritten(withoutLongWords(text), "\"durationMs\":[0-9.e-]+",
            [](const auto &) { return "\"durationMs\":0"; });
        for (const auto &[name, value] : m_meant)
            if (!name.starts_with("(id ") && !name.starts_with("(code "))
                replaceEach(text, value, name);
        const auto numbered = [this](const char *series) {
            return [this, series](const std::smatch &match) {
                const auto count = m_told[series].size() + 1;
                const auto number = m_told[series].emplace(match[1], count).first->second;
                const auto name = std::string("(") + series + " " + std::to_string(number) + ")";
                mean(match[1], name);
                return std::string(match[0]).replace(
                    match.position(1) - match.position(0), match.length(1), name);
            };
        };
        const std::string uuid =
            "([0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12})";
        text = rewritten(text, "\"requestId\":\"" + uuid, [this](const std::smatch &match) {
            return std::string("\"requestId\":\"")
                + (m_told["request"].emplace(match[1], 0).second ? "(new)" : "(old)");
        });
        text = rewritten(text, uuid, numbered("id"));
        text = rewritten(
            text, "(?:%20|\\b)([2-9A-HJ-NP-Z]{4}-[2-9A-HJ-NP-Z]{4})\\b", numbered("code"));
        text = rewritten(text, "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}([.][0-9]{3})?Z",
            [](const std::smatch &match) {
                return distanceOf(match[0]) + (match[1].matched ? ".ms" : "");
            });
        text = rewritten(text, "([0-9]{3,}) seconds (old|ahead)", [](const std::smatch &match) {
            const auto hundreds = std::string(match[1]).substr(0, match.length(1) - 2) + "..";
            return (match.length(1) > 6 ? "(years of)" : "(" + hundreds + ")") + " seconds "
                + match[2].str();
        });
        return rewritten(text, "^[0-9:]{8}  ", [](const auto &) { return "- "; });
    }

    void start()
    {
        m_sandbox.emplace(m_step["start"], m_step.value("options", std::vector<std::string>()));
        m_revision = 0;
        m_told.clear();
        m_meant.clear();
        // With the colon before it: five digits alone may be part of an id.
        mean(":" + std::to_string(m_sandbox->port()), ":(port)");
        mean(":" + std::to_string(m_sandbox->pagePort()), ":(page's port)");
        mean("8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e", "(secret)");
        lines(m_sandbox->process().takeOutput());
    }

    void run()
    {
        const TemporaryFile file(m_step.value("file", ""));
        mean(file.path(), "FILE");
        auto words = m_step["run"].get<std::vector<std::string>>();
        for (auto &word : words)
            replaceEach(word, "FILE", file.path());
        words.insert(words.begin(), SANDBOX_PROGRAM);
        Process program(words);
        const auto code = program.waitForEnd();
        line("ends with " + std::to_string(code.value_or(-1)));
        lines(program.output());
        m_meant.erase("FILE");
    }

    void interrupt()
    {
        const auto asked = wire();
        std::vector<std::future<std::string>> answers;
        for (auto i = 0; i < m_step["interrupt"]; ++i)
            answers.push_back(std::async(std::launch::async, [&] { return exchange(asked); }));
        auto after = m_revision;
        for (std::size_t waiting = 0; waiting < answers.size();) {
            const auto page = m_sandbox->get(
                "/sandbox/journal?wait=20&verdict=waiting&after=" + std::to_string(after));
            waiting += page["exchanges"].size();
            after = page["revision"];
            if (page["exchanges"].empty())
                break;
        }
        m_sandbox->process().signal(SIGINT);
        const auto code = m_sandbox->process().waitForEnd(std::chrono::seconds(20));
        line("ends with " + std::to_string(code.value_or(-1)));
        for (auto &each : answers)
            each.wait(); // what they get depends on who ends first
        lines(m_sandbox->process().takeOutput());
    }

    Wire wire()
    {
        for (const auto *sent : { "(signature)", "(right signature)", "(data)", "(time stamp)",
                 "(time stamp, signed)" })
            m_meant.erase(sent);
        m_plain.clear();
        m_sent = json::object();
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
            headers.push_back(std::string(name).append(": ").append(value));
            bytes += headers.back().get<std::string>() + "\r\n";
        }
        std::sort(headers.begin(), headers.end());
        m_sent = { { "method", request.method }, { "target", request.path },
            { "body", request.body }, { "headers", headers }, { "plainText", m_plain } };
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
        auto sign = signature(signedStamp, m_step.value("signed", plain));
        if (as == "hex" || as == "HEX") {
            std::ostringstream digits;
            const auto bytes = *sandbox::fromBase64(sign);
            for (const unsigned char c : bytes)
                digits << (as == "HEX" ? std::uppercase : std::nouppercase) << std::hex
                       << std::setw(2) << std::setfill('0') << int(c);
            sign = digits.str();
        } else if (as == "unpadded") {
            sign.pop_back();
        } else if (as == "url") {
            std::replace(sign.begin(), sign.end(), '+', '-');
            std::replace(sign.begin(), sign.end(), '/', '_');
        }
        const auto data = encrypted(plain, m_step.contains("key") ? std::string(32, 'k') : secret);
        request.set("X-TRZ-Req-Timestamp", stamp);
        request.set("X-TRZ-Req-Signature", sign);
        request.set("X-TRZ-Lang", m_step.value("language", "en"));
        request.body = json { { "data", data } }.dump();
        mean(stamp, "(time stamp)");
        mean(signedStamp, "(time stamp, signed)"); // behind that in the order of names
        mean(sign, "(signature)");
        mean(signature(stamp, plain), "(right signature)");
        mean(data, "(data)");
        return request;
    }

    /// \return all that came, and how it ended unless in order
    std::string exchange(const Wire &wire)
    {
        constexpr std::size_t most = 100000;
        const auto socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_in address { AF_INET, htons(static_cast<std::uint16_t>(wire.port)),
            { htonl(INADDR_LOOPBACK) }, {} };
        EXPECT_EQ(
            ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        auto isReset = ::send(socket, wire.bytes.data(), wire.bytes.size(), MSG_NOSIGNAL) < 0;
        if (m_step.value("half", false))
            ::shutdown(socket, SHUT_WR);
        // Where nothing ends it, it is over once the sandbox has said so and nothing more comes.
        const std::string stalls = m_step.value("stalls", "");
        if (!stalls.empty())
            m_sandbox->process().waitForOutput(stalls);
        std::string all;
        pollfd watched { socket, POLLIN, 0 };
        auto isOver = isReset;
        while (!isOver && all.size() < most
            && ::poll(&watched, 1, stalls.empty() ? 30000 : 300) == 1) {
            std::string bytes(65536, '\0');
            const auto count = ::recv(socket, bytes.data(), bytes.size(), 0);
            all += bytes.substr(0, std::max(count, 0L));
            isReset = count < 0;
            isOver = count <= 0;
        }
        ::close(socket);
        all.resize(std::min(all.size(), most));
        return all + (isReset ? "(reset)" : isOver ? "" : "(goes on)");
    }

    void tellAnswer(const std::string &bytes)
    {
        const auto headEnd = std::min(bytes.find("\r\n\r\n"), bytes.size());
        auto head = bytes.substr(0, headEnd);
        auto body = bytes.substr(std::min(bytes.size(), headEnd + 4));
        const auto outer = json::parse(body, nullptr, false);
        m_isEncrypted = outer.is_object() && outer.contains("data");
        const auto length = body.size();
        if (const auto plain = m_isEncrypted ? decrypted(outer["data"], secret) : "";
            json::accept(plain) || plain.find("result") != plain.npos)
            body = plain;
        m_answer = json::parse(body, nullptr, false);
        const auto target = m_step.value("get", "");
        for (const std::string folder : { "sandbox/page/", "sandbox/icons/" }) {
            const auto name =
                folder + (target == "/" ? "index.html" : target.substr(target.rfind('/') + 1));
            const auto path = std::string(SANDBOX_SOURCE) + "/" + name;
            if (!std::filesystem::is_regular_file(path))
                continue;
            std::ifstream file(path);
            const std::string content(std::istreambuf_iterator<char>(file), {});
            if (!content.empty() && content == body)
                body = "(" + name + ")";
        }
        // Their order is the library's; the length is told where it is another.
        replaceEach(head, "\r\nContent-Length: " + std::to_string(length), "");
        std::istringstream all(head);
        std::string start;
        std::getline(all, start, '\r');
        std::multiset<std::string> headers;
        for (std::string each; std::getline(all.ignore(), each, '\r');)
            headers.insert(each);
        line(start.empty() ? "< nothing"
                           : "< " + std::regex_replace(start, std::regex("^HTTP/1.1 "), "") + " "
                    + once("headers", testing::PrintToString(headers)));
        if (!body.empty())
            line("< "
                + (body.size() > 250 ? once("answer", shortened(visible(masked(body)))) : body));
        const auto said = m_sandbox->process().takeOutput();
        lines(said);
        tellJournal(said);
    }

    /// What comes again and again is told once, then by a digest.
    std::string once(const char *series, const std::string &text)
    {
        const auto digest = sandbox::toBase64(sandbox::hmacSha256(text, "once")).substr(0, 5);
        const auto isNew = m_told[series].emplace(digest, 0).second;
        return std::string("(") + series + " " + digest + ")" + (isNew ? " " + text : "");
    }

    /// Of an entry what could not be known from the request, the answer and the console.
    void tellJournal(const std::string &said)
    {
        const auto page = m_sandbox->get(
            "/sandbox/journal?view=list&limit=50&after=" + std::to_string(m_revision));
        if (page["status"] != 200)
            return line("it no longer answers");
        m_revision = page["revision"];
        for (const auto &each : page["exchanges"]) {
            auto entry = m_sandbox->get("/sandbox/journal/" + each["id"].dump());
            auto text = "= " + each["call"].get<std::string>() + " "
                + each["verdict"].get<std::string>() + " " + each["status"].dump();
            std::string curl = entry["curl"];
            auto request = entry["request"];
            auto headers = json::array();
            for (const auto &header : request["headers"]) {
                headers.push_back(
                    header["name"].get<std::string>() + ": " + header["value"].get<std::string>());
                replaceEach(curl, " -H '" + headers.back().get<std::string>() + "'", "");
            }
            std::sort(headers.begin(), headers.end());
            request["headers"] = headers;
            entry["content"] = entry["answer"]["content"];
            entry["plain"] = !entry["answer"]["encrypted"].get<bool>();
            if (request["parameters"] == json::parse(orText(request["plainText"]), nullptr, false))
                request.erase("parameters");
            for (const auto &[key, value] : m_sent.items())
                if (request[key] == value)
                    request.erase(key);
            entry.update(request);
            const json known { { "method", m_sent["method"] }, { "content", m_answer },
                { "plain", !m_isEncrypted } };
            for (const auto &[key, value] : known.items())
                if (entry[key] == value)
                    entry.erase(key);
            if (said.find(orText(entry["reason"])) != said.npos)
                entry.erase("reason");
            if (distanceOf(entry["time"]) == "(now)")
                entry.erase("time");
            if (entry["durationMs"] >= 0 && entry["durationMs"] < 60000)
                entry.erase("durationMs");
            for (const auto *dull :
                { "id", "revision", "call", "verdict", "status", "curl", "request", "answer" })
                entry.erase(dull);
            if (const auto content = entry.value("content", json()).dump(); content.size() > 250)
                entry["content"] = once("answer", visible(masked(content)));
            for (auto item = entry.begin(); item != entry.end();)
                item = item->is_null() ? entry.erase(item) : std::next(item);
            line(entry.empty()
                    ? text
                    : text + " " + entry.dump(-1, ' ', false, json::error_handler_t::replace));
            if (m_told["curl"].emplace(masked(curl), 0).second)
                line("= " + curl);
        }
    }

    static std::string orText(const json &value)
    {
        return value.is_string() ? value.get<std::string>() : "";
    }

    std::optional<Sandbox> m_sandbox;
    json m_step;
    json m_answer;
    std::string m_lines;
    std::string m_plain; ///< parameters of the request
    std::uint64_t m_revision = 0;
    bool m_isEncrypted = false;
    json m_sent; ///< of the request, as the journal has it
    std::map<std::string, std::map<std::string, std::size_t>> m_told; ///< by sort
    std::map<std::string, std::string> m_meant; ///< names, and what they stand for
};
}

TEST(SandboxTranscript, IsAsApproved)
{
    const std::string path = std::string(SANDBOX_SOURCE) + "/tests/Sandbox/Transcript.txt";
    std::ifstream file(path);
    ASSERT_TRUE(file) << path;
    Player player;
    std::string written;
    std::string approved;
    std::string step;
    std::string now;
    const auto compare = [&] {
        EXPECT_EQ(approved, now) << "  at " << step << "\n  If that is meant, once more with"
                                 << " TRANSCRIPT=approve in the environment";
    };
    for (std::string each; std::getline(file, each);) {
        const auto isStep = each.starts_with("$ ");
        if (!isStep && !each.starts_with("#")) {
            approved += each + '\n';
            continue;
        }
        compare();
        written += now + each + '\n';
        approved.clear();
        now.clear();
        step = each;
        if (isStep)
            now = player.play(each.substr(2));
    }
    compare();
    written += now;
    if (const auto *wish = std::getenv("TRANSCRIPT");
        wish != nullptr && wish == std::string("approve"))
        std::ofstream(path) << written;
}
