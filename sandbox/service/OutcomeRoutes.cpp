#include "sandbox/service/CallForm.h"
#include "sandbox/service/OutcomeReader.h"
#include "sandbox/service/Routes.h"

namespace sandbox {

void routeOutcomes(Routes &routes)
{
    using httplib::Request;
    using httplib::Response;
    using nlohmann::json;
    auto &sandbox = routes.sandbox();
    routes.get("/sandbox/outcomes", [&sandbox](const Request &, Response &response) {
        answer(response, 200, jsonOf(sandbox.outcomes.lists()));
    });
    routes.get("/sandbox/outcomes/names", [](const Request &, Response &response) {
        auto faults = json::array();
        for (const auto &fault : commonWeather())
            faults.push_back(fault.text);
        json calls(callNames);
        calls.push_back(connectionName);
        calls.push_back(iconName);
        answer(response, 200,
            { { "calls", std::move(calls) }, { "outcomes", outcomeNames() },
                { "faults", std::move(faults) } });
    });
    routes.post("/sandbox/outcomes", [&sandbox](const Request &request, Response &response) {
        try {
            const auto given = jsonIn(request.body);
            sandbox.outcomes.replace(readOutcomes({ given, "outcomes" }));
            sandbox.console.say("outcomes", "set");
            answer(response, 200, json::object());
        } catch (const std::exception &error) {
            sandbox.console.say("outcomes", std::string("refused: ") + error.what());
            answerError(response, 400, error.what());
        }
    });
}

}
