#include "Client.h"

TEST(SandboxCountries, AreThoseOfTheStandardWithThePrefixesOfTheNumberingPlan)
{
    // Asked of a library that knows the numbering plan. Only prefix +1 is shared by countries that
    // are told apart by the area code alone.
    const auto plan = json::parse(expectEnd({ "/usr/bin/python3", "-c", R"(
import json, phonenumbers
plan = {}
for region in phonenumbers.SUPPORTED_REGIONS:
    data = phonenumbers.PhoneMetadata.metadata_for_region(region)
    area = data.leading_digits or ''
    plan[region] = '+%d' % data.country_code + (area if data.country_code == 1 and area.isdigit() else '')
print(json.dumps(plan))
)" },
        EXIT_SUCCESS));
    std::ifstream file("/usr/share/iso-codes/json/iso_3166-1.json");
    ASSERT_TRUE(file) << "the package iso-codes is missing";
    std::map<std::string, std::string> titles;
    const auto standard = json::parse(file);
    for (const auto &entry : standard.at("3166-1"))
        titles[entry.at("alpha_2")] =
            entry.value("common_name", entry.at("name").get<std::string>());
    // Where the standard turns a name round or spells out a form of state, the list reads as people
    // say it.
    for (const auto &[code, spoken] : { std::pair("VG", "British Virgin Islands"),
             { "VI", "U.S. Virgin Islands" }, { "CD", "Congo (Democratic Republic)" },
             { "FM", "Micronesia" }, { "PS", "Palestine" } })
        titles[code] = spoken;
    // Uninhabited, or without numbers of their own.
    for (const auto *silent : { "AQ", "BV", "GS", "HM", "PN", "TF", "UM" })
        titles.erase(silent);

    const auto offered = Sandbox().call("country").result().at("list");
    for (const auto &country : offered) {
        const std::string code = country.at("countryCode");
        EXPECT_EQ(country.at("title"), titles[code]) << code;
        EXPECT_EQ(country.at("phoneCode"), plan.at(code)) << code;
        titles.erase(code);
    }
    EXPECT_EQ(testing::PrintToString(titles), "{}") << "are not offered";
}

TEST(SandboxLanguage, SortsCountriesByTheirNames)
{
    const auto places = [](const char *language) {
        const json list = Sandbox().call("country", json::object(), language).result().at("list");
        std::map<std::string, int> all;
        for (const auto &each : list)
            all.emplace(each["countryCode"], static_cast<int>(all.size()));
        return all;
    };
    auto in = places("de");
    EXPECT_EQ(in["VI"], in["AS"] + 1) << "Amerikanische Jungferninseln";
    in = places("tr");
    EXPECT_LT(in["KG"], in["KI"]) << "Kırgızistan, Kiribati";
}

TEST(SandboxCountries, StayInTheOrderOfAScenarioWhateverTheirNumber)
{
    const auto listOf = [](const Sandbox &sandbox) {
        return sandbox.call("country", json::object(), "de").result().at("list");
    };
    json own = listOf(Sandbox());
    std::reverse(own.begin(), own.end());
    EXPECT_EQ(listOf(Sandbox(json { { "countries", own } })), own);
}
