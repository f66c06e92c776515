#include "sandbox/service/Exchange.h"

#include <httplib.h>
#include <strings.h>

#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>

namespace sandbox {
using nlohmann::json;

json orNull(const std::string &text) { return text.empty() ? json() : json(text); }

namespace {

/// JSON as it is, any other text as a text.
json readable(const std::string &text)
{
    if (text.empty())
        return nullptr;
    auto value = json::parse(text, nullptr, false);
    return value.is_discarded() ? json(text) : value;
}

/// As timeText(), with the milliseconds.
std::string preciseText(std::chrono::system_clock::time_point time)
{
    const auto sinceEpoch = time.time_since_epoch();
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(
        sinceEpoch - std::chrono::floor<std::chrono::seconds>(sinceEpoch));
    auto digits = std::to_string(1000 + rest.count());
    digits.front() = '.';
    auto text = timeText(time);
    return text.insert(text.size() - 1, digits);
}

json jsonOf(const Comparison &comparison)
{
    return { { "of", comparison.of }, { "expected", comparison.expected },
        { "received", comparison.received }, { "note", comparison.note } };
}

std::string inShellQuotes(const std::string &text)
{
    std::string quoted = "'";
    for (const auto c : text) {
        if (c == '\'')
            quoted += "'\\''";
        else
            quoted += c;
    }
    return quoted + "'";
}
}

std::chrono::microseconds ageOf(const Exchange &exchange)
{
    return std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::system_clock::now() - exchange.time);
}

Exchange exchangeOf(const httplib::Request &request, const std::string &call)
{
    // The library's own, not of the wire.
    static constexpr std::string_view added[] = { "REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR",
        "LOCAL_PORT" };
    Exchange exchange;
    exchange.time = std::chrono::system_clock::now();
    exchange.call = call;
    exchange.method = request.method;
    exchange.target = request.target;
    exchange.body = request.body;
    exchange.language = request.get_header_value("X-TRZ-Lang");
    for (const auto &header : request.headers)
        if (std::find(std::begin(added), std::end(added), header.first) == std::end(added))
            exchange.headers.emplace_back(header);
    // Versions of the library keep them in an order of their own each, some in none.
    std::stable_sort(
        exchange.headers.begin(), exchange.headers.end(), [](const auto &one, const auto &other) {
            return ::strcasecmp(one.first.c_str(), other.first.c_str()) < 0;
        });
    return exchange;
}

const char *nameOf(Exchange::Verdict verdict)
{
    switch (verdict) {
    case Exchange::Verdict::waiting:
        return "waiting";
    case Exchange::Verdict::accepted:
        return "accepted";
    case Exchange::Verdict::refused:
        return "refused";
    case Exchange::Verdict::fault:
        break;
    }
    return "fault";
}

std::string timeText(std::chrono::system_clock::time_point time)
{
    const auto seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts {};
    ::gmtime_r(&seconds, &parts);
    char text[sizeof "2000-01-01T00:00:00Z"] = {};
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}
json jsonOf(const Exchange &exchange, bool whole)
{
    json result {
        { "id", exchange.id },
        { "revision", exchange.revision },
        { "time", preciseText(exchange.time) },
        { "durationMs", static_cast<double>(exchange.duration.count()) / 1000 },
        { "call", exchange.call },
        { "method", exchange.method },
        { "number", orNull(exchange.number) },
        { "verdict", nameOf(exchange.verdict) },
        { "status", exchange.status },
        { "errorCode", orNull(exchange.errorCode) },
        { "reason", exchange.reason },
        { "fault", orNull(exchange.fault) },
    };
    if (!whole)
        return result;
    auto headers = json::array();
    for (const auto &[name, value] : exchange.headers)
        headers.push_back({ { "name", name }, { "value", value } });
    result["request"] = { { "target", exchange.target }, { "headers", std::move(headers) },
        { "body", exchange.body }, { "parameters", readable(exchange.parameters) },
        { "plainText", orNull(exchange.parameters) } };
    result["answer"] = { { "encrypted", exchange.answerEncrypted },
        { "content", readable(exchange.answer) } };
    result["comparison"] = exchange.comparison ? jsonOf(*exchange.comparison) : json();
    return result;
}

std::string curlOf(const Exchange &exchange, int port)
{
    auto line = "curl -i -X " + inShellQuotes(exchange.method);
    for (const auto &[name, value] : exchange.headers)
        if (name != "Host" && name != "Content-Length" && name != "Connection")
            line.append(" -H ").append(inShellQuotes(std::string(name).append(": ").append(value)));
    if (!exchange.body.empty())
        line += " --data-binary " + inShellQuotes(exchange.body);
    return line + " " + inShellQuotes("http://127.0.0.1:" + std::to_string(port) + exchange.target);
}

}
