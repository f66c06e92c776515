#include "Client.h"

#include <ctime>
#include <iomanip>
#include <sstream>

namespace {
json lastOf(const Sandbox &sandbox)
{
    return sandbox.get("/sandbox/journal?limit=1").at("exchanges").at(0);
}
}

TEST(SandboxJournal, SaysToTheMillisecondWhenARequestCame)
{
    const Sandbox sandbox;
    const auto clock = [] { return std::chrono::system_clock::now().time_since_epoch() / 1ms; };
    const auto before = clock();
    sandbox.call("country");
    const std::string said = lastOf(sandbox)["time"];
    std::tm parts {};
    std::istringstream time(said);
    int milliseconds = -1;
    time >> std::get_time(&parts, "%Y-%m-%dT%H:%M:%S.") >> milliseconds;
    const auto at = ::timegm(&parts) * 1000 + milliseconds;
    EXPECT_TRUE(before <= at && at <= clock()) << said << " is " << at - before << " ms off";
}

TEST(SandboxJournal, GivesACurlLineThatSendsTheSameAgain)
{
    const Sandbox sandbox;
    sandbox.client().Post("/v1.0/it's", { { "X-TRZ-Lang", "it's" } }, "it's", "text/it's");
    auto strange = lastOf(sandbox);
    expectEnd(
        { "/bin/sh", "-c", sandbox.get("/sandbox/journal/" + strange["id"].dump())["curl"] }, 0);
    for (const auto *part : { "target", "body" })
        EXPECT_EQ(lastOf(sandbox)["request"][part], strange["request"][part]);
    sandbox.call("start", { { "app", "it's" } });
    const auto id = lastOf(sandbox)["id"].get<int>();
    const auto whole = sandbox.get("/sandbox/journal/" + std::to_string(id));
    expectEnd({ "/bin/sh", "-c", whole["curl"] }, 0);
    const auto again = lastOf(sandbox);
    EXPECT_GT(again["id"], id);
    EXPECT_EQ(again["reason"], "\"app\": not on offer") << "it passed the judge";
}

TEST(SandboxJournal, TellsWhatIsNew)
{
    const Sandbox sandbox;
    const auto revision = sandbox.get("/sandbox/journal")["revision"].get<int>();
    auto news = std::async(std::launch::async, [&sandbox, revision] {
        return sandbox.get("/sandbox/journal?wait=20&after=" + std::to_string(revision));
    });
    sandbox.call("init", { { "deviceName", "p" }, { "timezone", "UTC" } });
    EXPECT_EQ(news.get()["exchanges"].at(0)["call"], "init");
    auto emptied = std::async(std::launch::async,
        [&sandbox] { return sandbox.get("/sandbox/journal?wait=20&call=never&after=1"); });
    while (emptied.wait_for(50ms) != std::future_status::ready)
        sandbox.post("/sandbox/journal", json::object()); // again, as it may not have waited yet
    EXPECT_EQ(emptied.get()["status"], 200) << "who waits for news is told that it was emptied";
}

// Each that waits holds a thread of its port.
TEST(SandboxJournal, ServesOthersHoweverManyWatch)
{
    Sandbox sandbox;
    std::vector<std::future<void>> watching;
    for (int i = 0; i < 80; ++i)
        watching.push_back(std::async(std::launch::async, [&sandbox, i] {
            httplib::Client client("127.0.0.1", i % 2 == 0 ? sandbox.port() : sandbox.pagePort());
            client.set_read_timeout(40);
            client.Get("/sandbox/journal?wait=30&call=never");
        }));
    const auto sentAway = [&watching] {
        return std::count_if(watching.begin(), watching.end(), [](const auto &each) {
            return each.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        });
    };
    const auto begin = std::chrono::steady_clock::now();
    while (sentAway() < 64 && std::chrono::steady_clock::now() - begin < 20s)
        watching.back().wait_for(10ms);
    EXPECT_EQ(sentAway(), 64) << "as many as may wait do";
    EXPECT_EQ(sandbox.get("/sandbox/codes")["status"], 200);
    EXPECT_EQ(sandbox.call("country").metaStatus(), 200);
    sandbox.process().signal(SIGTERM);
    EXPECT_EQ(sandbox.process().waitForEnd(std::chrono::seconds(3)), 0);
}

// Whoever leaves the service running for days must not find the machine's memory full.
TEST(SandboxJournal, LetsTheOldestGo)
{
    const Sandbox sandbox;
    constexpr int sent = 280;
    for (int i = 0; i < sent; ++i)
        ASSERT_TRUE(sandbox.client().Post("/v1.0/check", std::string(300000, 'x'), "text/plain"));
    const auto page = sandbox.get("/sandbox/journal?view=list&limit=10000");
    EXPECT_EQ(page["held"].get<int>() + page["dropped"].get<int>(), sent);
    EXPECT_TRUE(page["dropped"] > 0 && page["held"] > 200) << page["held"];
    EXPECT_EQ(page["exchanges"].at(0)["id"], page["oldest"]);
    const std::string body = lastOf(sandbox)["request"]["body"];
    EXPECT_TRUE(body.ends_with("cut; 300000 bytes in all")) << body.substr(body.size() - 99);
}

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
