#include "Client.h"

TEST(SandboxConsole, ShowsNothingOfStrangersThatPassesForItsOwn)
{
    Sandbox sandbox;
    const std::string lie = "\x1b[2J\n12:00:00  init        accepted\x7f\r";
    sandbox.call("init", { { "deviceName", "p" }, { "timezone", "UTC" }, { lie, "x" } });
    sandbox.process().waitForOutput("not a key");
    const auto begun = std::time(nullptr);
    sandbox.client().Post("/v1.0/%1b%5b2J%0a12:00:00%7f", "", "text/plain");
    const auto console = sandbox.process().waitForOutput("no such call");
    std::tm parts = *std::localtime(&begun);
    const auto last = console.substr(console.rfind('\n', console.size() - 2) + 1);
    ASSERT_NE(::strptime(last.c_str(), "%T", &parts), nullptr) << last;
    constexpr auto day = 24 * 60 * 60; // seconds; midnight may come between
    EXPECT_LE((std::mktime(&parts) - begun + day) % day, 20) << last << "said at " << begun;
    EXPECT_TRUE(holds(console, "?[2J?12:00:00  init        accepted"));
    for (const char c : console)
        EXPECT_TRUE(c == '\n' || (static_cast<unsigned char>(c) >= 0x20 && c != 0x7f)) << int(c);
    EXPECT_FALSE(holds(console, "\n12:00:00")) << console;
}
