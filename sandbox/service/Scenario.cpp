#include "sandbox/service/Scenario.h"

#include "sandbox/service/Cipher.h"
#include "sandbox/service/OutcomeReader.h"
#include "sandbox/service/ScenarioReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

namespace sandbox {
namespace {
using nlohmann::json;
constexpr int secondsOfDay = 24 * 60 * 60; // s

/// \return the characters of \p text, which is UTF-8
std::ptrdiff_t lengthOf(const std::string &text)
{
    return std::count_if(text.begin(), text.end(),
        [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U; });
}

Keys readKeys(const ScenarioReader &reader)
{
    reader.expectKeys({ "secret", "client" });
    const auto secret = reader.at("secret");
    auto bytes = fromHex(secret.text());
    if (!bytes || bytes->size() != 32)
        secret.fail("expected 64 hexadecimal digits");
    return { std::move(*bytes), reader.at("client").nonEmptyText() };
}

bool isLanguageCode(const std::string &text)
{
    return text.size() >= 2 && text.size() <= 8
        && std::all_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

/// A text, or an object of texts by language; each passes \p test.
LocalText readLocal(
    const ScenarioReader &reader, const std::function<void(const ScenarioReader &)> &test)
{
    if (reader.isText()) {
        test(reader);
        return { { { "en", reader.text() } } };
    }
    LocalText local;
    for (const auto &language : reader.keys()) {
        if (!isLanguageCode(language))
            reader.at(language).fail("expected a language by its lower-case code, such as \"de\"");
        test(reader.at(language));
        local.byLanguage[language] = reader.at(language).text();
    }
    if (local.byLanguage.empty())
        reader.fail("no text in any language");
    return local;
}

Texts readTexts(const ScenarioReader &reader)
{
    reader.expectKeys({ "description", "alternative", "message", "recipient" });
    const auto any = [](const ScenarioReader &each) { static_cast<void>(each.text()); };
    const auto nonEmpty = [](const ScenarioReader &each) {
        static_cast<void>(each.nonEmptyText());
    };
    const auto withCode = [](const ScenarioReader &each) {
        if (each.text().find("{code}") == std::string::npos)
            each.fail("expected a text with {code} in it, which tells one message from another");
    };
    return { readLocal(reader.at("description"), any), readLocal(reader.at("alternative"), any),
        readLocal(reader.at("message"), withCode), readLocal(reader.at("recipient"), nonEmpty) };
}

std::string readScheme(const ScenarioReader &reader)
{
    auto text = reader.nonEmptyText();
    if (text.find("://") == std::string::npos)
        reader.fail("expected a URL scheme such as \"parlo://\"");
    return text;
}

std::optional<std::string> readColour(const ScenarioReader &reader, std::string_view key)
{
    auto text = reader.optionalText(key);
    if (text && (text->size() != 6 || !fromHex(*text)))
        reader.at(key).fail("expected six hexadecimal digits");
    return text;
}

std::vector<App> readApps(const ScenarioReader &reader)
{
    std::vector<App> apps;
    std::set<std::string> seen;
    for (const auto &item : reader.items()) {
        item.expectKeys({ "app", "name", "appPackage", "text", "icon", "bgColour", "textColour" });
        App app;
        app.app = item.at("app").nonEmptyText();
        if (!seen.insert(app.app).second)
            item.at("app").fail("\"" + app.app + "\" stands twice");
        app.name = item.at("name").nonEmptyText();
        if (item.optionalText("appPackage"))
            app.appPackage = readScheme(item.at("appPackage"));
        if (item.has("text") && !item.at("text").isNull())
            app.text = readLocal(item.at("text"),
                [](const ScenarioReader &each) { static_cast<void>(each.text()); });
        app.icon = item.optionalText("icon");
        app.bgColour = readColour(item, "bgColour");
        app.textColour = readColour(item, "textColour");
        apps.push_back(std::move(app));
    }
    return apps;
}

std::vector<Country> readCountries(const ScenarioReader &reader)
{
    std::vector<Country> countries;
    for (const auto &item : reader.items()) {
        item.expectKeys({ "countryCode", "title", "phoneCode" });
        const auto code = item.at("phoneCode");
        if (!code.text().starts_with('+') || code.text().size() < 2)
            code.fail("expected a plus and digits");
        countries.push_back({ item.at("countryCode").nonEmptyText(),
            item.at("title").nonEmptyText(), code.text() });
    }
    return countries;
}

Codes readCodes(const ScenarioReader &reader)
{
    reader.expectKeys({ "fixed", "alphabet", "expirySeconds", "attempts" });
    Codes codes;
    codes.fixed = reader.optionalText("fixed");
    if (codes.fixed && lengthOf(*codes.fixed) != Codes::length)
        reader.at("fixed").fail("expected three characters, a box each; null draws a code for each"
                                " number");
    codes.alphabet = reader.at("alphabet").nonEmptyText();
    codes.expiry = std::chrono::seconds(reader.at("expirySeconds").number(0, secondsOfDay));
    codes.attempts = reader.at("attempts").number(1, 1000);
    return codes;
}

std::string readMethod(const ScenarioReader &reader)
{
    static constexpr std::string_view methods[] = { "accountkit", "otp", "call", "3rdparty",
        "whatsapp", "telegram", "viber" };
    auto text = reader.text();
    if (std::find(std::begin(methods), std::end(methods), text) == std::end(methods))
        reader.fail("no validation method");
    return text;
}
}

const std::string &LocalText::in(const std::string &language) const
{
    for (const auto &each : { language, std::string("en") })
        if (const auto found = byLanguage.find(each); found != byLanguage.end())
            return found->second;
    return byLanguage.begin()->second;
}

Scenario Scenario::fromJson(const json &given)
{
    const ScenarioReader top(given, {});
    top.expectKeys(
        { "$schema", "keys", "clockToleranceSeconds", "validation", "alternative", "texts", "apps",
            "appPackageList", "countries", "codes", "messageExpirySeconds", "outcomes" });
    static_cast<void>(top.optionalText("$schema")); // for editors
    const auto keys = top.at("keys");

    // Merged deeply, so that a scenario says only what it changes; lists are taken whole.
    static const auto defaults = json::parse(builtInScenarioText());
    auto merged = defaults;
    const auto ownPackages = given.contains("appPackageList");
    for (const auto &[key, value] : given.items()) {
        if (value.is_object() && merged[key].is_object() && key != "outcomes" && key != "keys")
            merged[key].update(value);
        else
            merged[key] = value;
    }
    const ScenarioReader reader(merged, {});

    Scenario scenario;
    scenario.keys = readKeys(keys);
    scenario.clockTolerance =
        std::chrono::seconds(reader.at("clockToleranceSeconds").number(1, secondsOfDay));
    scenario.validation = readMethod(reader.at("validation"));
    if (reader.optionalText("alternative"))
        scenario.alternative = readMethod(reader.at("alternative"));
    scenario.texts = readTexts(reader.at("texts"));
    scenario.apps = readApps(reader.at("apps"));
    if (ownPackages) {
        for (const auto &item : reader.at("appPackageList").items())
            scenario.appPackageList.push_back(item.text());
    } else {
        for (const auto &app : scenario.apps)
            if (app.appPackage)
                scenario.appPackageList.push_back(*app.appPackage);
    }
    scenario.countries = readCountries(reader.at("countries"));
    scenario.codes = readCodes(reader.at("codes"));
    scenario.messageExpiry =
        std::chrono::seconds(reader.at("messageExpirySeconds").number(0, secondsOfDay));
    scenario.outcomes = readOutcomes(reader.at("outcomes"));
    return scenario;
}

Scenario Scenario::fromText(const std::string &text)
{
    auto scenario = fromJson(jsonIn(text));
    scenario.source = text;
    return scenario;
}

Scenario Scenario::fromFile(const std::string &path)
{
    std::ifstream file(path);
    std::string text;
    if (file)
        text.assign(std::istreambuf_iterator<char>(file), {});
    if (!file)
        throw ScenarioError(path + ": " + std::strerror(errno));
    try {
        return fromText(text);
    } catch (const ScenarioError &error) {
        throw ScenarioError(path + ": " + error.what());
    }
}

Scenario Scenario::builtIn() { return fromText(builtInScenarioText()); }

}
