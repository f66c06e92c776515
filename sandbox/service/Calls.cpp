#include "sandbox/service/Calls.h"

#include "sandbox/service/Countries.h"
#include "sandbox/service/CountryNames.h"

#include <algorithm>
#include <map>
#include <set>

namespace sandbox {
namespace {
using nlohmann::json;

std::string textOf(const json &parameters, const char *key)
{
    return parameters.value(key, std::string());
}

void put(json &object, const char *key, const std::optional<std::string> &value)
{
    if (value)
        object[key] = *value;
}

std::string percentEncoded(const std::string &text)
{
    static constexpr auto digits = "0123456789ABCDEF";
    static constexpr std::string_view plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string encoded;
    for (const auto c : text) {
        if (plain.find(c) != std::string_view::npos) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += '%';
        encoded += digits[byte >> 4U];
        encoded += digits[byte & 15U];
    }
    return encoded;
}

/// A title that the scenario does not change is told in the language, where that is known.
std::string titleOf(const Country &country, const std::string &language)
{
    static const auto own = [] {
        std::map<std::string, std::string> titles;
        for (const auto &each : allCountries())
            titles[each.countryCode] = each.title;
        return titles;
    }();
    const auto found = own.find(country.countryCode);
    const auto name = countryName(country.countryCode, language).text;
    const auto isOwn = found != own.end() && found->second == country.title;
    return isOwn && !name.empty() ? std::string(name) : country.title;
}

json verified(const std::string &sessionId)
{
    return { { "sessionId", sessionId }, { "validationStatus", true } };
}
}

Calls::Calls(const Scenario &scenario, State &state, std::string language)
    : m_scenario(scenario)
    , m_state(state)
    , m_language(std::move(language))
{
}

Answer<CallResult> Calls::perform(
    const std::string &call, const json &parameters, const std::string &ownUrl)
{
    if (call == "init")
        return init(parameters, ownUrl);
    if (call == "start")
        return start(parameters);
    if (call == "check")
        return check(parameters);
    if (call == "send-otp")
        return sendOtp(parameters);
    if (call == "check-otp")
        return checkOtp(parameters);
    if (call == "result")
        return result(parameters);
    if (call == "country")
        return country();
    return Refusal { 404, {}, '"' + call + "\": a form, but no answer of this service" };
}

CallResult Calls::init(const json &parameters, const std::string &ownUrl) const
{
    json result {
        { "validation", m_scenario.validation },
        { "description", m_scenario.texts.description.in(m_language) },
        { "list", json::array() },
        { "appPackageList", json::array() },
        { "localizationList", json::array() },
    };
    put(result, "alternativeValidation", m_scenario.alternative);
    if (m_scenario.alternative)
        result["alternativeValidationDescription"] = m_scenario.texts.alternative.in(m_language);
    if (parameters.contains("countryCode"))
        result["countryCode"] = parameters["countryCode"];
    for (const auto &app : m_scenario.apps) {
        json kit { { "app", app.app }, { "name", app.name } };
        put(kit, "appPackage", app.appPackage);
        if (app.text)
            kit["text"] = app.text->in(m_language);
        put(kit, "bgColour", app.bgColour);
        put(kit, "textColour", app.textColour);
        if (app.icon)
            kit["icon"] = app.icon->starts_with('/') ? ownUrl + *app.icon : *app.icon;
        result["list"].push_back(std::move(kit));
    }
    for (const auto &package : m_scenario.appPackageList)
        result["appPackageList"].push_back({ { "package", package } });
    return { std::move(result), std::to_string(m_scenario.apps.size()) + " apps" };
}

Answer<CallResult> Calls::start(const json &parameters)
{
    const auto name = textOf(parameters, "app");
    const auto app = std::find_if(m_scenario.apps.begin(), m_scenario.apps.end(),
        [&name](const App &each) { return each.app == name; });
    if (app == m_scenario.apps.end() || !app->appPackage)
        return Refusal { 404, {}, "\"app\": not on offer" };

    if (parameters.contains("installedApps")) {
        // The client probes what init listed: all of it, and nothing else.
        const auto report = json::parse(textOf(parameters, "installedApps"));
        const std::set<std::string> listed(
            m_scenario.appPackageList.begin(), m_scenario.appPackageList.end());
        std::set<std::string> reported;
        for (const auto &entry : report.items())
            reported.insert(entry.key());
        if (reported != listed)
            return Refusal { 400, {}, "\"installedApps\": not the schemes that init lists" };
    }

    const auto message = m_state.prepareMessage(name, m_language);
    const auto link = *app->appPackage + "send?app=" + percentEncoded(name)
        + "&to=" + percentEncoded(m_scenario.texts.recipient.in(m_language))
        + "&text=" + percentEncoded(message.text);
    return CallResult { { { "deeplink", link }, { "reference", message.reference },
                            { "type", "3rdparty" } },
        app->name + ", reference " + message.reference };
}

Answer<CallResult> Calls::check(const json &parameters)
{
    auto answer = m_state.checkMessage(textOf(parameters, "reference"));
    if (auto *refusal = std::get_if<Refusal>(&answer))
        return std::move(*refusal);
    const auto &sessionId = std::get<std::string>(answer);
    if (sessionId.empty())
        return CallResult { { { "validationStatus", false } }, "the message has not come" };
    return CallResult { verified(sessionId), "session " + sessionId };
}

Answer<std::string> Calls::fullNumber(
    const std::string &number, const std::string &countryCode, bool withPhoneCode) const
{
    const auto country = std::find_if(m_scenario.countries.begin(), m_scenario.countries.end(),
        [&countryCode](const Country &each) { return each.countryCode == countryCode; });
    if (country == m_scenario.countries.end())
        return Refusal { 400, {}, "\"countryCode\": no country of the list" };
    const Refusal noNumber { 400, {}, "This is not a phone number." };
    if (withPhoneCode && !number.starts_with(country->phoneCode))
        return Refusal { 400, {}, "\"phoneNumber\": does not begin with the country's phone code" };

    // People group digits; what is left must be dialled as it stands.
    std::string full = "+";
    for (const auto c : (withPhoneCode ? std::string() : country->phoneCode) + number) {
        if (c >= '0' && c <= '9')
            full += c;
        else if (std::string_view(" +-().").find(c) == std::string_view::npos)
            return noNumber;
    }
    constexpr std::size_t least = 7;
    constexpr std::size_t most = 15; // as E.164 has it
    if (full.size() - 1 < least || full.size() - 1 > most)
        return noNumber;
    return full;
}

std::string Calls::numberOf(const std::string &call, const json &parameters) const
{
    if (call == "result") {
        const auto session = m_state.session(textOf(parameters, "session_id"));
        return session ? session->number : std::string();
    }
    if (call != "send-otp" && call != "check-otp")
        return {};
    const auto number = fullNumber(
        textOf(parameters, "phoneNumber"), textOf(parameters, "countryCode"), call == "send-otp");
    const auto *const full = std::get_if<std::string>(&number);
    return full ? *full : std::string();
}

Answer<CallResult> Calls::sendOtp(const json &parameters)
{
    auto number =
        fullNumber(textOf(parameters, "phoneNumber"), textOf(parameters, "countryCode"), true);
    if (auto *refusal = std::get_if<Refusal>(&number))
        return std::move(*refusal);
    const auto &full = std::get<std::string>(number);
    const auto sent = m_state.sendCode(full);
    return CallResult { { { "reference", sent.reference } },
        "code " + sent.code + " to the number ending in " + full.substr(full.size() - 2)
            + ", reference " + sent.reference };
}

Answer<CallResult> Calls::checkOtp(const json &parameters)
{
    auto number =
        fullNumber(textOf(parameters, "phoneNumber"), textOf(parameters, "countryCode"), false);
    if (auto *refusal = std::get_if<Refusal>(&number))
        return std::move(*refusal);
    auto answer = m_state.checkCode(
        textOf(parameters, "reference"), std::get<std::string>(number), textOf(parameters, "code"));
    if (auto *refusal = std::get_if<Refusal>(&answer))
        return std::move(*refusal);
    const auto &sessionId = std::get<std::string>(answer);
    return CallResult { verified(sessionId), "session " + sessionId };
}

Answer<CallResult> Calls::result(const json &parameters) const
{
    const auto id = textOf(parameters, "session_id");
    const auto session = m_state.session(id);
    if (!session)
        return Refusal { 404, {}, "\"session_id\": unknown" };
    if (session->expired)
        return Refusal { 400, {}, "\"session_id\": too old" };
    return CallResult { verified(id), "session " + id };
}

CallResult Calls::country() const
{
    // By name, which is another order in each language; a scenario's own list stays in its own.
    std::multimap<int, const Country &> countries;
    const bool isOwn = m_scenario.countries != allCountries();
    for (const auto &country : m_scenario.countries)
        countries.emplace(isOwn ? 0 : countryName(country.countryCode, m_language).place, country);
    json list = json::array();
    for (const auto &[place, country] : countries)
        list.push_back({ { "countryCode", country.countryCode },
            { "title", titleOf(country, m_language) }, { "phoneCode", country.phoneCode } });
    return { { { "list", std::move(list) } },
        std::to_string(m_scenario.countries.size()) + " countries" };
}

}
