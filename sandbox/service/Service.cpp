#include "sandbox/service/Service.h"

#include "sandbox/service/AnswerFaults.h"
#include "sandbox/service/CallForm.h"
#include "sandbox/service/Cipher.h"

#include <ctime>
#include <iostream>
#include <thread>

namespace sandbox {
namespace {
using nlohmann::json;

constexpr std::size_t threads = 32;
constexpr std::size_t mostBytes = 1048576; // of a request; a real one has a few hundred

json envelopeOf(int status, const std::string &errorCode, const std::string &message)
{
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
}

Service::Service(Scenario scenario, Weather weather)
    : m_scenario(std::move(scenario))
    , m_state(m_scenario)
    , m_calls(m_scenario, m_state)
    , m_judge(m_scenario.keys, m_scenario.clockTolerance)
    , m_outcomes(m_scenario.outcomes, weather)
    , m_front(m_outcomes, m_count,
          [this](const std::string &call, const std::string &verdict) { say(call, verdict); })
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
    routeSandbox();
    routeCalls();
}

int Service::bind(int port)
{
    m_port = m_server.bind_to_any_port("127.0.0.1");
    return m_port < 0 ? -1 : m_front.bind(port);
}

void Service::run()
{
    std::thread behind([this] { m_server.listen_after_bind(); });
    m_front.run(m_port);
    behind.join();
}

void Service::stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_stopping.notify_all();
    m_front.stop();
    // The library forgets a stop that comes before it serves.
    for (int tries = 0; !m_server.is_running() && tries < 100; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    m_server.stop();
}

bool Service::waitFor(std::chrono::milliseconds duration)
{
    std::unique_lock lock(m_mutex);
    return !m_stopping.wait_for(lock, duration, [this] { return m_stopped; });
}

void Service::say(const std::string &call, const std::string &verdict)
{
    const auto now = std::time(nullptr);
    std::tm parts {};
    ::localtime_r(&now, &parts);
    char time[sizeof "00:00:00"] = {};
    std::strftime(time, sizeof time, "%H:%M:%S", &parts);

    // What a stranger sent must not pass for a line of ours.
    auto line = std::string(time) + "  " + call
        + std::string(call.size() < 10 ? 10 - call.size() : 0, ' ') + "  " + verdict;
    for (auto &c : line)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            c = '?';
    const std::lock_guard lock(m_console);
    std::cout << line << std::endl; // flushed: a person or a pipe watches
}

void Service::routeCalls()
{
    const auto onCall = [this](const httplib::Request &request, httplib::Response &response) {
        try {
            answerCall(request, response);
        } catch (const FaultError &error) {
            refuse(response, request.path, { 500, {}, error.what() }, true);
        }
    };
    const auto otherMethod = [this](const httplib::Request &request, httplib::Response &response) {
        refuse(response, request.path, { 404, {}, request.method + ": expected POST" }, false);
    };
    constexpr auto anyPath = "[^]*"; // a dot would stop at a line break
    m_server.Post(anyPath, onCall);
    m_server.Get(anyPath, otherMethod);
    m_server.Put(anyPath, otherMethod);
    m_server.Patch(anyPath, otherMethod);
    m_server.Delete(anyPath, otherMethod);
    m_server.Options(anyPath, otherMethod);
    m_server.set_error_handler(httplib::Server::HandlerWithResponse(
        [this](const httplib::Request &request, httplib::Response &response) {
            if (!response.body.empty())
                return httplib::Server::HandlerResponse::Unhandled;
            // The library turned the request away before any of our handlers saw it.
            const auto library = std::to_string(response.status);
            refuse(response, request.path,
                { 400, {}, "not a request that can be read (" + library + ")" }, false);
            return httplib::Server::HandlerResponse::Handled;
        }));
}

void Service::answerCall(const httplib::Request &request, httplib::Response &response)
{
    constexpr std::string_view base = "/v1.0/";
    const auto call = request.path.starts_with(base) ? request.path.substr(base.size()) : "";
    if (!isCall(call) || request.target != request.path)
        return refuse(response, request.target, { 404, {}, "no such call" }, false);

    const auto isOfClock = [](const Outcome &each) { return each.fault.is("clock"); };
    const auto late = m_outcomes.takeIf(call, isOfClock);
    const std::chrono::seconds off(late ? late->fault.number() : 0);
    auto judgement = m_judge.judge(request, call, std::chrono::system_clock::now() + off);
    if (judgement.refusal) {
        if (late) {
            m_count.addFault(call);
            judgement.refusal->reason += late->fault.note();
        }
        return refuse(response, call, *judgement.refusal, judgement.readable);
    }

    const auto outcome = late ? *late : m_outcomes.take(call);
    if (outcome.fault)
        m_count.addFault(call);
    if (outcome.delay.count() > 0 && !waitFor(outcome.delay))
        return;
    if (outcome.refuses()) {
        say(call,
            verdictOf(outcome.status, outcome.errorCode, outcome.message) + " (as set)"
                + outcome.fault.note());
        return send(response, envelopeOf(outcome.status, outcome.errorCode, outcome.message),
            outcome, true);
    }

    auto answer =
        m_calls.perform(call, judgement.parameters, "http://" + request.get_header_value("Host"));
    if (const auto *refusal = std::get_if<Refusal>(&answer))
        return refuse(response, call, *refusal, true);
    auto &[result, note] = std::get<CallResult>(answer);
    auto envelope = envelopeOf(outcome.status, outcome.errorCode, outcome.message);
    envelope["result"] = std::move(result);
    for (const auto &key : outcome.without) {
        envelope["result"].erase(key);
        if (key == "result")
            envelope.erase(key);
    }
    say(call, "accepted: " + note + outcome.fault.note());
    send(response, envelope, outcome, true);
}

void Service::refuse(
    httplib::Response &response, const std::string &call, const Refusal &refusal, bool readable)
{
    say(call, verdictOf(refusal.status, refusal.errorCode, refusal.reason));
    Outcome outcome;
    outcome.status = refusal.status;
    send(
        response, envelopeOf(refusal.status, refusal.errorCode, refusal.reason), outcome, readable);
}

void Service::send(
    httplib::Response &response, const json &envelope, const Outcome &outcome, bool readable)
{
    const auto &fault = outcome.fault;
    const auto encrypted = readable && !outcome.plain && fault.text != "flag:on";
    auto body = textOf(envelope, fault);
    if (encrypted)
        body =
            json { { "data", toBase64(cipherTextOf(body, fault, m_scenario.keys.secret)) } }.dump();
    if (fault.is("flag") ? fault.value == "on" : encrypted)
        response.set_header("X-TRZ-Encrypted", "1");
    if (fault.isOfFront())
        response.set_header(Front::faultHeader, fault.text);
    response.status = outcome.status;
    response.set_content(body, "application/json; charset=utf-8");
}

}
