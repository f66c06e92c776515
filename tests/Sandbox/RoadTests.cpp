#include "Client.h"

#include <gtest/gtest.h>

#include <regex>

using nlohmann::json;

namespace {
const std::regex uuid("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");

std::string textOfLink(const std::string &link)
{
    const auto encoded = link.substr(link.find("&text=") + 6);
    std::string text;
    for (std::size_t at = 0; at < encoded.size(); ++at) {
        if (encoded[at] == '%') {
            text += static_cast<char>(std::stoi(encoded.substr(at + 1, 2), nullptr, 16));
            at += 2;
        } else {
            text += encoded[at];
        }
    }
    return text;
}

int post(const Sandbox &sandbox, const json &message)
{
    const auto answer =
        sandbox.client().Post("/sandbox/messages", message.dump(), "application/json");
    return answer ? answer->status : 0;
}

json get(const Sandbox &sandbox, const std::string &path, int expectedStatus = 200)
{
    const auto answer = sandbox.client().Get(path);
    EXPECT_TRUE(answer);
    EXPECT_EQ(answer->status, expectedStatus) << path;
    return json::parse(answer->body);
}
}

TEST(SandboxRoad, OffersAppsWithTheirIcons)
{
    const Sandbox sandbox;
    const auto reply = sandbox.call(
        "init", { { "deviceName", "my/phone" }, { "timezone", "UTC" }, { "countryCode", "TR" } });
    EXPECT_TRUE(reply.wasEncrypted);
    const auto result = reply.result();
    EXPECT_EQ(result.at("validation"), "3rdparty");
    EXPECT_EQ(result.at("alternativeValidation"), "otp");
    EXPECT_EQ(result.at("alternativeValidationDescription"), "Get a code by SMS instead");
    ASSERT_EQ(result.at("list").size(), 5U);
    std::vector<std::string> apps;
    for (const auto &kit : result.at("list")) {
        apps.push_back(kit.at("app"));
        EXPECT_EQ(kit.at("appPackage"), apps.back() + "://");
        const std::string base = "http://127.0.0.1:" + std::to_string(sandbox.port());
        const auto url = kit.at("icon").get<std::string>();
        ASSERT_TRUE(url.starts_with(base)) << url;
        const auto icon = sandbox.client().Get(url.substr(base.size()));
        ASSERT_TRUE(icon);
        EXPECT_EQ(icon->get_header_value("Content-Type"), "image/png");
        EXPECT_EQ(icon->body.substr(1, 3), "PNG");
    }
    EXPECT_EQ(apps, (std::vector<std::string> { "parlo", "kite", "murmur", "wrenly", "hushbell" }));
    EXPECT_EQ(result.at("appPackageList").at(4).at("package"), "hushbell://");
}

