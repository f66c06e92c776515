#include "Client.h"

#include <set>

namespace {
std::string besideKeys(const std::string &fields)
{
    return R"({"keys":{"client":"c","secret":
        "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"},)"
        + fields + "}";
}
}

TEST(SandboxProgram, TakesTheScenarioThatItPrints)
{
    const auto scenario = json::parse(expectEnd({ SANDBOX_PROGRAM, "--print-scenario" }, 0));
    const Sandbox sandbox(scenario);
    EXPECT_EQ(sandbox.call("country").result().at("list"), scenario.at("countries"));
}

TEST(SandboxProgram, TakesAFreePortForItsPageWhereTheUsualIsTaken)
{
    std::set<std::string> pages;
    Process running[] { Process({ SANDBOX_PROGRAM, "--port", "0" }), // has the usual one, perhaps
        Process({ SANDBOX_PROGRAM, "--port", "0" }) };
    for (auto &each : running) {
        const auto output = each.waitForOutput("/\n");
        ASSERT_TRUE(holds(output, "its page is at http"));
        pages.insert(output.substr(output.find("its page is at http")));
    }
    EXPECT_EQ(pages.size(), 2U) << testing::PrintToString(pages);
}

// The connections that it ended keep the ports for a minute, for the system.
TEST(SandboxProgram, IsStartedAgainAtOnceAtItsPorts)
{
    std::optional<Sandbox> first(std::in_place);
    EXPECT_EQ(first->call("country").status, first->get("/sandbox/health")["status"]);
    const auto port = std::to_string(first->port());
    const auto page = std::to_string(first->pagePort());
    first.reset();
    Process again({ SANDBOX_PROGRAM, "--port", port, "--page", page });
    EXPECT_TRUE(holds(again.waitForOutput("/\n"), "listens at 127.0.0.1:" + port));
}

TEST(SandboxProgram, ServesOnAfterMoreCallersThanItHasDescriptorsFor)
{
    Sandbox sandbox;
    sandbox.call("country"); // a sanitizer needs descriptors of its own at the first
    expectEnd({ "/bin/bash", "-ec", R"(prlimit --pid=$1 --nofile=40
        for i in {1..60}; do exec {each}<>/dev/tcp/127.0.0.1/$0; done
        until [ -e /proc/$1/fd/39 ]; do :; done)",
                  std::to_string(sandbox.port()), std::to_string(sandbox.process().id()) },
        EXIT_SUCCESS);
    EXPECT_EQ(sandbox.call("country").status, 200);
}

// Editors write a file in place, or put another in its place.
TEST(SandboxProgram, ReadsItsScenarioAgainWhenItChanges)
{
    const TemporaryFile file(besideKeys(R"("codes":{"fixed":"111"})"));
    std::filesystem::current_path("/tmp"); // where its name alone is enough
    Process program({ SANDBOX_PROGRAM, "--port", "0", "--page", "0", "--scenario",
        std::filesystem::path(file.path()).filename() });
    const auto output = program.waitForOutput("/\n");
    httplib::Client client("127.0.0.1", std::stoi(output.substr(output.find("1:") + 2)));
    const auto plays = [&client](const char *code) {
        return holds(client.Get("/sandbox/scenario")->body, code);
    };
    std::ofstream(file.path()) << besideKeys(R"("codes":{"fixed":"222"})");
    program.waitForOutput("read again");
    ASSERT_TRUE(plays("222")); // else all that follows waits in vain

    program.takeOutput();
    std::ofstream(file.path()) << besideKeys(R"("codes":{"fixed":"toolong"})");
    EXPECT_TRUE(holds(program.waitForOutput("each number"), "codes.fixed: expected three"));
    EXPECT_TRUE(plays("222")) << "the one before stays";

    program.takeOutput();
    std::ofstream(file.path() + ".new") << besideKeys(R"("codes":{"fixed":"333"})");
    std::filesystem::rename(file.path() + ".new", file.path());
    EXPECT_FALSE(holds(program.waitForOutput("read again"), "stays")) << "of a file beside it";
    EXPECT_TRUE(plays("333"));
}

TEST(SandboxProgram, EndsAtOnceEvenIfToldSoBeforeItServes)
{
    Process early({ "/usr/bin/python3", "-c", R"(if True:
        import os, signal, sys
        signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGTERM])
        os.kill(os.getpid(), signal.SIGTERM)
        os.execv(sys.argv[1], sys.argv[1:]))",
        SANDBOX_PROGRAM, "--port", "0", "--page", "0" });
    EXPECT_EQ(early.waitForEnd(5s), 0);
}
