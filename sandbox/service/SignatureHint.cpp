#include "sandbox/service/SignatureHint.h"

#include "sandbox/service/Cipher.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <vector>

namespace sandbox {
namespace {
using nlohmann::json;

/// Every client signs with this; it tells a client from a stranger, not one host from another.
constexpr std::string_view signingKey =
    "GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/";

struct Guess {
    std::string text;
    std::string note;
};

std::string withBareSlashes(const std::string &text)
{
    std::string bare;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (text.compare(at, 2, "\\/") != 0)
            bare += text[at];
    return bare;
}

/// The parameters with a blank behind each comma and colon, as many libraries write them.
std::string withBlanks(const json &parameters)
{
    std::string text = "{";
    for (const auto &[key, value] : parameters.items())
        text += (text.size() > 1 ? ", " : "") + json(key).dump() + ": " + value.dump();
    return text + "}";
}

/// Every order of the keys: no call has more than four.
void addOrders(std::vector<Guess> &guesses, const json &parameters, const std::string &lead)
{
    constexpr std::size_t mostKeys = 4;
    std::vector<std::string> keys;
    for (const auto &item : parameters.items())
        keys.push_back(item.key());
    if (keys.size() > mostKeys)
        return;
    while (std::next_permutation(keys.begin(), keys.end())) {
        std::string text = "{";
        for (const auto &key : keys)
            text += (text.size() > 1 ? "," : "") + json(key).dump() + ":" + parameters[key].dump();
        guesses.push_back({ lead + text + "}", "its keys are not sorted" });
    }
}

std::vector<Guess> guessesFor(const SignedRequest &request)
{
    const auto &stamp = request.timeStamp;
    const auto bare = withBareSlashes(request.plain);
    std::vector<Guess> guesses {
        { stamp + "-" + bare, "" },
        { stamp + "-" + request.plain, "its slashes are escaped; signed are bare ones" },
        { bare, "the timestamp is not in it" },
        { stamp + bare, "the dash behind the timestamp is missing" },
        { bare + "-" + stamp, "the timestamp stands behind" },
        { stamp.substr(0, stamp.size() - std::min<std::size_t>(3, stamp.size())) + "-" + bare,
            "its timestamp is in seconds" },
        { stamp + "-" + request.body, "the encrypted body is signed; the parameters should be" },
        { stamp + "-{}", "no parameters are in it" },
        { stamp + "-", "no parameters are in it" },
        { stamp, "no parameters are in it" },
    };
    const auto body = json::parse(request.body, nullptr, false);
    if (body.is_object() && body.contains("data") && body["data"].is_string())
        guesses.push_back({ stamp + "-" + body["data"].get<std::string>(),
            "the cipher text is signed; the parameters should be" });
    const auto parameters = json::parse(request.plain, nullptr, false);
    if (parameters.is_object()) {
        guesses.push_back(
            { stamp + "-" + withBlanks(parameters), "blanks stand between its keys and values" });
        addOrders(guesses, parameters, stamp + "-");
    }
    return guesses;
}

std::string inHex(const std::string &bytes)
{
    static constexpr auto digits = "0123456789abcdef";
    std::string text;
    for (const auto c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

/// How \p mac was written as \p signature; nothing when it is another.
std::optional<std::string> spellingOf(const std::string &mac, const std::string &signature)
{
    const auto base64 = toBase64(mac);
    auto lowered = signature;
    std::transform(lowered.begin(), lowered.end(), lowered.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (signature == base64)
        return "";
    if (lowered == inHex(mac))
        return "the signature is written in hexadecimal digits; expected is Base64";
    auto forUrls = base64;
    std::replace(forUrls.begin(), forUrls.end(), '+', '-');
    std::replace(forUrls.begin(), forUrls.end(), '/', '_');
    if (signature == forUrls || signature + "=" == forUrls || signature + "=" == base64)
        return "the signature is written in the Base64 of URLs, or lacks its padding";
    if (signature == toBase64(inHex(mac)))
        return "the signature is Base64 of hexadecimal digits; expected is Base64 of the bytes";
    return std::nullopt;
}
}

std::string signedTextOf(const std::string &timeStamp, const std::string &plain)
{
    return timeStamp + "-" + withBareSlashes(plain);
}

std::string signatureOf(const std::string &text) { return toBase64(hmacSha256(text, signingKey)); }

Comparison compareSignature(
    const SignedRequest &request, const std::string &secret, const std::string &client)
{
    const auto hexSecret = inHex(secret);
    const std::pair<std::string_view, const char *> keys[] = {
        { signingKey, "" },
        { client, "signed with the client key in place of the signing key" },
        { secret, "signed with the secret in place of the signing key" },
        { hexSecret, "signed with the digits of the secret in place of the signing key" },
    };
    const auto expected = signedTextOf(request.timeStamp, request.plain);
    for (const auto &[key, keyNote] : keys)
        for (const auto &guess : guessesFor(request))
            if (const auto spelling = spellingOf(hmacSha256(guess.text, key), request.signature)) {
                std::string note = keyNote;
                for (const auto &each : { guess.note, *spelling })
                    if (!each.empty())
                        note += (note.empty() ? "" : "; ") + each;
                return { "the signed text", expected, guess.text, note };
            }
    return {
        "the signature of " + expected, signatureOf(expected), request.signature,
        "none of the usual mistakes: the text, the key or the timestamp that was signed is another"
    };
}

}
