#include "sandbox/service/Replay.h"
#include "sandbox/service/Routes.h"

#include <charconv>

namespace sandbox {
namespace {
using httplib::Request;
using httplib::Response;
using nlohmann::json;

constexpr std::uint64_t longestWait = 30; // s

/// \return nothing when there is such a parameter but it is no number up to \p most
std::optional<std::uint64_t> numberIn(
    const Request &request, const char *name, std::uint64_t otherwise, std::uint64_t most)
{
    if (!request.has_param(name))
        return otherwise;
    const auto text = request.get_param_value(name);
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || number > most)
        return std::nullopt;
    return number;
}

void readJournal(Sandbox &sandbox, const Request &request, Response &response)
{
    constexpr auto any = std::numeric_limits<std::uint64_t>::max();
    const auto after = numberIn(request, "after", 0, any);
    const auto before = numberIn(request, "before", 0, any);
    const auto limit = numberIn(request, "limit", 100, Journal::mostExchanges);
    const auto wait = numberIn(request, "wait", 0, longestWait);
    if (!after || !before || !limit || !wait)
        return answerError(response, 400,
            "expected numbers: after, before, limit (to 10000) and wait (seconds, to 30)");
    // Whoever asks what came after another life of the program has seen nothing of this one.
    const auto isStranger =
        request.has_param("run") && request.get_param_value("run") != sandbox.run;
    const Journal::Query query { isStranger ? 0 : *after, *before, static_cast<std::size_t>(*limit),
        request.get_param_value("call"), request.get_param_value("verdict"),
        request.get_param_value("search") };
    const auto page = *wait == 0 || isStranger
        ? sandbox.journal.pageOf(query)
        : sandbox.journal.waitFor(query, std::chrono::seconds(*wait));
    auto list = json::array();
    for (const auto &exchange : page.exchanges)
        list.push_back(jsonOf(*exchange, request.get_param_value("view") != "list"));
    answer(response, 200,
        { { "run", sandbox.run }, { "revision", page.revision }, { "held", page.held },
            { "dropped", page.dropped }, { "oldest", page.oldest },
            { "exchanges", std::move(list) } });
}
}

void routeJournal(Routes &routes)
{
    auto &sandbox = routes.sandbox();
    routes.get("/sandbox/journal", [&sandbox](const Request &request, Response &response) {
        readJournal(sandbox, request, response);
    });
    routes.post("/sandbox/journal", [&sandbox](const Request &, Response &response) {
        sandbox.journal.clear();
        answer(response, 200, json::object());
    });
    routes.get(
        "/sandbox/journal/([0-9]{1,18})", [&sandbox](const Request &request, Response &response) {
            const auto entry = sandbox.journal.find(std::stoull(request.matches[1].str()));
            if (!entry)
                return answerError(response, 404, "no such exchange, or it was let go");
            auto whole = jsonOf(**entry, true);
            whole["curl"] = curlOf(**entry, sandbox.port);
            answer(response, 200, whole);
        });
    routes.post("/sandbox/journal/([0-9]{1,18})/replay",
        [&sandbox](const Request &request, Response &response) {
            const auto entry = sandbox.journal.find(std::stoull(request.matches[1].str()));
            if (!entry || (*entry)->target.empty())
                return answerError(response, 404, "no such request, or it was let go");
            const auto given = json::parse(request.body, nullptr, false);
            const auto asItWas = given.is_object() && given.value("asItWas", json()) == json(true);
            const auto scenario = sandbox.scenario.get();
            const auto status = replay(**entry, sandbox.port, asItWas ? nullptr : &scenario->keys);
            answer(response, 200, { { "status", status } });
        });
}

}
