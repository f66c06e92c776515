#include "Account.h"

#include "sandbox/service/Cipher.h"

#include <algorithm>
#include <iomanip>
#include <set>
#include <sstream>

void replaceEach(std::string &text, const std::string &from, const std::string &to)
{
    for (auto at = text.find(from); at != text.npos && !from.empty();
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

std::string rewritten(const std::string &text, const std::string &pattern,
    const std::function<std::string(const std::smatch &)> &as)
{
    std::string result;
    auto rest = text.begin();
    thread_local std::map<std::string, std::regex> known;
    const auto &regex = known.try_emplace(pattern, pattern).first->second;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
        result.append(rest, text.begin() + match->position()).append(as(*match));
        rest = text.begin() + match->position() + match->length();
    }
    return result.append(rest, text.end());
}

namespace {

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

std::string digestOf(const std::string &text, const std::string &key, std::size_t length)
{
    return sandbox::toBase64(sandbox::hmacSha256(text, key)).substr(0, length);
}

/// Of what is long the beginning, and what any other change shows in.
std::string shortened(const std::string &text)
{
    constexpr std::size_t most = 1000;
    constexpr std::size_t kept = 300;
    return text.size() <= most ? text
                               : text.substr(0, kept) + " ... " + std::to_string(text.size())
            + " bytes, digest " + digestOf(text, "digest", 12);
}

/// "now", or in how many minutes; those of five are met by what a busy machine reads late.
std::string distanceOf(const std::string &time)
{
    std::tm parts {};
    ::strptime(time.c_str(), "%Y-%m-%dT%H:%M:%S", &parts);
    const auto ahead = ::timegm(&parts) - std::time(nullptr);
    constexpr int late = 115;
    const auto whole = ahead + late;
    const auto minutes =
        whole >= 0 && whole % 300 <= late ? whole / 300 * 5 : (ahead + (ahead > 0 ? 55 : 0)) / 60;
    return minutes == 0 ? "(now)" : "(in " + std::to_string(minutes) + " min)";
}

/// What cannot be read, as long cipher text: only its length is told.
std::string withoutLongWords(const std::string &text)
{
    constexpr std::size_t longest = 100;
    const auto isPart = [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '+' || c == '/';
    };
    std::string result;
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if_not(at, text.end(), isPart);
        const auto size = static_cast<std::size_t>(end - at);
        result += size > longest ? "(" + std::to_string(size) + " letters)" : std::string(at, end);
        at = end;
        if (at != text.end())
            result += *at++;
    }
    return result;
}

std::string orText(const json &value) { return value.is_string() ? value.get<std::string>() : ""; }

/// A file of the page by its name, where \p body is what stands in it.
std::string withoutFile(const std::string &body, const std::string &target)
{
    for (const std::string folder : { "sandbox/page/", "sandbox/icons/" }) {
        const auto name =
            folder + (target == "/" ? "index.html" : target.substr(target.rfind('/') + 1));
        const auto path = std::string(SANDBOX_SOURCE) + "/" + name;
        if (!std::filesystem::is_regular_file(path))
            continue;
        std::ifstream file(path);
        const std::string content(std::istreambuf_iterator<char>(file), {});
        if (!content.empty() && content == body)
            return "(" + name + ")";
    }
    return body;
}

}

std::string Account::withValues(std::string step) const
{
    for (const auto &[name, value] : m_meant)
        replaceEach(step, name, value);
    return rewritten(step, "\\(([0-9]+) letters\\)",
        [](const auto &match) { return std::string(std::stoul(match[1]), 'p'); });
}

void Account::line(const std::string &text) { m_lines += shortened(visible(masked(text))) + '\n'; }

void Account::lines(const std::string &text)
{
    std::istringstream all(text);
    for (std::string each; std::getline(all, each);)
        line(each);
}

