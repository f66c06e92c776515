#include "sandbox/service/CallForm.h"
#include "sandbox/service/Icons.h"
#include "sandbox/service/OutcomeReader.h"
#include "sandbox/service/Service.h"

#include <ctime>

namespace sandbox {
namespace {
using nlohmann::json;

constexpr auto jsonType = "application/json; charset=utf-8";

void answer(httplib::Response &response, int status, const json &body)
{
    response.status = status;
    response.set_content(body.dump(), jsonType);
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
}

void Service::routeSandbox()
{
    using httplib::Request;
    using httplib::Response;
    // Not said on the console: tools ask this over and over until the service is up.
    m_server.Get("/sandbox/health", [](const Request &, Response &response) {
        answer(response, 200, { { "status", "running" } });
    });

    m_server.Get("/sandbox/sessions/([^/]+)", [this](const Request &request, Response &response) {
        const auto session = m_state.session(request.matches[1]);
        say("session", session ? "found" : "unknown");
        if (!session)
            return answer(response, 404, { { "error", "no such session" } });
        answer(response, 200,
            { { "sessionId", session->id }, { "confirmed", true }, { "method", session->method },
                { "app", session->app.empty() ? json() : json(session->app) },
                { "confirmedAt", timeText(session->confirmedAt) } });
    });

    m_server.Get("/sandbox/codes/\\+?([0-9]+)", [this](const Request &request, Response &response) {
        const auto sent = m_state.codeFor("+" + request.matches[1].str());
        say("code", sent ? "read" : "none was sent to this number");
        if (!sent)
            return answer(response, 404, { { "error", "no code was sent to this number" } });
        answer(response, 200, { { "code", sent->code }, { "reference", sent->reference } });
    });

    m_server.Post("/sandbox/messages", [this](const Request &request, Response &response) {
        const auto message = json::parse(request.body, nullptr, false);
        if (!message.is_object() || !message.contains("app") || !message["app"].is_string()
            || !message.contains("text") || !message["text"].is_string()) {
            say("message", R"(refused: expected the texts "app" and "text")");
            return answer(response, 400, { { "error", R"(expected the texts "app" and "text")" } });
        }
        const auto app = message["app"].get<std::string>();
        if (const auto refusal = m_state.receiveMessage(app, message["text"].get<std::string>())) {
            say("message", "refused: " + refusal->reason);
            return answer(response, refusal->status, { { "error", refusal->reason } });
        }
        say("message", "received by " + app);
        answer(response, 202, json::object());
    });

    m_server.Get(
        "/sandbox/icons/([a-z]+)\\.png", [this](const Request &request, Response &response) {
            sendIcon(request.matches[1].str(), response);
        });

    m_server.Get("/sandbox/requests", [this](const Request &, Response &response) {
        auto counts = json::object();
        for (const auto call : callNames)
            counts[std::string(call)] = { { "posts", 0 }, { "faults", 0 } };
        for (const auto &[call, count] : m_count.counts())
            counts[call] = { { "posts", count.posts }, { "faults", count.faults } };
        answer(response, 200, counts);
    });
    m_server.Post("/sandbox/requests", [this](const Request &, Response &response) {
        m_count.reset();
        answer(response, 200, json::object());
    });

    m_server.Post("/sandbox/outcomes", [this](const Request &request, Response &response) {
        try {
            const auto given = json::parse(request.body);
            m_outcomes.replace(readOutcomes({ given, "outcomes" }));
            say("outcomes", "set");
            answer(response, 200, json::object());
        } catch (const std::exception &error) {
            say("outcomes", std::string("refused: ") + error.what());
            answer(response, 400, { { "error", error.what() } });
        }
    });
}

void Service::sendIcon(const std::string &name, httplib::Response &response)
{
    const auto outcome = m_outcomes.take(std::string(iconName));
    if (!waitFor(outcome.delay))
        return;
    const auto icon = iconNamed(name);
    say("icon", name + (icon.empty() ? ": unknown" : "") + outcome.fault.note());
    if (outcome.fault)
        response.set_header(Front::faultHeader, outcome.fault.text);
    if (icon.empty())
        return answer(response, 404, { { "error", "no such icon" } });
    response.set_content(icon.data(), icon.size(), "image/png");
}

}
