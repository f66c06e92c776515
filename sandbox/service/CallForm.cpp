#include "sandbox/service/CallForm.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace sandbox {
namespace {
using nlohmann::json;
using Objection = std::optional<std::string>;

struct Key {
    std::string_view name;
    bool required = false;
    std::function<Objection(const std::string &)> test = {};
};

std::string inQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

/// Nothing when \p right, else what was expected.
Objection expecting(bool right, std::string_view expected)
{
    return right ? Objection() : Objection("expected " + std::string(expected));
}

Objection testCountryCode(const std::string &text)
{
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    return expecting(
        text.size() == 2 && std::all_of(text.begin(), text.end(), isLetter), "two letters");
}

Objection testTimeZone(const std::string &text)
{
    const auto isPart = [](char c) {
        return (std::isalnum(static_cast<unsigned char>(c)) != 0) || c == '/' || c == '_'
            || c == '-' || c == '+' || c == ':';
    };
    return expecting(std::all_of(text.begin(), text.end(), isPart), "the name of a time zone");
}

/// The report is a text that itself holds JSON: a scheme to "1" (installed) or "0".
Objection testInstalledApps(const std::string &text)
{
    const auto report = json::parse(text, nullptr, false);
    if (!report.is_object())
        return "expected the text of a JSON object";
    for (const auto &[scheme, installed] : report.items())
        if (installed != "0" && installed != "1")
            return inQuotes(scheme) + R"(: expected "0" or "1")";
    return expecting(
        canonicalText(report) == text, "compact JSON with sorted keys and escaped slashes");
}

const std::vector<Key> &keysOf(std::string_view call)
{
    static const std::vector<Key> none;
    static const std::vector<std::pair<std::string_view, std::vector<Key>>> forms {
        { "init",
            { { "deviceName", true }, { "timezone", true, testTimeZone },
                { "countryCode", false, testCountryCode } } },
        { "start",
            { { "app", true }, { "countryCode", false, testCountryCode },
                { "installedApps", false, testInstalledApps } } },
        { "check", { { "reference", true } } },
        { "send-otp", { { "phoneNumber", true }, { "countryCode", true, testCountryCode } } },
        { "check-otp",
            { { "phoneNumber", true }, { "countryCode", true, testCountryCode }, { "code", true },
                { "reference", true } } },
        { "result", { { "session_id", true } } },
        { "country", { { "countryCode", false, testCountryCode } } },
    };
    for (const auto &[name, keys] : forms)
        if (name == call)
            return keys;
    return none;
}
}

bool isCall(std::string_view name)
{
    return std::find(std::begin(callNames), std::end(callNames), name) != std::end(callNames);
}

Objection faultOfParameters(std::string_view call, const json &parameters)
{
    const auto &keys = keysOf(call);
    for (const auto &item : parameters.items()) {
        const auto &name = item.key();
        const auto &value = item.value();
        const auto key = std::find_if(
            keys.begin(), keys.end(), [&name](const Key &each) { return each.name == name; });
        if (key == keys.end())
            return inQuotes(name) + ": not a key of this call";
        if (!value.is_string())
            return inQuotes(name) + ": expected text, got " + value.type_name();
        const auto text = value.get<std::string>();
        if (text.empty())
            return inQuotes(name) + ": empty; leave the key out";
        if (const auto fault = key->test ? key->test(text) : Objection())
            return inQuotes(name) + ": " + *fault;
    }
    for (const auto &key : keys)
        if (key.required && !parameters.contains(std::string(key.name)))
            return inQuotes(key.name) + ": missing";
    return std::nullopt;
}

bool isFullNumber(std::string_view text)
{
    return text.size() > 1 && text.front() == '+'
        && std::all_of(text.begin() + 1, text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string canonicalText(const json &value)
{
    std::string text;
    for (const auto c : value.dump()) {
        if (c == '/')
            text += '\\';
        text += c;
    }
    return text;
}

}
