#include "Client.h"

namespace {
const std::regex uuid("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");

/// Of the message that was prepared last.
std::string preparedText(const Sandbox &sandbox)
{
    return sandbox.get("/sandbox/messages")["messages"].at(0)["text"];
}

int deliver(const Sandbox &sandbox, const json &message)
{
    return sandbox.post("/sandbox/messages", message)["status"];
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
    const auto started = sandbox.call("start", { { "app", "murmur" }, { "countryCode", "tr" } })
                             .result(); // as SIMs write it
    const auto link = started.at("deeplink").get<std::string>();
    EXPECT_TRUE(link.starts_with("murmur://send?app=murmur&to=Verification%20service&text="));
    const auto message = sandbox.get("/sandbox/messages")["messages"].at(0);
    EXPECT_EQ(message["reference"], started["reference"]);
    EXPECT_TRUE(message["sessionId"].is_null());
    const std::string text = message["text"];
    const json check { { "reference", started.at("reference") } };

    const auto early = sandbox.call("check", check);
    EXPECT_EQ(early.metaStatus(), 200);
    EXPECT_EQ(early.sessionId(), "");
    EXPECT_EQ(deliver(sandbox, { { "app", "murmur" }, { "text", text + "!" } }), 404);
    EXPECT_EQ(deliver(sandbox, { { "app", "kite" }, { "text", text } }), 400);
    EXPECT_EQ(sandbox.call("check", check).sessionId(), "");

    const json right { { "app", "murmur" }, { "text", text }, { "from", "+905321234567" } };
    EXPECT_EQ(deliver(sandbox, right), 202);
    const auto session = sandbox.call("check", check).sessionId();
    EXPECT_TRUE(std::regex_match(session, uuid)) << session;
    EXPECT_EQ(deliver(sandbox, right), 202);
    EXPECT_EQ(sandbox.call("check", check).sessionId(), session);

    const auto confirmed = sandbox.get("/sandbox/sessions/" + session);
    EXPECT_EQ(confirmed.at("confirmed"), true);
    EXPECT_EQ(confirmed.at("method"), "3rdparty");
    EXPECT_EQ(confirmed.at("app"), "murmur");
    EXPECT_EQ(confirmed.at("phoneNumber"), "+905321234567");
    EXPECT_TRUE(std::regex_match(confirmed.at("confirmedAt").get<std::string>(),
        std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ")));
    EXPECT_EQ(sandbox.call("result", { { "session_id", session } }).metaStatus(), 200);
    const auto reference = started.at("reference").get<std::string>();
    EXPECT_EQ(sandbox.get("/sandbox/sessions/" + reference)["status"], 404);
}

TEST(SandboxRoad, KeepsAttemptsApart)
{
    const Sandbox sandbox;
    const auto first = sandbox.call("start", { { "app", "parlo" } }).result();
    const auto second = sandbox.call("start", { { "app", "parlo" } }).result();
    EXPECT_EQ(deliver(sandbox, { { "app", "parlo" }, { "text", preparedText(sandbox) } }), 202);
    EXPECT_EQ(sandbox.call("check", { { "reference", first.at("reference") } }).sessionId(), "");
    EXPECT_NE(sandbox.call("check", { { "reference", second.at("reference") } }).sessionId(), "");
    EXPECT_EQ(sandbox.call("check", { { "reference", "none" } }).metaStatus(), 404);
    EXPECT_EQ(sandbox.call("start", { { "app", "pigeon" } }).metaStatus(), 404);
}

TEST(SandboxRoad, BySmsGivesASessionForTheRightCode)
{
    Sandbox sandbox;
    json asked;
    for (const auto *number : { "+905321234567", "+90 555 000 00 00", "+90 532 123 45 67" })
        asked = sandbox.call("send-otp", { { "countryCode", "TR" }, { "phoneNumber", number } })
                    .result();
    const auto sent = sandbox.get("/sandbox/codes/last"); // of two to a number the newest counts
    EXPECT_EQ(sent.at("reference"), asked.at("reference"));
    EXPECT_EQ(sandbox.get("/sandbox/codes/905321234567"), sent);
    EXPECT_EQ(sandbox.get("/sandbox/codes/+905321234567"), sent);
    EXPECT_EQ(sandbox.get("/sandbox/codes/905321234568")["status"], 404);
    const auto codes = sandbox.get("/sandbox/codes").at("codes");
    EXPECT_EQ(codes.at(0)["reference"], sent["reference"]);
    EXPECT_EQ(codes.at(1)["phoneNumber"], "+905550000000");
    const auto code = sent.at("code").get<std::string>();
    EXPECT_TRUE(std::regex_match(code, std::regex("\\d{3}"))) << code;
    const auto console = sandbox.process().waitForOutput("code " + code);
    EXPECT_FALSE(holds(console, "5321234567")) << "a whole number was printed";

    const auto check = [&](const char *number, const std::string &typed) {
        return sandbox.call("check-otp",
            { { "countryCode", "TR" }, { "phoneNumber", number },
                { "reference", sent["reference"] }, { "code", typed } });
    };
    EXPECT_EQ(check("532 123 45 67", code == "000" ? "001" : "000").metaStatus(), 400);
    EXPECT_EQ(check("5321234568", code).metaStatus(), 400);
    const auto session = check("532 123 45 67", code).sessionId();
    EXPECT_TRUE(std::regex_match(session, uuid)) << session;
    EXPECT_EQ(check("532 123 45 67", code).sessionId(), session) << "the same code again";
    EXPECT_EQ(sandbox.get("/sandbox/codes/last")["sessionId"], session);
    const auto confirmed = sandbox.get("/sandbox/sessions/" + session);
    EXPECT_EQ(confirmed.at("method"), "otp");
    EXPECT_EQ(confirmed.at("phoneNumber"), "+905321234567");
    EXPECT_TRUE(confirmed.at("app").is_null());
}

// Each refusal that a person can bring about by what they type, in their language.
TEST(SandboxRoad, RefusesCodesThatAreOldOrGuessed)
{
    const auto send = [](const Sandbox &sandbox, const char *number) {
        return sandbox.call(
            "send-otp", { { "countryCode", "DE" }, { "phoneNumber", number } }, "de");
    };
    const auto check = [](const Sandbox &sandbox, const Reply &sent, const char *code) {
        return sandbox.call("check-otp",
            { { "countryCode", "DE" }, { "phoneNumber", "1701234567" }, { "code", code },
                { "reference", sent.result().at("reference") } },
            "de");
    };
    std::map<int, std::string> said { { 200, "" }, { 400, "Dieser Code stimmt nicht." },
        { 429, "Zu viele Versuche. Bitte fordern Sie einen neuen Code an." } };
    const std::pair<const char *, int> guesses[][4] = {
        { { "a7x", 400 }, { "111", 400 }, { "A7x", 429 }, { "A7x", 429 } },
        { { "A7y", 400 }, { "A7x", 200 }, { "A7y", 400 }, { "A7x", 429 } },
    };
    const Sandbox guessed(json { { "codes", { { "fixed", "A7x" }, { "attempts", 2 } } } });
    for (const auto &row : guesses) {
        const auto sent = send(guessed, "+491701234567");
        for (const auto &[code, status] : row) {
            const auto reply = check(guessed, sent, code);
            EXPECT_EQ(reply.metaStatus(), status) << code;
            EXPECT_EQ(reply.errorMessage(), said[status]) << code;
            EXPECT_EQ(reply.sessionId().empty(), status != 200) << code;
        }
    }
    EXPECT_EQ(guessed.get("/sandbox/journal?limit=1")["exchanges"][0]["reason"],
        "Too many attempts. Please ask for a new code.")
        << "a developer reads English";
    EXPECT_EQ(send(guessed, "+4917").errorMessage(), "Das ist keine Telefonnummer.");
    const Sandbox old(json { { "codes", { { "fixed", "A7é" }, { "expirySeconds", 0 } } } });
    const auto late = check(old, send(old, "+491701234567"), "A7x");
    EXPECT_EQ(late.metaStatus(), 400);
    EXPECT_EQ(late.errorMessage(), "Dieser Code ist zu alt. Bitte fordern Sie einen neuen an.");
}

TEST(SandboxRoad, TakesNoMessageThatCameTooLate)
{
    const Sandbox sandbox(json { { "messageExpirySeconds", 0 } });
    const auto started = sandbox.call("start", { { "app", "parlo" } }).result();
    const auto late = sandbox.post(
        "/sandbox/messages", { { "app", "parlo" }, { "text", preparedText(sandbox) } });
    EXPECT_EQ(late.at("status"), 404);
    EXPECT_EQ(late.at("error"), "this message is too old");
    EXPECT_EQ(sandbox.call("check", { { "reference", started.at("reference") } }).sessionId(), "");
}

TEST(SandboxRoad, SendsToNumbersOfTheChosenCountryOnly)
{
    const std::tuple<const char *, const char *, int> rows[] = {
        { "VG", "+1284 (494) 45.6-7", 200 },
        { "TR", "+12025550123", 400 },
        { "XX", "+905321234567", 400 },
        { "TR", "+90five", 400 },
        { "TR", "+90123", 400 },
        { "TR", "+9053212345678901", 400 },
    };
    const Sandbox sandbox;
    for (const auto &[country, number, status] : rows)
        EXPECT_EQ(
            sandbox.call("send-otp", { { "countryCode", country }, { "phoneNumber", number } })
                .metaStatus(),
            status)
            << number;
}
