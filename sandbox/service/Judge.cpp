#include "sandbox/service/Judge.h"

#include "sandbox/service/CallForm.h"
#include "sandbox/service/Cipher.h"
#include "sandbox/service/SignatureHint.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace sandbox {
namespace {
using nlohmann::json;

constexpr auto timeStampHeader = "X-TRZ-Req-Timestamp";

/// What may stand beside the client's own headers: transport, and what the server itself adds.
constexpr std::string_view otherHeaders[] = { "host", "connection", "content-length",
    "content-type", "accept-encoding", "accept-language", "accept", "remote_addr", "remote_port",
    "local_addr", "local_port" };

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool isOs(const std::string &text)
{
    return text.starts_with("ios ") && text.size() > 4 && text[4] != ' ';
}

bool isLanguage(const std::string &text)
{
    return text.empty()
        || (text.size() >= 2 && text.size() <= 8
            && std::all_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; }));
}

bool isDeviceId(const std::string &text)
{
    if (text.empty())
        return true;
    if (text.size() != 36)
        return false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto c = text[at];
        const auto dash = at == 8 || at == 13 || at == 18 || at == 23;
        if (dash ? c != '-' : !((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F')))
            return false;
    }
    return true;
}

struct HeaderRule {
    const char *name;
    /// A header that may be empty may be missing too: the transport drops the empty ones.
    bool mayBeEmpty;
    bool (*test)(const std::string &);
    const char *expected;
};

const HeaderRule headerRules[] = {
    { "User-Agent", false, [](const std::string &text) { return text == "iOS"; }, "\"iOS\"" },
    { "X-TRZ-Os", false, isOs, "\"ios \" and a version" },
    { "X-TRZ-Sdk-Version", false, [](const std::string &text) { return text == "1.0"; },
        "\"1.0\"" },
    { "X-TRZ-Client-Device-Id", true, isDeviceId, "an upper-case UUID, or nothing" },
    { "X-TRZ-Lang", true, isLanguage, "a lower-case language code, or nothing" },
    { timeStampHeader, false, [](const std::string &) { return true; }, "" },
    { "X-TRZ-Req-Signature", false, [](const std::string &) { return true; }, "" },
    { "X-TRZ-Encrypted", false, [](const std::string &) { return true; }, "" },
    { "X-TRZ-Client-Key", true, [](const std::string &) { return true; }, "" },
};

bool isRuled(const std::string &name)
{
    return std::any_of(std::begin(headerRules), std::end(headerRules),
        [&name](const HeaderRule &rule) { return lowered(rule.name) == name; });
}

/// Digits that end in "000", as milliseconds since 1970.
std::optional<std::chrono::milliseconds> timeOf(const std::string &text)
{
    long long number = 0;
    const auto *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number <= 0 || !text.ends_with("000"))
        return std::nullopt;
    return std::chrono::milliseconds(number);
}

Refusal forbidden(const char *code, std::string reason) { return { 403, code, std::move(reason) }; }
}

Judge::Judge(Keys keys, std::chrono::seconds tolerance)
    : m_keys(std::move(keys))
    , m_tolerance(tolerance)
{
}

std::optional<Refusal> Judge::faultOfHeaders(
    const httplib::Request &request, std::chrono::system_clock::time_point now) const
{
    if (request.get_header_value("Content-Type") != "application/json; charset=utf-8")
        return Refusal { 400, {}, "Content-Type: expected \"application/json; charset=utf-8\"" };
    for (const auto &rule : headerRules) {
        const std::string name = rule.name;
        const auto count = request.get_header_value_count(rule.name);
        if (count > 1)
            return Refusal { 400, {}, name + ": stands " + std::to_string(count) + " times" };
        if (count == 0 && !rule.mayBeEmpty)
            return Refusal { 400, {}, name + ": missing" };
        if (!rule.test(request.get_header_value(rule.name)))
            return Refusal { 400, {}, name + ": expected " + rule.expected };
    }
    for (const auto &header : request.headers) {
        const auto name = lowered(header.first);
        if (!isRuled(name)
            && std::find(std::begin(otherHeaders), std::end(otherHeaders), name)
                == std::end(otherHeaders))
            return Refusal { 400, {}, header.first + ": not a header of a request" };
    }

    const auto sent = timeOf(request.get_header_value(timeStampHeader));
    if (!sent)
        return Refusal { 400, {},
            std::string(timeStampHeader) + ": expected milliseconds since 1970 ending in 000" };
    const auto age =
        std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch() - *sent);
    if (std::chrono::abs(age) > m_tolerance)
        return Refusal { 403, {},
            std::string(timeStampHeader) + ": " + std::to_string(std::abs(age.count()))
                + (age.count() > 0 ? " seconds old" : " seconds ahead") };
    return std::nullopt;
}

