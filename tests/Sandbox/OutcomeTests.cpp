#include "Client.h"

// What shows in calls of the kit, which fail of it, is held there.
TEST(SandboxOutcome, SpoilsTheAnswer)
{
    const std::pair<const char *, std::string> rows[] = {
        { "json:duplicate", R"({"meta":null,"meta":{)" },
        { "json:nul", R"("type":"3rdparty\u0000")" },
        { "json:result.type[2].a={\"b\":[7]}", "no such place" },
        { "json:meta.new[1]=5", R"("new":[null,5])" },
    };
    const Sandbox sandbox;
    for (const auto &[fault, text] : rows) {
        sandbox.post("/sandbox/outcomes", { { "start", { { "fault", fault } } } });
        const auto reply = sandbox.call("start", { { "app", "parlo" } });
        EXPECT_TRUE(holds(reply.body, text)) << fault;
        EXPECT_EQ(sandbox.call("country").metaStatus(), 200) << "only start was set";
    }
}

TEST(SandboxOutcome, AnswersAsSet)
{
    const struct {
        json outcome;
        int status;
        const char *errorCode = "";
        const char *message = "";
        const char *lacks = "";
    } rows[] = {
        { "noReference", 200, "", "", "reference" },
        { "noResult", 200, "", "", "result" },
        { { { "without", { "result", "deeplink" } } }, 200, "", "", "result" },
        { { { "like", "noResult" }, { "without", { "deeplink" } } }, 200, "", "", "deeplink" },
        { "wrongCode", 400, "", "This code is not right." },
        { { { "status", 403 }, { "errorCode", "403002" }, { "message", "Who?" } }, 403, "403002",
            "Who?" },
        { { { "like", "serverError" }, { "message", "Later." } }, 500, "", "Later." },
        { { { "plain", true } }, 200 },
    };
    for (const auto &[outcome, status, errorCode, message, lacks] : rows) {
        const Sandbox sandbox(json { { "outcomes", { { "start", outcome } } } });
        const auto reply = sandbox.call("start", { { "app", "parlo" } });
        SCOPED_TRACE(outcome.dump() + reply.body);
        EXPECT_NE(reply.wasEncrypted, outcome.contains("plain"));
        EXPECT_EQ(reply.status, status);
        EXPECT_EQ(reply.metaStatus(), status);
        EXPECT_EQ(reply.errorCode(), errorCode);
        EXPECT_EQ(reply.errorMessage(), message);
        EXPECT_EQ(
            reply.envelope.contains("result"), status < 400 && lacks != std::string("result"));
        for (const auto *key : { "reference", "deeplink" })
            EXPECT_EQ(reply.result().contains(key),
                !reply.result().is_null() && key != std::string(lacks));
        EXPECT_EQ(sandbox.call("country").metaStatus(), 200) << "only start was set";
    }
}

// What is never answered must neither stop the others nor keep the service from ending.
TEST(SandboxOutcomes, LeaveOthersServedAndEndAtOnce)
{
    for (const auto &[fault, signal] : { std::pair("silence", SIGTERM), { "drip", SIGINT } }) {
        Sandbox sandbox(json { { "outcomes", { { "check", fault }, { "start", fault } } } });
        std::vector<std::future<Reply>> waiting;
        for (int i = 0; i < 10; ++i)
            waiting.push_back(std::async(std::launch::async, [&sandbox] {
                return sandbox.call("start", { { "app", "parlo" } });
            }));
        sandbox.process().waitForOutput("accepted: Parlo");
        EXPECT_EQ(sandbox.call("country").metaStatus(), 200);
        sandbox.process().signal(signal);
        EXPECT_EQ(sandbox.process().waitForEnd(std::chrono::seconds(3)), 0);
        for (auto &each : waiting)
            EXPECT_FALSE(each.get().envelope.is_object());
    }
}
