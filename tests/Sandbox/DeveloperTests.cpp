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

    for (int i = 0; i < 1000; ++i)
        sandbox.post("/sandbox/sessions", R"({ "app": "wrenly" })"_json);
    const auto kept = sandbox.get("/sandbox/sessions").at("sessions");
    EXPECT_EQ(std::pair(kept.size(), kept.back()["app"]), std::pair(1000UL, json("wrenly")))
        << "the oldest go";
}

TEST(SandboxDeveloper, IsToldByAnswerAndConsoleWhatBecameOfACall)
{
    Sandbox sandbox;
    // Nothing behind the error: the console says that it refused for that reason.
    for (const auto &columns : rowsOf(R"(
400 sessions {"state":"lost"} => state: expected verified, expired or unknown => quiet
400 sessions {"phoneNumber":"532"} => phoneNumber: expected a plus and digits => quiet
400 sessions {"phoneNumber":5} => phoneNumber: expected a plus and digits => quiet
400 sessions {"app":5} => app: expected text => quiet
400 sessions {"number":"+9"} => number: unknown field; there are state, phoneNumber and app => quiet
400 sessions [] => expected an object => quiet
201 sessions {"state":"unknown"} =>  => session     made: unknown
201 sessions {} =>  => session     made: verified
404 sessions/7 => no such session => session     unknown
404 codes/last => no code was sent => quiet
404 codes/905 => no code was sent to this number => code        none was sent to this number
400 messages 7 => expected the texts "app" and "text"
400 messages {"app":"a","text":7} => expected the texts "app" and "text"
400 messages {"app":"a","text":"b","from":"532"} => "from": expected a plus and digits
404 messages {"app":"a","text":"b"} => no verification waits for this message
400 outcomes 7 => outcomes: expected an object
200 outcomes {"check":"limit"} =>  => outcomes    set
200 scenario {"keys":{"client":"c","secret":"64"}} =>  => scenario    set by a call; no file was changed
400 scenario/check {"text":7} => text: unknown field => quiet
200 reset {} =>  => reset       all that happened is forgotten
404 nothing => GET /sandbox/nothing: no such call; sandbox/README.md lists them => quiet
)")) {
        std::istringstream call(columns[0]);
        std::string path, body;
        int status = 0;
        call >> status >> path >> body;
        body = std::regex_replace(body, std::regex("64"), std::string(64, '8'));
        path = "/sandbox/" + path;
        sandbox.process().takeOutput();
        const auto answer =
            body.empty() ? sandbox.get(path) : sandbox.post(path, json::parse(body));
        EXPECT_EQ(answer["status"], status) << columns[0];
        EXPECT_EQ(answer.value("error", ""), columns[1]);
        const auto said = columns.size() < 3 ? "refused: " + columns[1] : columns[2];
        sandbox.process().waitForOutput(said == "quiet" ? "" : said);
    }
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
