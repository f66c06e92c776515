#include "sandbox/service/OutcomeReader.h"

#include "sandbox/service/Refusal.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace sandbox {
namespace {
using Fault = Outcome::Fault;

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

Outcome faulty(Fault fault)
{
    Outcome outcome;
    outcome.fault = fault;
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
        { "silence", faulty(Fault::silence) },
        { "drip", faulty(Fault::drip) },
        { "cut", faulty(Fault::cut) },
        { "garbage", faulty(Fault::garbage) },
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

    reader.expectKeys({ "like", "status", "errorCode", "message", "without", "delayMs", "plain" });
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
    return outcome;
}
}

std::vector<Outcome> readOutcomes(const ScenarioReader &reader)
{
    if (!reader.isList())
        return { readOutcome(reader) };
    std::vector<Outcome> outcomes;
    for (const auto &item : reader.items())
        outcomes.push_back(readOutcome(item));
    if (outcomes.empty())
        reader.fail("an empty list");
    return outcomes;
}

}
