// What a developer's tests ask and set: sessions, codes, messages, outcomes.
#include "Client.h"

namespace {
json smsTo(const char *number) { return { { "phoneNumber", number }, { "countryCode", "TR" } }; }

int statusOf(const Sandbox &sandbox, const char *number)
{
    return sandbox.call("send-otp", smsTo(number)).metaStatus();
}
}

TEST(SandboxDeveloper, MakesSessionsForABackEnd)
{
    const Sandbox sandbox;
    for (const auto &given : R"([{ "state": "verified", "phoneNumber": "+905321234567" },
            { "app": "kite" }, { "state": "unknown" }, { "state": "expired" }])"_json)
        EXPECT_EQ(sandbox.post("/sandbox/sessions", given)["status"], 201) << given;
    const auto sessions = sandbox.get("/sandbox/sessions").at("sessions");
    ASSERT_EQ(sessions.size(), 3U) << "an unknown one is none";
    EXPECT_EQ(sessions[0]["state"], "expired");
    EXPECT_EQ(sessions[1]["app"], "kite");
    EXPECT_EQ(sessions[1]["method"], "3rdparty");
    EXPECT_EQ(sessions[2]["phoneNumber"], "+905321234567");
    EXPECT_EQ(sessions[2]["method"], "otp");

    for (const auto &wrong :
        R"([{ "state": "lost" }, { "phoneNumber": "532" }, { "number": "+90532" }, []])"_json)
        EXPECT_EQ(sandbox.post("/sandbox/sessions", wrong)["status"], 400) << wrong;
}

TEST(SandboxDeveloper, KeepsEachFaultOfTheCommandLine)
{
    const Sandbox sandbox(
        json::object(), { "--fault", "country=cookie", "--fault", "country=clock:7200" });
    EXPECT_EQ(sandbox.get("/sandbox/outcomes")["country"],
        R"([{ "fault": "cookie" }, { "fault": "clock:7200" }])"_json);
}

// Tests that run at once each have a number, so that none meets the outcomes of another.
TEST(SandboxDeveloper, SetsOutcomesByNumberAndByClient)
{
    const Sandbox sandbox;
    const auto outcomes = R"({ "send-otp": "serverError", "init": { "like": "limit", "delayMs": 5 },
        "numbers": { "+905321234567": { "send-otp": ["limit", "success"] },
            "+905550000000": { "send-otp": "success", "check-otp": "limit" } },
        "clients": { "6F9619FF-8B86-D011-B42D-00C04FC964FF": { "check": "limit" },
            "parloquin-demo": { "check": "serverError", "country": "limit" } } })"_json;
    EXPECT_EQ(sandbox.post("/sandbox/outcomes", outcomes)["status"], 200);
    EXPECT_EQ(statusOf(sandbox, "+905321234567"), 429);
    const auto sent = sandbox.call("send-otp", smsTo("+905550000000")).result();
    auto check = smsTo("5550000000");
    check.update({ { "code", "000" }, { "reference", sent.at("reference") } });
    EXPECT_EQ(sandbox.call("check-otp", check).metaStatus(), 429);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(statusOf(sandbox, "+905321234567"), 200)
            << "its list goes on by itself, and ends";
    EXPECT_EQ(statusOf(sandbox, "+905339999999"), 500) << "everybody else's";
    EXPECT_EQ(sandbox.call("check", { { "reference", "r" } }).metaStatus(), 429);
    EXPECT_EQ(sandbox.call("country").metaStatus(), 429);

    auto set = sandbox.get("/sandbox/outcomes");
    set.erase("status");
    EXPECT_EQ(set["numbers"]["+905321234567"]["send-otp"], (json { "limit", "success" }));
    EXPECT_EQ(set["init"], json::array({ outcomes["init"] }));
    EXPECT_EQ(sandbox.post("/sandbox/outcomes", set)["status"], 200) << "takes what it gives";
    EXPECT_EQ(statusOf(sandbox, "+905321234567"), 429);
    sandbox.post("/sandbox/outcomes",
        R"({ "send-otp": null, "numbers": { "+905321234567": { "send-otp": null } } })"_json);
    EXPECT_EQ(statusOf(sandbox, "+905321234567"), 200) << "null ends it";

    const auto refused = sandbox.post("/sandbox/outcomes", R"({ "check": "maybe" })"_json);
    EXPECT_EQ(refused["status"], 400);
    EXPECT_TRUE(holds(refused["error"], "there are cut, drip, expiredCode"));
}

TEST(SandboxDeveloper, ResetsToWhatTheScenarioSays)
{
    const Sandbox sandbox(json { { "outcomes", { { "country", { "limit", "success" } } } } });
    sandbox.call("country");
    sandbox.call("send-otp", smsTo("+905321234567"));
    sandbox.call("start", { { "app", "parlo" } });
    sandbox.post("/sandbox/sessions", json::object());
    sandbox.post("/sandbox/outcomes", { { "check", "limit" } });
    EXPECT_EQ(sandbox.post("/sandbox/reset", json::object())["status"], 200);
    for (const auto *list : { "sessions", "codes", "messages" })
        EXPECT_EQ(sandbox.get(std::string("/sandbox/") + list).at(list).size(), 0U) << list;
    EXPECT_EQ(sandbox.get("/sandbox/journal")["held"], 0);
    EXPECT_EQ(sandbox.get("/sandbox/requests")["country"]["posts"], 0);
    EXPECT_FALSE(sandbox.get("/sandbox/outcomes").contains("check"));
    EXPECT_EQ(sandbox.call("country").metaStatus(), 429) << "begins anew";
}
