#include "sandbox/service/Routes.h"

namespace sandbox {
namespace {
using httplib::Request;
using httplib::Response;
using nlohmann::json;

/// A scenario as it is, or its text, which may be no JSON, under "text".
Scenario scenarioIn(const Request &request)
{
    const auto body = json::parse(request.body, nullptr, false);
    if (body.is_object() && body.size() == 1 && body.contains("text") && body["text"].is_string())
        return Scenario::fromText(body["text"].get<std::string>());
    return Scenario::fromText(request.body);
}

Routes::Handler reading(Sandbox &sandbox, bool play)
{
    return [&sandbox, play](const Request &request, Response &response) {
        try {
            auto scenario = scenarioIn(request);
            if (play) {
                sandbox.play(std::move(scenario));
                sandbox.console.say("scenario", "set by a call; no file was changed");
            }
            answer(response, 200, json::object());
        } catch (const ScenarioError &error) {
            answerError(response, 400, error.what());
        }
    };
}
}

void routeScenario(Routes &routes)
{
    auto &sandbox = routes.sandbox();
    routes.get("/sandbox/scenario", [&sandbox](const Request &, Response &response) {
        answer(response, 200, { { "text", sandbox.scenario.get()->source } });
    });
    routes.post("/sandbox/scenario", reading(sandbox, true));
    routes.post("/sandbox/scenario/check", reading(sandbox, false));
}

}
