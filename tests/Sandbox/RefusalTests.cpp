#include "Client.h"

TEST(SandboxConsole, SaysWhenByTheClockOfThisPlace)
{
    Sandbox sandbox;
    const auto begun = std::time(nullptr);
    sandbox.call("country");
    const auto console = sandbox.process().waitForOutput("accepted");
    std::tm parts = *std::localtime(&begun);
    const auto last = console.substr(console.rfind('\n', console.size() - 2) + 1);
    ASSERT_NE(::strptime(last.c_str(), "%T", &parts), nullptr) << last;
    constexpr auto day = 24 * 60 * 60; // seconds; midnight may come between
    EXPECT_LE((std::mktime(&parts) - begun + day) % day, 20) << last << "said at " << begun;
}
