#include "sandbox/service/OutcomeReader.h"

#include "sandbox/service/CallForm.h"
#include "sandbox/service/Refusal.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

namespace sandbox {
namespace {
Outcome refusing(int status, std::string message)
{
    Outcome outcome;
    outcome.status = status;
    outcome.message = std::move(message);
    return outcome;
}

Outcome without(std::string key)
{
    Outcome outcome;
    outcome.without = { std::move(key) };
    return outcome;
}

Outcome faulty(const char *fault)
{
    Outcome outcome;
    outcome.fault = Fault::parse(fault);
    return outcome;
}

const std::map<std::string, Outcome> &commonOutcomes()
{
    static const std::map<std::string, Outcome> outcomes {
        { "success", {} },
        { "noResult", without("result") },
        { "noReference", without("reference") },
        { "noSessionId", without("sessionId") },
        { "wrongCode", refusing(400, "This code is not right.") },
        { "expiredCode", refusing(400, "This code is too old.") },
        { "limit", refusing(429, "Too many attempts.") },
        { "serverError", refusing(500, "Something went wrong here.") },
        { "silence", faulty("silence") },
        { "drip", faulty("drip") },
        { "cut", faulty("cut") },
        { "garbage", faulty("garbage") },
    };
    return outcomes;
}

std::string listOf(const std::vector<std::string> &names)
{
    std::string list;
    for (const auto &name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

Outcome commonOutcome(const ScenarioReader &reader)
{
    const auto found = commonOutcomes().find(reader.text());
    if (found == commonOutcomes().end())
        reader.fail("no outcome has this name; there are " + listOf(outcomeNames()));
    return found->second;
}

Outcome readOutcome(const ScenarioReader &reader)
{
    if (reader.isText())
        return commonOutcome(reader);

    reader.expectKeys(
        { "like", "status", "errorCode", "message", "without", "delayMs", "plain", "fault" });
    auto outcome = reader.has("like") ? commonOutcome(reader.at("like")) : Outcome();
    if (reader.has("status")) {
        // A client takes any other number for a broken answer.
        static constexpr int known[] = { 200, 201, 400, 403, 404, 429, 500 };
        outcome.status = reader.at("status").number(200, 500);
        if (std::find(std::begin(known), std::end(known), outcome.status) == std::end(known))
            reader.at("status").fail("expected 200, 201, 400, 403, 404, 429 or 500");
    }
    if (reader.has("errorCode")) {
        static constexpr std::string_view known[] = { ErrorCode::userNotFound,
            ErrorCode::tokenNotFound, ErrorCode::signatureMismatch, ErrorCode::encryptionRequired };
        outcome.errorCode = reader.at("errorCode").text();
        if (std::find(std::begin(known), std::end(known), outcome.errorCode) == std::end(known))
            reader.at("errorCode").fail("expected 403001, 403002, 403003 or 403026, as text");
    }
    if (reader.has("message"))
        outcome.message = reader.at("message").text();
    if (reader.has("without")) {
        outcome.without.clear();
        for (const auto &key : reader.at("without").items())
            outcome.without.push_back(key.text());
    }
    if (reader.has("delayMs"))
        outcome.delay = std::chrono::milliseconds(reader.at("delayMs").number(0, 600000));
    if (reader.has("plain"))
        outcome.plain = reader.at("plain").flag();
    if (reader.has("fault")) {
        try {
            outcome.fault = Fault::parse(reader.at("fault").text());
        } catch (const FaultError &error) {
            reader.at("fault").fail(error.what());
        }
    }
    if (outcome.plain && outcome.fault.isOfCipher())
        reader.fail("this fault needs an answer that is encrypted, \"plain\" is none");
    return outcome;
}

/// Not every outcome can be played everywhere.
void expectPlayable(const std::string &call, const Outcome &outcome, const ScenarioReader &reader)
{
    const auto &fault = outcome.fault;
    const auto isAnswer = outcome.status != 200 || !outcome.message.empty()
        || !outcome.errorCode.empty() || !outcome.without.empty() || outcome.plain;
    if (call == connectionName) {
        if (isAnswer || outcome.delay.count() > 0 || (fault && !fault.isOnAccept()))
            reader.fail("a connection takes \"success\" and faults @accept only");
    } else if (fault.isOnAccept()) {
        reader.fail("the call is not known on accept; faults @accept go with \"connection\"");
    } else if (call == iconName && (isAnswer || (fault && !fault.isOfFront()))) {
        reader.fail("a picture takes delays and the faults of wire and HTTP only");
    }
}

constexpr std::string_view numbersKey = "numbers";
constexpr std::string_view clientsKey = "clients";

void readCalls(const ScenarioReader &reader, const std::string &whose, OutcomeLists &lists)
{
    for (const auto &call : reader.keys()) {
        if (whose.empty() && (call == numbersKey || call == clientsKey))
            continue;
        const auto value = reader.at(call);
        if (!isCall(call) && (!whose.empty() || (call != connectionName && call != iconName)))
            value.fail("no call has this name; there are "
                + listOf({ std::begin(callNames), std::end(callNames) })
                + (whose.empty() ? ", connection, icon" : ""));
        auto &list = lists[{ call, whose }];
        if (value.isNull())
            continue;
        for (const auto &item : value.isList() ? value.items() : std::vector { value }) {
            list.push_back(readOutcome(item));
            list.back().said = item.json();
            expectPlayable(call, list.back(), item);
            // Whose a request is stands in it, and its age is judged before it is read.
            const auto &fault = list.back().fault;
            if (!whose.empty() && (fault.isWithinRequest() || fault.is("clock")))
                item.fail("this fault comes before the request is read; set it for all");
        }
        if (list.empty())
            value.fail("an empty list; null says that nothing is set");
    }
}
}

OutcomeLists readOutcomes(const ScenarioReader &reader)
{
    OutcomeLists lists;
    readCalls(reader, {}, lists);
    if (reader.has(numbersKey)) {
        const auto numbers = reader.at(numbersKey);
        for (const auto &number : numbers.keys()) {
            if (!isFullNumber(number))
                numbers.at(number).fail("expected the full number: a plus and digits");
            readCalls(numbers.at(number), whoseNumber(number), lists);
        }
    }
    if (reader.has(clientsKey)) {
        const auto clients = reader.at(clientsKey);
        for (const auto &client : clients.keys())
            readCalls(clients.at(client), whoseClient(client), lists);
    }
    return lists;
}

std::vector<std::string> outcomeNames()
{
    std::vector<std::string> names;
    for (const auto &[name, outcome] : commonOutcomes())
        names.push_back(name);
    return names;
}

nlohmann::json jsonOf(const OutcomeLists &lists)
{
    auto result = nlohmann::json::object();
    for (const auto &[key, list] : lists) {
        const auto blank = key.whose.find(' ');
        auto &calls = key.whose.empty()
            ? result
            : result[key.whose.substr(0, blank) + "s"][key.whose.substr(blank + 1)];
        for (const auto &outcome : list)
            calls[key.call].push_back(nlohmann::json::parse(outcome.said));
    }
    return result;
}

}
