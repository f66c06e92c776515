// What a developer writes for the sandbox, and what a client sends to it.
#include "fuzz/Fuzz.h"
#include "sandbox/service/AnswerFaults.h"
#include "sandbox/service/CallForm.h"
#include "sandbox/service/Cipher.h"
#include "sandbox/service/Judge.h"

using namespace sandbox;
using nlohmann::json;

namespace {

void readScenario(const std::string &text)
{
    try {
        const json given = json::parse(text, nullptr, false);
        require(
            given.is_discarded() || Scenario::fromJson(given).keys.secret.size() == 32, "usable");
    } catch (const ScenarioError &error) {
        require(std::string(error.what()).find(": ") != std::string::npos, "names the field");
    }
}

void readFault(const std::string &text)
{
    const std::string key(32, 'k');
    const std::string plain = R"({"meta":{"httpStatusCode":200},"result":{"list":[{}]}})";
    try {
        const Fault fault = Fault::parse(text);
        require(fault && fault.text == text, "a fault is told as written");
        if (!text.starts_with("json:depth:")) // of megabytes
            (void)textOf(json::parse(plain), fault);
        require(cipherTextOf(plain, fault, key) == encrypt(plain, key) || fault.isOfCipher(),
            "only its own faults change the cipher text");
    } catch (const FaultError &) { // says what was expected
    }
}

void judgeRequest(const std::string &text)
{
    const std::string key(32, 'k');
    const std::string stamp = "1700000000000";
    const std::string_view call = callNames[text.size() % std::size(callNames)];
    std::string unescaped;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text.compare(i, 2, "\\/") != 0)
            unescaped += text[i];
    constexpr auto signingKey = "GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/";

    const Judge judge({ key, "client" }, std::chrono::seconds(60));
    const auto judged = [&](const std::string &body, const std::string &signature) {
        httplib::Request request;
        request.headers = { { "Content-Type", "application/json; charset=utf-8" },
            { "User-Agent", "iOS" }, { "X-TRZ-Os", "ios 1" }, { "X-TRZ-Sdk-Version", "1.0" },
            { "X-TRZ-Req-Timestamp", stamp }, { "X-TRZ-Req-Signature", signature },
            { "X-TRZ-Encrypted", "1" }, { "X-TRZ-Client-Key", "client" } };
        request.body = body;
        return judge.judge(
            request, call, std::chrono::system_clock::time_point(std::chrono::seconds(1700000000)));
    };
    const auto body = json { { "data", toBase64(encrypt(text, key)) } }.dump();
    const auto right = judged(body, toBase64(hmacSha256(stamp + "-" + unescaped, signingKey)));
    const json parameters = json::parse(text, nullptr, false);
    const bool isGood = parameters.is_object() && canonicalText(parameters) == text
        && !faultOfParameters(call, parameters);
    require(isGood == !right.refusal, "just what is canonical and has the call's form is taken");
    require(right.refusal || right.parameters == parameters, "and taken as sent");
    require(judged(body, text).refusal.has_value(), "nobody gets in without the signature");
    require(!judged(text, "").readable || text.find("data") != std::string::npos, "nor unread");
}

} // namespace

void fuzz(const QByteArray &bytes)
{
    constexpr void (*readers[])(const std::string &) = { readScenario, readFault, judgeRequest };
    if (!bytes.isEmpty())
        readers[static_cast<std::uint8_t>(bytes[0]) % std::size(readers)](
            bytes.sliced(1).toStdString());
}