/// What differs from run to run by a name: the same name where it is the same.
std::string Account::masked(std::string text)
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
    text = rewritten(
        text, "cpp-httplib/[0-9.]+", [](const auto &) { return "cpp-httplib/(its version)"; });
    text = rewritten(text, "(X-TRZ-Req-[ST][a-z]+: )[A-Za-z0-9+/=]{13,}", // of what is sent again
        [](const std::smatch &match) { return match[1].str() + "(new)"; });
    const std::string uuid =
        "([0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12})";
    text = rewritten(text, "\"requestId\":\"" + uuid, [this](const std::smatch &match) {
        return std::string("\"requestId\":\"")
            + (m_told["request"].emplace(match[1], 0).second ? "(new)" : "(old)");
    });
    text = rewritten(text, uuid, numbered("id"));
    text = rewritten(text, "(?:%20|\\b)([2-9A-HJ-NP-Z]{4}-[2-9A-HJ-NP-Z]{4})\\b", numbered("code"));
    text = rewritten(text, "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]{8}([.][0-9]{3})?Z",
        [](const auto &match) { return distanceOf(match[0]) + (match[1].matched ? ".ms" : ""); });
    text = rewritten(text, "([0-9]{3,}) seconds (old|ahead)", [](const std::smatch &match) {
        const auto hundreds = std::string(match[1]).substr(0, match.length(1) - 2) + "..";
        return (match.length(1) > 6 ? "(years of)" : "(" + hundreds + ")") + " seconds "
            + match[2].str();
    });
    return rewritten(text, "^[0-9:]{8}  ", [](const auto &) { return "- "; });
}

/// What comes again and again is told once, then by a digest.
std::string Account::once(const char *series, const std::string &text)
{
    const auto digest = digestOf(text, "once", 5);
    const auto isNew = m_told[series].emplace(digest, 0).second;
    return std::string("(") + series + " " + digest + ")" + (isNew ? " " + text : "");
}

void Account::answered(const std::string &bytes, const std::string &target)
{
    const auto headEnd = std::min(bytes.find("\r\n\r\n"), bytes.size());
    auto head = bytes.substr(0, headEnd);
    auto body = bytes.substr(std::min(bytes.size(), headEnd + 4));
    const auto outer = json::parse(body, nullptr, false);
    m_isEncrypted = outer.is_object() && outer.contains("data");
    // Their order is the library's; the length is told where it is another.
    replaceEach(head, "\r\nContent-Length: " + std::to_string(body.size()), "");
    if (const auto plain = m_isEncrypted ? decrypted(outer["data"], secret) : "";
        json::accept(plain) || plain.find("result") != plain.npos)
        body = plain;
    m_answer = json::parse(body, nullptr, false);
    body = withoutFile(body, target);
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
        line("< " + (body.size() > 250 ? once("answer", shortened(visible(masked(body)))) : body));
}

void Account::noted(const Sandbox &sandbox, const std::string &said)
{
    auto page =
        sandbox.get("/sandbox/journal?view=list&limit=50&after=" + std::to_string(m_revision));
    if (page["status"] != 200)
        return line("it no longer answers");
    m_revision = page["revision"];
    for (const auto &each : page["exchanges"])
        tellEntry(each, sandbox.get("/sandbox/journal/" + each["id"].dump()), said);
}

/// What could not be known from the request, the answer and the console.
/// Of copies, in which what is missing is null.
void Account::tellEntry(json row, json entry, const std::string &said)
{
    const auto text =
        "= " + orText(row["call"]) + " " + orText(row["verdict"]) + " " + row["status"].dump();
    std::string curl = entry["curl"];
    auto request = entry["request"];
    static const std::set<std::string> ofCurl { "Connection", "Content-Length", "Host" };
    auto headers = json::array();
    for (auto header : request["headers"]) {
        const auto line = orText(header["name"]) + ": " + orText(header["value"]);
        if (!ofCurl.contains(orText(header["name"])))
            replaceEach(curl, " -H '" + line + "'", "");
        if (header["value"] != "") // older libraries let go of such
            headers.push_back(line);
    }
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
    if (entry["durationMs"] >= m_sent.value("lasts", 0.001) && entry["durationMs"] < 60000)
        entry.erase("durationMs");
    for (const auto *dull :
        { "id", "revision", "call", "verdict", "status", "curl", "request", "answer" })
        entry.erase(dull);
    if (const auto content = entry.value("content", json()).dump(); content.size() > 250)
        entry["content"] = once("answer", visible(masked(content)));
    for (auto item = entry.begin(); item != entry.end();)
        item = item->is_null() ? entry.erase(item) : std::next(item);
    line(entry.empty() ? text
                       : text + " " + entry.dump(-1, ' ', false, json::error_handler_t::replace));
    if (m_told["curl"].emplace(masked(curl), 0).second)
        line("= " + curl);
}
