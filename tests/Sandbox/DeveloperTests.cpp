#include "Client.h"

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
