#include "Client.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

using nlohmann::json;

namespace {
json offeredCountries()
{
    const Sandbox sandbox;
    return sandbox.call("country", json::object()).result().at("list");
}
}

TEST(SandboxCountries, AreThoseOfTheStandard)
{
    // Where the standard turns a name round or spells out a form of state, the list reads as people
    // say it.
    const std::map<std::string, std::string> spoken {
        { "VG", "British Virgin Islands" },
        { "VI", "U.S. Virgin Islands" },
        { "CD", "Congo (Democratic Republic)" },
        { "FM", "Micronesia" },
        { "PS", "Palestine" },
    };
    // Uninhabited, or without numbers of their own.
    const std::set<std::string> silent { "AQ", "BV", "GS", "HM", "PN", "TF", "UM" };

    std::ifstream file("/usr/share/iso-codes/json/iso_3166-1.json");
    ASSERT_TRUE(file) << "the package iso-codes is missing";
    const auto standard = json::parse(file);
    std::map<std::string, std::string> expected;
    for (const auto &entry : standard.at("3166-1")) {
        const auto code = entry.at("alpha_2").get<std::string>();
        if (silent.count(code) == 0)
            expected[code] = spoken.count(code) != 0
                ? spoken.at(code)
                : entry.value("common_name", entry.at("name").get<std::string>());
    }
    std::map<std::string, std::string> offered;
    const auto list = offeredCountries();
    for (const auto &country : list)
        offered[country.at("countryCode")] = country.at("title");
    EXPECT_EQ(offered, expected);
    EXPECT_EQ(list.size(), expected.size()) << "a country stands twice";
}

TEST(SandboxCountries, HaveThePrefixesOfTheNumberingPlan)
{
    // Asked of a library that knows the numbering plan: prefix, then the area code where the
    // country has just one.
    Process ask({ "/usr/bin/python3", "-c", R"(
import phonenumbers
for region in sorted(phonenumbers.SUPPORTED_REGIONS):
    data = phonenumbers.PhoneMetadata.metadata_for_region(region)
    area = data.leading_digits or ''
    print(region, '+%d' % data.country_code, area if area.isdigit() else '-')
)" });
    ASSERT_EQ(ask.waitForEnd(), EXIT_SUCCESS) << ask.output();
    std::map<std::string, std::pair<std::string, std::string>> plan;
    std::istringstream lines(ask.output());
    for (std::string region, prefix, area; lines >> region >> prefix >> area;)
        plan[region] = { prefix, area == "-" ? "" : area };
    ASSERT_GT(plan.size(), 240U);

    for (const auto &country : offeredCountries()) {
        const auto code = country.at("countryCode").get<std::string>();
        ASSERT_EQ(plan.count(code), 1U) << code;
        const auto &[prefix, area] = plan.at(code);
        // Only prefix +1 is shared by countries that are told apart by the area code alone.
        EXPECT_EQ(country.at("phoneCode"), prefix == "+1" ? prefix + area : prefix) << code;
    }
}

TEST(SandboxLanguage, AnswersInTheLanguageOfTheRequest)
{
    const Sandbox sandbox(
        json { { "countries",
                   { { { "countryCode", "DE" }, { "title", "Germany" }, { "phoneCode", "+49" } },
                       { { "countryCode", "TR" }, { "title", "Home" }, { "phoneCode", "+90" } } } },
            { "outcomes",
                { { "check", "limit" },
                    { "start", { { "status", 400 }, { "message", "Wait." } } } } } });
    const std::tuple<const char *, const char *, const char *, const char *> rows[] = {
        { "en", "Germany", "Verify with Parlo", "Too many attempts." },
        { "de", "Deutschland", "Mit Parlo bestätigen", "Zu viele Versuche." },
        { "fr", "Allemagne", "Vérifier avec Parlo", "Trop de tentatives." },
        { "es", "Alemania", "Verificar con Parlo", "Demasiados intentos." },
        { "tr", "Almanya", "Parlo ile doğrula", "Çok fazla deneme yapıldı." },
        { "ar", "ألمانيا", "التحقق عبر Parlo", "محاولات كثيرة جدًا." },
        { "nl", "Germany", "Verify with Parlo", "Too many attempts." },
        { "", "Germany", "Verify with Parlo", "Too many attempts." },
    };
    for (const auto &[language, country, text, refusal] : rows) {
        const auto ask = [&, code = language](const std::string &call, const char *parameters) {
            auto request = sandbox.request(call, parameters);
            request.set("X-TRZ-Lang", code);
            return sandbox.send(request);
        };
        const auto list = ask("country", "{}").result().at("list");
        EXPECT_EQ(list[0]["title"], country) << language;
        EXPECT_EQ(list[1]["title"], "Home") << "a scenario's own";
        const auto init = ask("init", R"({"deviceName":"p","timezone":"UTC"})").result();
        EXPECT_EQ(init["list"][0]["text"], text);
        EXPECT_EQ(ask("check", R"({"reference":"r"})").errorMessage(), refusal);
        EXPECT_EQ(ask("start", R"({"app":"a"})").errorMessage(), "Wait.") << "a scenario's own";
        EXPECT_EQ(ask("result", R"({"session_id":"s"})").errorMessage(), "\"session_id\": unknown")
            << "a developer's";
    }
}

// Each that a person can bring about by what they type.
TEST(SandboxLanguage, TellsAPersonWhatIsWrong)
{
    Sandbox sandbox(json { { "codes", { { "fixed", "123" }, { "attempts", 1 } } } });
    const auto say = [&sandbox](const std::string &call, const json &parameters) {
        auto request = sandbox.request(call, canonical(parameters));
        request.set("X-TRZ-Lang", "de");
        return sandbox.send(request);
    };
    const auto send = [&say](const char *number) {
        return say("send-otp", { { "phoneNumber", number }, { "countryCode", "DE" } });
    };
    EXPECT_EQ(send("+4917").errorMessage(), "Das ist keine Telefonnummer.");
    json typed { { "phoneNumber", "1701234567" }, { "countryCode", "DE" }, { "code", "124" },
        { "reference", send("+491701234567").result().at("reference") } };
    EXPECT_EQ(say("check-otp", typed).errorMessage(), "Dieser Code stimmt nicht.");
    EXPECT_EQ(say("check-otp", typed).errorMessage(),
        "Zu viele Versuche. Bitte fordere einen neuen Code an.");
    EXPECT_EQ(sandbox.get("/sandbox/journal?limit=1")["exchanges"][0]["reason"],
        "Too many attempts. Please ask for a new code.")
        << "a developer reads English";

    auto hasty = json::parse(sandbox.get("/sandbox/scenario")["text"].get<std::string>());
    hasty["codes"] = { { "expirySeconds", 0 } };
    ASSERT_EQ(sandbox.post("/sandbox/scenario", hasty)["status"], 200);
    typed["reference"] = send("+491701234567").result().at("reference");
    EXPECT_EQ(say("check-otp", typed).errorMessage(),
        "Dieser Code ist zu alt. Bitte fordere einen neuen an.");
}
