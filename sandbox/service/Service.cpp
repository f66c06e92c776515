#include "sandbox/service/Service.h"

#include "sandbox/service/AnswerFaults.h"
#include "sandbox/service/CallForm.h"
#include "sandbox/service/Calls.h"
#include "sandbox/service/Cipher.h"
#include "sandbox/service/Icons.h"
#include "sandbox/service/Judge.h"
#include "sandbox/service/PersonTexts.h"
#include "sandbox/service/Routes.h"

#include <thread>

namespace sandbox {
namespace {
using nlohmann::json;

constexpr std::size_t threads = 32;
constexpr std::size_t mostBytes = 1048576; // of a request; a real one has a few hundred

json envelopeOf(int status, const std::string &errorCode, const std::string &english,
    const std::string &language)
{
    const auto message = personText(english, language);
    json meta { { "requestId", randomUuid() }, { "httpStatusCode", status } };
    if (!errorCode.empty())
        meta["errorCode"] = errorCode;
    if (!message.empty())
        meta["errorMessage"] = message;
    return { { "meta", std::move(meta) } };
}

std::string verdictOf(int status, const std::string &errorCode, const std::string &reason)
{
    return "refused " + std::to_string(status) + (errorCode.empty() ? "" : " ") + errorCode
        + (reason.empty() ? "" : ": ") + reason;
}

std::string callOf(const httplib::Request &request)
{
    constexpr std::string_view base = "/v1.0/";
    return request.path.starts_with(base) ? request.path.substr(base.size()) : "";
}
}

Service::Service(Sandbox &sandbox)
    : m_sandbox(sandbox)
    , m_front(sandbox.outcomes, sandbox.count,
          [this](const std::string &call, const std::string &fault) {
              Exchange exchange;
              exchange.time = std::chrono::system_clock::now();
              exchange.call = call;
              exchange.verdict = Exchange::Verdict::fault;
              exchange.reason = "the fault came before the request was read";
              exchange.fault = fault;
              m_sandbox.journal.put(exchange);
              m_sandbox.console.say(call, "fault " + fault);
          })
{
    // One request a connection: a client never meets a connection that we are about to close, and
    // the service ends at once.
    m_server.set_keep_alive_max_count(1);
    m_server.set_read_timeout(2);
    // Answers that are held back hold their thread; others are still served.
    m_server.new_task_queue = [] { return new httplib::ThreadPool(threads); };
    m_server.set_payload_max_length(mostBytes);
    // The library's default shares the port with any other process that asks for it.
    m_server.set_socket_options([](int) {});
    routeCalls();
}

bool Service::bind(int port)
{
    m_port = m_server.bind_to_any_port("127.0.0.1");
    m_sandbox.port = m_port < 0 ? -1 : m_front.bind(port);
    return m_sandbox.port >= 0;
}

void Service::run()
{
    std::thread behind([this] { m_server.listen_after_bind(); });
    m_front.run(m_port);
    behind.join();
}

void Service::stop()
{
    m_front.stop();
    stopServing(m_server);
}

void Service::routeCalls()
{
    using httplib::Request;
    using httplib::Response;
    Routes routes(m_server, m_sandbox);
    routes.get("/sandbox/icons/([a-z]+)\\.png",
        [this](const Request &request, Response &response) { sendIcon(request, response); });
    routeState(routes);
    routeOutcomes(routes);
    routeJournal(routes);
    routeScenario(routes);
    routeRest(routes, "/sandbox(/[^]*)?");

    const auto onCall = [this](const Request &request, Response &response) {
        try {
            answerCall(request, response);
        } catch (const FaultError &error) {
            auto exchange = exchangeOf(request, callOf(request));
            const auto scenario = m_sandbox.scenario.get();
            refuse(response, exchange, { 500, {}, error.what() }, scenario.get());
        }
    };
    const auto otherMethod = [this](const Request &request, Response &response) {
        auto exchange = exchangeOf(request, request.path);
        refuse(response, exchange, { 404, {}, request.method + ": expected POST" });
    };
    constexpr auto anyPath = "[^]*"; // a dot would stop at a line break
    m_server.Post(anyPath, onCall);
    m_server.Get(anyPath, otherMethod);
    m_server.Put(anyPath, otherMethod);
    m_server.Patch(anyPath, otherMethod);
    m_server.Delete(anyPath, otherMethod);
    m_server.Options(anyPath, otherMethod);
    m_server.set_error_handler(httplib::Server::HandlerWithResponse([this](const Request &request,
                                                                        Response &response) {
        if (!response.body.empty())
            return httplib::Server::HandlerResponse::Unhandled;
        // The library turned the request away before any of our handlers saw it.
        const auto library = std::to_string(response.status);
        auto exchange = exchangeOf(request, request.path);
        refuse(response, exchange, { 400, {}, "not a request that can be read (" + library + ")" });
        return httplib::Server::HandlerResponse::Handled;
    }));
}

void Service::answerCall(const httplib::Request &request, httplib::Response &response)
{
    const auto call = callOf(request);
    if (!isCall(call) || request.target != request.path) {
        auto exchange = exchangeOf(request, request.target);
        return refuse(response, exchange, { 404, {}, "no such call" });
    }

    auto exchange = exchangeOf(request, call);
    const auto current = m_sandbox.scenario.get();
    const auto &scenario = *current;
    const auto isOfClock = [](const Outcome &each) { return each.fault.is("clock"); };
    const auto late = m_sandbox.outcomes.takeIf(call, isOfClock);
    const std::chrono::seconds off(late ? late->fault.number() : 0);
    auto judgement = Judge(scenario.keys, scenario.clockTolerance)
                         .judge(request, call, std::chrono::system_clock::now() + off);
    exchange.parameters = judgement.plain;
    exchange.comparison = judgement.comparison;
    if (judgement.refusal) {
        if (late) {
            m_sandbox.count.addFault(call);
            exchange.fault = late->fault.text;
            judgement.refusal->reason += late->fault.note();
        }
        return refuse(
            response, exchange, *judgement.refusal, judgement.readable ? &scenario : nullptr);
    }

    Calls calls(scenario, m_sandbox.state, exchange.language);
    exchange.number = calls.numberOf(call, judgement.parameters);
    std::vector<std::string> whose;
    if (!exchange.number.empty())
        whose.push_back(whoseNumber(exchange.number));
    for (const auto *header : { "X-TRZ-Client-Device-Id", "X-TRZ-Client-Key" })
        whose.push_back(whoseClient(request.get_header_value(header)));
    const auto outcome = late ? *late : m_sandbox.outcomes.take(call, whose);
    exchange.fault = outcome.fault.text;
    if (outcome.fault)
        m_sandbox.count.addFault(call);
    if (outcome.delay.count() > 0) {
        exchange.reason = "answered after " + std::to_string(outcome.delay.count()) + " ms";
        m_sandbox.journal.put(exchange);
        if (!m_sandbox.stopping.waitFor(outcome.delay))
            return;
    }
    if (outcome.refuses()) {
        exchange.verdict = Exchange::Verdict::refused;
        exchange.errorCode = outcome.errorCode;
        exchange.reason = outcome.message + (outcome.message.empty() ? "" : " ") + "(as set)";
        m_sandbox.console.say(call,
            verdictOf(outcome.status, outcome.errorCode, outcome.message) + " (as set)"
                + outcome.fault.note());
        return send(response, exchange,
            envelopeOf(outcome.status, outcome.errorCode, outcome.message, exchange.language),
            outcome, &scenario);
    }

    auto answer =
        calls.perform(call, judgement.parameters, "http://" + request.get_header_value("Host"));
    if (const auto *refusal = std::get_if<Refusal>(&answer))
        return refuse(response, exchange, *refusal, &scenario);
    auto &[result, note] = std::get<CallResult>(answer);
    auto envelope =
        envelopeOf(outcome.status, outcome.errorCode, outcome.message, exchange.language);
    envelope["result"] = std::move(result);
    for (const auto &key : outcome.without) {
        if (key == "result")
            envelope.erase(key);
        else if (envelope.contains("result"))
            envelope["result"].erase(key);
    }
    exchange.verdict = Exchange::Verdict::accepted;
    exchange.reason = note;
    send(response, exchange, envelope, outcome, &scenario); // which may find no place for the fault
    m_sandbox.console.say(call, "accepted: " + note + outcome.fault.note());
}

void Service::refuse(httplib::Response &response, Exchange &exchange, const Refusal &refusal,
    const Scenario *readable)
{
    m_sandbox.console.say(
        exchange.call, verdictOf(refusal.status, refusal.errorCode, refusal.reason));
    exchange.verdict = Exchange::Verdict::refused;
    exchange.errorCode = refusal.errorCode;
    exchange.reason = refusal.reason;
    Outcome outcome;
    outcome.status = refusal.status;
    send(response, exchange,
        envelopeOf(refusal.status, refusal.errorCode, refusal.reason, exchange.language), outcome,
        readable);
}

void Service::send(httplib::Response &response, Exchange &exchange, const json &envelope,
    const Outcome &outcome, const Scenario *readable)
{
    const auto &fault = outcome.fault;
    exchange.answerEncrypted = readable != nullptr && !outcome.plain && fault.text != "flag:on";
    auto body = textOf(envelope, fault);
    exchange.status = outcome.status;
    exchange.answer = body;
    exchange.duration = ageOf(exchange);
    m_sandbox.journal.put(exchange);
    if (exchange.answerEncrypted)
        body =
            json { { "data", toBase64(cipherTextOf(body, fault, readable->keys.secret)) } }.dump();
    if (fault.is("flag") ? fault.value == "on" : exchange.answerEncrypted)
        response.set_header("X-TRZ-Encrypted", "1");
    if (fault.isOfFront())
        response.set_header(Front::faultHeader, fault.text);
    response.status = outcome.status;
    response.set_content(body, "application/json; charset=utf-8");
}

void Service::sendIcon(const httplib::Request &request, httplib::Response &response)
{
    const auto name = request.matches[1].str();
    auto exchange = exchangeOf(request, std::string(iconName));
    const auto outcome = m_sandbox.outcomes.take(exchange.call);
    if (!m_sandbox.stopping.waitFor(outcome.delay))
        return;
    const auto icon = iconNamed(name);
    exchange.reason = name + (icon.empty() ? ": unknown" : "");
    exchange.verdict = icon.empty() ? Exchange::Verdict::refused : Exchange::Verdict::accepted;
    exchange.status = icon.empty() ? 404 : 200;
    exchange.fault = outcome.fault.text;
    exchange.duration = ageOf(exchange);
    m_sandbox.journal.put(exchange);
    m_sandbox.console.say(exchange.call, exchange.reason + outcome.fault.note());
    if (outcome.fault)
        response.set_header(Front::faultHeader, outcome.fault.text);
    if (icon.empty())
        return answerError(response, 404, "no such icon");
    response.set_content(icon.data(), icon.size(), "image/png");
}

}