TEST(SandboxRoad, ByAppGivesASessionOnceTheMessageCame)
{
    const Sandbox sandbox;
    const auto started = sandbox.call("start", { { "app", "murmur" } }).result();
    const auto link = started.at("deeplink").get<std::string>();
    EXPECT_TRUE(link.starts_with("murmur://send?app=murmur&to=Verification%20service&text="));
    const auto text = textOfLink(link);
    const json check { { "reference", started.at("reference") } };

    const auto early = sandbox.call("check", check);
    EXPECT_EQ(early.metaStatus(), 200);
    EXPECT_FALSE(early.result().contains("sessionId"));
    EXPECT_EQ(post(sandbox, { { "app", "murmur" }, { "text", text + "!" } }), 404);
    EXPECT_EQ(post(sandbox, { { "app", "kite" }, { "text", text } }), 400);
    EXPECT_EQ(post(sandbox, { { "app", "murmur" } }), 400);
    EXPECT_FALSE(sandbox.call("check", check).result().contains("sessionId"));

    EXPECT_EQ(post(sandbox, { { "app", "murmur" }, { "text", text } }), 202);
    const auto session = sandbox.call("check", check).result().value("sessionId", "");
    EXPECT_TRUE(std::regex_match(session, uuid)) << session;
    EXPECT_EQ(post(sandbox, { { "app", "murmur" }, { "text", text } }), 202);
    EXPECT_EQ(sandbox.call("check", check).result().at("sessionId"), session);

    const auto confirmed = get(sandbox, "/sandbox/sessions/" + session);
    EXPECT_EQ(confirmed.at("sessionId"), session);
    EXPECT_EQ(confirmed.at("confirmed"), true);
    EXPECT_EQ(confirmed.at("method"), "3rdparty");
    EXPECT_EQ(confirmed.at("app"), "murmur");
    EXPECT_TRUE(std::regex_match(confirmed.at("confirmedAt").get<std::string>(),
        std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ")));
    EXPECT_EQ(sandbox.call("result", { { "session_id", session } }).metaStatus(), 200);
    get(sandbox, "/sandbox/sessions/" + started.at("reference").get<std::string>(), 404);
}

TEST(SandboxRoad, KeepsAttemptsApart)
{
    const Sandbox sandbox;
    const auto first = sandbox.call("start", { { "app", "parlo" } }).result();
    const auto second = sandbox.call("start", { { "app", "parlo" } }).result();
    EXPECT_EQ(
        post(sandbox, { { "app", "parlo" }, { "text", textOfLink(second.at("deeplink")) } }), 202);
    EXPECT_FALSE(sandbox.call("check", { { "reference", first.at("reference") } })
                     .result()
                     .contains("sessionId"));
    EXPECT_TRUE(sandbox.call("check", { { "reference", second.at("reference") } })
                    .result()
                    .contains("sessionId"));
    EXPECT_EQ(sandbox.call("check", { { "reference", "none" } }).metaStatus(), 404);
    EXPECT_EQ(sandbox.call("start", { { "app", "pigeon" } }).metaStatus(), 404);
}

TEST(SandboxRoad, BySmsGivesASessionForTheRightCode)
{
    Sandbox sandbox;
    const auto reference =
        sandbox.call("send-otp", { { "countryCode", "TR" }, { "phoneNumber", "+905321234567" } })
            .result()
            .at("reference")
            .get<std::string>();
    const auto sent = get(sandbox, "/sandbox/codes/905321234567");
    EXPECT_EQ(sent, get(sandbox, "/sandbox/codes/+905321234567"));
    EXPECT_EQ(sent.at("reference"), reference);
    const auto code = sent.at("code").get<std::string>();
    EXPECT_TRUE(std::regex_match(code, std::regex("\\d{3}"))) << code;
    get(sandbox, "/sandbox/codes/905321234568", 404);
    const auto console = sandbox.process().waitForOutput("code " + code);
    EXPECT_EQ(console.find("5321234567"), std::string::npos) << "a whole number was printed";

    json check { { "countryCode", "TR" }, { "phoneNumber", "532 123 45 67" },
        { "reference", reference }, { "code", code } };
    auto wrong = check;
    wrong["code"] = code == "000" ? "001" : "000";
    EXPECT_EQ(sandbox.call("check-otp", wrong).metaStatus(), 400);
    auto other = check;
    other["phoneNumber"] = "5321234568";
    EXPECT_EQ(sandbox.call("check-otp", other).metaStatus(), 400);

    const auto result = sandbox.call("check-otp", check).result();
    EXPECT_TRUE(std::regex_match(result.at("sessionId").get<std::string>(), uuid));
    const auto confirmed =
        get(sandbox, "/sandbox/sessions/" + result.at("sessionId").get<std::string>());
    EXPECT_EQ(confirmed.at("method"), "otp");
    EXPECT_TRUE(confirmed.at("app").is_null());
}

TEST(SandboxRoad, RefusesCodesThatAreOldOrGuessed)
{
    const json send { { "countryCode", "US" }, { "phoneNumber", "+12025550123" } };
    const auto check = [](const Reply &sent, const std::string &code) {
        return json { { "countryCode", "US" }, { "phoneNumber", "2025550123" }, { "code", code },
            { "reference", sent.result().at("reference") } };
    };
    const json codes { { "fixed", "A7x" }, { "attempts", 2 } };

    const Sandbox guessed(json { { "codes", codes } });
    const auto sent = guessed.call("send-otp", send);
    EXPECT_EQ(guessed.call("check-otp", check(sent, "a7x")).metaStatus(), 400);
    EXPECT_EQ(guessed.call("check-otp", check(sent, "111")).metaStatus(), 400);
    EXPECT_EQ(guessed.call("check-otp", check(sent, "A7x")).metaStatus(), 429);
    const auto again = guessed.call("send-otp", send);
    EXPECT_EQ(guessed.call("check-otp", check(again, "A7y")).metaStatus(), 400);
    const auto session = guessed.call("check-otp", check(again, "A7x")).result();
    EXPECT_TRUE(session.contains("sessionId")) << "one attempt was left";
    EXPECT_EQ(guessed.call("check-otp", check(again, "A7y")).metaStatus(), 400);
    EXPECT_EQ(guessed.call("check-otp", check(again, "A7x")).metaStatus(), 429);

    const Sandbox old(json { { "codes", { { "fixed", "A7x" }, { "expirySeconds", 0 } } } });
    const auto late = old.call("check-otp", check(old.call("send-otp", send), "A7x"));
    EXPECT_EQ(late.metaStatus(), 400);
    EXPECT_NE(late.errorMessage().find("too old"), std::string::npos);
}

TEST(SandboxRoad, TakesNoMessageThatCameTooLate)
{
    const Sandbox sandbox(json { { "messageExpirySeconds", 0 } });
    const auto started = sandbox.call("start", { { "app", "parlo" } }).result();
    const auto text = textOfLink(started.at("deeplink"));
    const auto late = sandbox.post("/sandbox/messages", { { "app", "parlo" }, { "text", text } });
    EXPECT_EQ(late.at("status"), 404);
    EXPECT_EQ(late.at("error"), "this message is too old");
    EXPECT_FALSE(sandbox.call("check", { { "reference", started.at("reference") } })
                     .result()
                     .contains("sessionId"));
}

TEST(SandboxRoad, SendsToNumbersOfTheChosenCountryOnly)
{
    const Sandbox sandbox;
    const auto send = [&](const char *country, const char *number) {
        return sandbox.call("send-otp", { { "countryCode", country }, { "phoneNumber", number } })
            .metaStatus();
    };
    EXPECT_EQ(send("VG", "+1284 494-4567"), 200);
    EXPECT_EQ(send("TR", "+12025550123"), 400);
    EXPECT_EQ(send("XX", "+905321234567"), 400);
    EXPECT_EQ(send("TR", "+90five"), 400);
    EXPECT_EQ(send("TR", "+90123"), 400);
    EXPECT_EQ(send("TR", "+9053212345678901"), 400);
}
