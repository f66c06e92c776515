#include "sandbox/service/CallForm.h"
#include "sandbox/service/Routes.h"

namespace sandbox {
namespace {
using httplib::Request;
using httplib::Response;
using nlohmann::json;

json jsonOf(const Session &session)
{
    return { { "sessionId", session.id }, { "confirmed", !session.expired },
        { "state", session.expired ? "expired" : "verified" }, { "method", session.method },
        { "app", orNull(session.app) }, { "phoneNumber", orNull(session.number) },
        { "confirmedAt", timeText(session.confirmedAt) } };
}

json jsonOf(const SentCode &sent)
{
    return { { "code", sent.code }, { "reference", sent.reference }, { "phoneNumber", sent.number },
        { "sentAt", timeText(sent.sentAt) }, { "expiresAt", timeText(sent.expiry) },
        { "attemptsLeft", sent.attemptsLeft }, { "sessionId", orNull(sent.sessionId) } };
}

json jsonOf(const PreparedMessage &message)
{
    return { { "reference", message.reference }, { "app", message.app }, { "text", message.text },
        { "preparedAt", timeText(message.preparedAt) }, { "expiresAt", timeText(message.expiry) },
        { "sessionId", orNull(message.sessionId) } };
}

template <typename Item> json listOf(const char *name, const std::vector<Item> &items)
{
    auto list = json::array();
    for (const auto &item : items)
        list.push_back(jsonOf(item));
    return { { name, std::move(list) } };
}

/// The text \p key of \p object; \p otherwise when it is not there, nothing when it is no text.
std::optional<std::string> textIn(const json &object, const char *key, const std::string &otherwise)
{
    const auto found = object.find(key);
    if (found == object.end() || found->is_null())
        return otherwise;
    return found->is_string() ? std::optional(found->get<std::string>()) : std::nullopt;
}

void makeSession(Sandbox &sandbox, const Request &request, Response &response)
{
    const auto given = json::parse(request.body.empty() ? "{}" : request.body, nullptr, false);
    if (!given.is_object())
        return answerError(response, 400, "expected an object");
    const auto state = textIn(given, "state", "verified");
    const auto number = textIn(given, "phoneNumber", "");
    const auto app = textIn(given, "app", "");
    if (state != "verified" && state != "expired" && state != "unknown")
        return answerError(response, 400, "state: expected verified, expired or unknown");
    if (!number || (!number->empty() && !isFullNumber(*number)))
        return answerError(response, 400, "phoneNumber: expected a plus and digits");
    if (!app)
        return answerError(response, 400, "app: expected text");
    for (const auto &item : given.items())
        if (item.key() != "state" && item.key() != "phoneNumber" && item.key() != "app")
            return answerError(response, 400,
                item.key() + ": unknown field; there are state, phoneNumber and app");
    sandbox.console.say("session", "made: " + *state);
    if (state == "unknown")
        return answer(response, 201, { { "sessionId", randomUuid() }, { "state", *state } });
    const auto id = sandbox.state.makeSession(
        { {}, app->empty() ? "otp" : "3rdparty", *app, *number, {}, state == "expired" });
    const auto session = sandbox.state.session(id);
    answer(response, 201, session ? jsonOf(*session) : json());
}

void receiveMessage(Sandbox &sandbox, const Request &request, Response &response)
{
    const auto message = json::parse(request.body, nullptr, false);
    Exchange exchange = exchangeOf(request, "message");
    const auto settle = [&](Exchange::Verdict verdict, int status, const std::string &reason) {
        exchange.verdict = verdict;
        exchange.status = status;
        exchange.reason = reason;
        exchange.duration = ageOf(exchange);
        sandbox.journal.put(exchange);
        const auto refused = verdict == Exchange::Verdict::refused;
        sandbox.console.say("message", (refused ? "refused: " : "") + reason);
        answer(response, status, refused ? json { { "error", reason } } : json::object());
    };
    const auto isText = [&message](const char *key) {
        return message.is_object() && message.contains(key) && message[key].is_string();
    };
    if (!isText("app") || !isText("text"))
        return settle(Exchange::Verdict::refused, 400, R"(expected the texts "app" and "text")");
    const auto from = textIn(message, "from", "");
    if (!from || (!from->empty() && !isFullNumber(*from)))
        return settle(Exchange::Verdict::refused, 400, R"("from": expected a plus and digits)");
    const auto app = message["app"].get<std::string>();
    exchange.number = *from;
    if (const auto refusal =
            sandbox.state.receiveMessage(app, message["text"].get<std::string>(), *from))
        return settle(Exchange::Verdict::refused, refusal->status, refusal->reason);
    settle(Exchange::Verdict::accepted, 202, "received by " + app);
}
}

void routeState(Routes &routes)
{
    auto &sandbox = routes.sandbox();
    // Not said on the console: tools ask this over and over until the service is up.
    routes.get("/sandbox/health", [](const Request &, Response &response) {
        answer(response, 200, { { "status", "running" } });
    });
    routes.post("/sandbox/reset", [&sandbox](const Request &, Response &response) {
        sandbox.reset();
        sandbox.console.say("reset", "all that happened is forgotten");
        answer(response, 200, json::object());
    });

    routes.get("/sandbox/sessions", [&sandbox](const Request &, Response &response) {
        answer(response, 200, listOf("sessions", sandbox.state.sessions()));
    });
    routes.post("/sandbox/sessions", [&sandbox](const Request &request, Response &response) {
        makeSession(sandbox, request, response);
    });
    routes.get("/sandbox/sessions/([^/]+)", [&sandbox](const Request &request, Response &response) {
        const auto session = sandbox.state.session(request.matches[1]);
        sandbox.console.say("session", session ? "found" : "unknown");
        if (!session)
            return answerError(response, 404, "no such session");
        answer(response, 200, jsonOf(*session));
    });

    routes.get("/sandbox/codes", [&sandbox](const Request &, Response &response) {
        answer(response, 200, listOf("codes", sandbox.state.codes()));
    });
    routes.get("/sandbox/codes/last", [&sandbox](const Request &, Response &response) {
        const auto codes = sandbox.state.codes();
        if (codes.empty())
            return answerError(response, 404, "no code was sent");
        answer(response, 200, jsonOf(codes.front()));
    });
    routes.get(
        "/sandbox/codes/\\+?([0-9]+)", [&sandbox](const Request &request, Response &response) {
            const auto sent = sandbox.state.codeFor("+" + request.matches[1].str());
            sandbox.console.say("code", sent ? "read" : "none was sent to this number");
            if (!sent)
                return answerError(response, 404, "no code was sent to this number");
            answer(response, 200, jsonOf(*sent));
        });

    routes.get("/sandbox/messages", [&sandbox](const Request &, Response &response) {
        answer(response, 200, listOf("messages", sandbox.state.messages()));
    });
    routes.post("/sandbox/messages", [&sandbox](const Request &request, Response &response) {
        receiveMessage(sandbox, request, response);
    });

    routes.get("/sandbox/requests", [&sandbox](const Request &, Response &response) {
        auto counts = json::object();
        for (const auto call : callNames)
            counts[std::string(call)] = { { "posts", 0 }, { "faults", 0 } };
        for (const auto &[call, count] : sandbox.count.counts())
            counts[call] = { { "posts", count.posts }, { "faults", count.faults } };
        answer(response, 200, counts);
    });
    routes.post("/sandbox/requests", [&sandbox](const Request &, Response &response) {
        sandbox.count.reset();
        answer(response, 200, json::object());
    });
}

}
