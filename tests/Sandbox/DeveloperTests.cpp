// What a developer's tests ask and set: sessions, codes, messages, outcomes.
#include "Client.h"

namespace {
json smsTo(const char *number) { return { { "phoneNumber", number }, { "countryCode", "TR" } }; }
}

TEST(SandboxDeveloper, KeepsAThousandSessions)
{
    const Sandbox sandbox;
    sandbox.post("/sandbox/sessions", R"({ "app": "kite" })"_json);
    for (int i = 0; i < 1000; ++i)
        sandbox.post("/sandbox/sessions", R"({ "app": "wrenly" })"_json);
    const auto kept = sandbox.get("/sandbox/sessions").at("sessions");
    EXPECT_EQ(std::pair(kept.size(), kept.back()["app"]), std::pair(1000UL, json("wrenly")))
        << "the oldest go";
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
