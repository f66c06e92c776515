#include "Client.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {
struct OutcomeRow {
    const char *name;
    json outcome;
    std::function<void(const Reply &)> expect;
};

std::function<void(const Reply &)> refusal(int status, const char *code, const char *message)
{
    return [=](const Reply &reply) {
        EXPECT_TRUE(reply.wasEncrypted);
        EXPECT_EQ(reply.status, status);
        EXPECT_EQ(reply.metaStatus(), status);
        EXPECT_EQ(reply.errorCode(), code);
        EXPECT_EQ(reply.errorMessage(), message);
        EXPECT_TRUE(reply.result().is_null());
    };
}

std::function<void(const Reply &)> lacking(const char *key)
{
    return [=](const Reply &reply) {
        EXPECT_EQ(reply.metaStatus(), 200);
        EXPECT_FALSE(reply.result().is_null());
        EXPECT_FALSE(reply.result().contains(key));
    };
}

/// A fault after which the answer, decrypted, holds \p text.
OutcomeRow spoilt(const char *name, const char *fault, const char *text)
{
    return { name, { { "fault", fault } }, [=](const Reply &reply) {
                EXPECT_TRUE(reply.wasEncrypted);
                EXPECT_NE(reply.body.find(text), std::string::npos) << reply.body;
            } };
}

const OutcomeRow outcomeRows[] = {
    spoilt("Depth", "json:depth:3", R"(,"deep":[[[]]]})"),
    spoilt("Duplicate", "json:duplicate", R"({"meta":null,"meta":{)"),
    spoilt("Surrogate", "json:surrogate", R"(\ud800","type":"3rdparty\ud800")"),
    spoilt("Nul", "json:nul", R"("type":"3rdparty\u0000")"),
    spoilt("BigNumber", "json:2^53+1", R"("httpStatusCode":9007199254740993,)"),
    spoilt("HugeNumber", "json:1e400", R"("httpStatusCode":1e400,)"),
    spoilt("ByteOrderMark", "json:bom", "\xef\xbb\xbf{\"meta"),
    spoilt("Path", "json:result.type[2].a={\"b\":[7]}", "no such place"),
    spoilt("Field", "json:result.deeplink={\"b\":[7]}", R"("deeplink":{"b":[7]})"),
    spoilt("ListItem", "json:meta.new[1]=5", R"("new":[null,5])"),
    { "Clock", { { "fault", "clock:7200" } },
        [](const Reply &reply) { EXPECT_NE(reply.body.find(" seconds old"), reply.body.npos); } },
    { "BlocksCut", { { "fault", "blocks:cut" } },
        [](const Reply &reply) { EXPECT_TRUE(reply.envelope.is_discarded()) << reply.body; } },
    { "PaddingBad", { { "fault", "padding:bad" } },
        [](const Reply &reply) { EXPECT_NE(reply.body.find("}}\0", 0, 3), reply.body.npos); } },
    { "KeyWrong", { { "fault", "key:wrong" } },
        [](const Reply &reply) { EXPECT_EQ(reply.body.find("meta"), std::string::npos); } },
    { "BlocksSwapped", { { "fault", "blocks:swapped" } },
        [](const Reply &reply) { EXPECT_EQ(reply.body.find("{\"meta\":{\"httpSt"), 16U); } },
    { "NoReference", "noReference", lacking("reference") },
    { "NoResult", "noResult",
        [](const Reply &reply) {
            EXPECT_EQ(reply.metaStatus(), 200);
            EXPECT_FALSE(reply.envelope.contains("result"));
        } },
    { "OtherKeyLeftOut", { { "without", { "deeplink" } } }, lacking("deeplink") },
    { "Created", { { "status", 201 } },
        [](const Reply &reply) { EXPECT_EQ(reply.metaStatus(), 201); } },
    { "WrongCode", "wrongCode", refusal(400, "", "This code is not right.") },
    { "Limit", "limit", refusal(429, "", "Too many attempts.") },
    { "Refusal", { { "status", 403 }, { "errorCode", "403002" }, { "message", "Who are you?" } },
        refusal(403, "403002", "Who are you?") },
    { "CommonOneChanged", { { "like", "serverError" }, { "message", "Later." } },
        refusal(500, "", "Later.") },
    { "Plain", { { "plain", true } },
        [](const Reply &reply) {
            EXPECT_FALSE(reply.wasEncrypted);
            EXPECT_TRUE(reply.result().contains("deeplink"));
        } },
};
}

class SandboxOutcome : public testing::TestWithParam<OutcomeRow> { };

TEST_P(SandboxOutcome, AnswersAsSet)
{
    const Sandbox sandbox(json { { "outcomes", { { "start", GetParam().outcome } } } });
    GetParam().expect(sandbox.call("start", { { "app", "parlo" } }));
    EXPECT_EQ(sandbox.call("country", json::object()).metaStatus(), 200) << "only start was set";
}

INSTANTIATE_TEST_SUITE_P(Scenario, SandboxOutcome, testing::ValuesIn(outcomeRows),
    [](const auto &row) { return row.param.name; });

TEST(SandboxOutcomes, FollowTheirOrderAndTheLastStays)
{
    const Sandbox sandbox(
        json { { "outcomes", { { "country", { "serverError", "success", "limit" } } } } });
    for (const auto status : { 500, 200, 429, 429 })
        EXPECT_EQ(sandbox.call("country", json::object()).metaStatus(), status);
}

TEST(SandboxOutcomes, DelayHoldsTheAnswerBack)
{
    const Sandbox sandbox(json { { "outcomes", { { "country", { { "delayMs", 300 } } } } } });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(sandbox.call("country", json::object()).metaStatus(), 200);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
}

// What is never answered must neither stop the others nor keep the service from ending.
class SandboxEndless : public testing::TestWithParam<const char *> { };

TEST_P(SandboxEndless, LeavesOthersServedAndEndsAtOnce)
{
    Sandbox sandbox(json { { "outcomes", { { "check", GetParam() }, { "start", GetParam() } } } });
    std::vector<std::thread> waiting;
    for (int i = 0; i < 10; ++i)
        waiting.emplace_back([&] {
            EXPECT_FALSE(sandbox.call("start", { { "app", "parlo" } }).envelope.is_object());
        });
    sandbox.process().waitForOutput("accepted: Parlo");
    EXPECT_EQ(sandbox.call("country", json::object()).metaStatus(), 200);
    sandbox.process().signal(SIGTERM);
    EXPECT_EQ(sandbox.process().waitForEnd(std::chrono::seconds(3)), 0);
    for (auto &thread : waiting)
        thread.join();
}

INSTANTIATE_TEST_SUITE_P(Faults, SandboxEndless, testing::Values("silence", "drip"),
    [](const auto &row) { return std::string(row.param); });
