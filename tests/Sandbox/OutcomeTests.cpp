#include "Client.h"

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