std::optional<Refusal> Judge::faultOfKey(const httplib::Request &request) const
{
    if (request.get_header_value("X-TRZ-Encrypted") != "1")
        return forbidden(ErrorCode::encryptionRequired, "X-TRZ-Encrypted: expected \"1\"");
    const auto key = request.get_header_value("X-TRZ-Client-Key");
    if (key.empty())
        return forbidden(ErrorCode::tokenNotFound, "X-TRZ-Client-Key: empty");
    if (key != m_keys.client)
        return forbidden(ErrorCode::userNotFound, "X-TRZ-Client-Key: not the scenario's");
    return std::nullopt;
}

std::optional<Refusal> Judge::read(const httplib::Request &request, std::string &plain) const
{
    const auto body = json::parse(request.body, nullptr, false);
    if (body.is_discarded())
        return Refusal { 400, {}, "body: not JSON" };
    if (!body.is_object() || body.size() != 1 || !body.contains("data"))
        return forbidden(ErrorCode::encryptionRequired, "body: expected one key, \"data\"");
    if (!body["data"].is_string())
        return forbidden(ErrorCode::encryptionRequired,
            std::string("body: \"data\" is ") + body["data"].type_name() + ", not cipher text");
    const auto cipherText = fromBase64(body["data"].get<std::string>());
    if (!cipherText)
        return Refusal { 400, {}, "body: \"data\" is not Base64" };
    auto text = decrypt(*cipherText, m_keys.secret);
    if (!text)
        return Refusal { 400, {}, "body: \"data\" does not decrypt with the scenario's secret" };
    plain = std::move(*text);
    return std::nullopt;
}

Judgement Judge::judge(const httplib::Request &request, std::string_view call,
    std::chrono::system_clock::time_point now) const
{
    Judgement judgement;
    auto &plain = judgement.plain;
    judgement.refusal = faultOfHeaders(request, now);
    if (!judgement.refusal)
        judgement.refusal = faultOfKey(request);
    if (!judgement.refusal)
        judgement.refusal = read(request, plain);
    if (judgement.refusal)
        return judgement;

    auto parameters = json::parse(plain, nullptr, false);
    if (!parameters.is_object()) {
        // A wrong secret passes the padding once in 256 times and is noticed here.
        judgement.refusal = Refusal { 400, {}, "body: decrypts to no JSON object" };
        return judgement;
    }
    judgement.readable = true;
    const auto canonical = canonicalText(parameters);
    const auto timeStamp = request.get_header_value(timeStampHeader);
    const auto signature = request.get_header_value("X-TRZ-Req-Signature");
    if (canonical != plain) {
        judgement.refusal =
            Refusal { 400, {}, "body: expected compact JSON with sorted keys and escaped slashes" };
        judgement.comparison = Comparison { "the parameters", canonical, plain, "" };
    } else if (signature != signatureOf(signedTextOf(timeStamp, plain))) {
        judgement.refusal = forbidden(ErrorCode::signatureMismatch,
            "X-TRZ-Req-Signature: does not match the timestamp and the parameters");
        judgement.comparison = compareSignature(
            { timeStamp, plain, request.body, signature }, m_keys.secret, m_keys.client);
    } else if (auto fault = faultOfParameters(call, parameters)) {
        judgement.refusal = Refusal { 400, {}, std::move(*fault) };
    } else {
        judgement.parameters = std::move(parameters);
    }
    return judgement;
}

}
