#include "sandbox/service/OutcomeReader.h"

#include "sandbox/service/CallForm.h"
#include "sandbox/service/Refusal.h"

#include <algorithm>
#include <iterator>
#include <map>

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

Outcome commonOutcome(const ScenarioReader &reader)
{
    const auto found = commonOutcomes().find(reader.text());
    if (found == commonOutcomes().end())
        reader.fail("no outcome has this name");
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
}

std::map<std::string, std::vector<Outcome>> readOutcomes(const ScenarioReader &reader)
{
    std::map<std::string, std::vector<Outcome>> lists;
    for (const auto &call : reader.keys()) {
        const auto value = reader.at(call);
        if (!isCall(call) && call != connectionName && call != iconName)
            value.fail("no call has this name");
        auto &list = lists[call];
        for (const auto &item : value.isList() ? value.items() : std::vector { value }) {
            list.push_back(readOutcome(item));
            expectPlayable(call, list.back(), item);
        }
        if (list.empty())
            value.fail("an empty list");
    }
    return lists;
}

}
