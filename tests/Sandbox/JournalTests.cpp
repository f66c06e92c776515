#include "Client.h"

#include <gtest/gtest.h>

#include <future>
#include <regex>
#include <thread>

using nlohmann::json;

namespace {
json lastOf(const Sandbox &sandbox)
{
    return sandbox.get("/sandbox/journal?limit=1").at("exchanges").at(0);
}

struct SignatureRow {
    const char *name;
    std::string (*signature)(const std::string &timeStamp, const std::string &plain);
    const char *received; ///< what was signed, if that can be found out
    const char *note;
};

const SignatureRow signatureRows[] = {
    { "EscapedSlashes",
        [](const std::string &stamp, const std::string &plain) {
            return signature(stamp, std::regex_replace(plain, std::regex(R"(\\/)"), R"(\\/)"));
        },
        R"(-{"deviceName":"my\/phone","timezone":"UTC"})", "slashes are escaped" },
    { "UnsortedKeys",
        [](const std::string &stamp, const std::string &) {
            return signature(stamp, R"({"timezone":"UTC","deviceName":"my/phone"})");
        },
        R"(-{"timezone":"UTC","deviceName":"my/phone"})", "keys are not sorted" },
    { "Seconds",
        [](const std::string &stamp, const std::string &plain) {
            return signature(stamp.substr(0, stamp.size() - 3), plain);
        },
        R"(-{"deviceName":"my/phone","timezone":"UTC"})", "timestamp is in seconds" },
    { "UrlSafe",
        [](const std::string &stamp, const std::string &plain) {
            auto text = signature(stamp, plain);
            std::replace(text.begin(), text.end(), '+', '-');
            std::replace(text.begin(), text.end(), '/', '_');
            text.pop_back();
            return text;
        },
        R"(-{"deviceName":"my/phone","timezone":"UTC"})", "Base64 of URLs, or lacks its padding" },
    { "Stranger", [](const std::string &, const std::string &) { return std::string("x=="); },
        "x==", "none of the usual mistakes" },
};
}

class SandboxSignature : public testing::TestWithParam<SignatureRow> { };

TEST_P(SandboxSignature, IsComparedWithWhatWasExpected)
{
    const Sandbox sandbox;
    const std::string plain = R"({"deviceName":"my\/phone","timezone":"UTC"})";
    auto request = sandbox.request("init", plain);
    const auto stamp = request.headers.find("X-TRZ-Req-Timestamp")->second;
    request.set("X-TRZ-Req-Signature", GetParam().signature(stamp, plain));
    EXPECT_EQ(sandbox.send(request).errorCode(), "403003");
    const auto exchange = lastOf(sandbox);
    const auto &comparison = exchange.at("comparison");
    EXPECT_TRUE(comparison["received"].get<std::string>().ends_with(GetParam().received))
        << comparison;
    EXPECT_NE(comparison["note"].get<std::string>().find(GetParam().note), std::string::npos)
        << comparison;
    EXPECT_EQ(comparison["expected"],
        GetParam().name == std::string("Stranger")
            ? signature(stamp, plain)
            : stamp + R"(-{"deviceName":"my/phone","timezone":"UTC"})");
}

INSTANTIATE_TEST_SUITE_P(Mistakes, SandboxSignature, testing::ValuesIn(signatureRows),
    [](const auto &row) { return row.param.name; });

TEST(SandboxJournal, HoldsEachExchangeDecrypted)
{
    const Sandbox sandbox;
    sandbox.post("/sandbox/outcomes", { { "country", { { "fault", "cookie" } } } });
    sandbox.call("country", { { "countryCode", "TR" } });
    const auto exchange = lastOf(sandbox);
    EXPECT_EQ(exchange["call"], "country");
    EXPECT_EQ(exchange["verdict"], "accepted");
    EXPECT_EQ(exchange["status"], 200);
    EXPECT_EQ(exchange["reason"], "242 countries");
    EXPECT_EQ(exchange["fault"], "cookie");
    EXPECT_EQ(exchange["request"]["target"], "/v1.0/country");
    EXPECT_EQ(exchange["request"]["parameters"], (json { { "countryCode", "TR" } }));
    EXPECT_NE(exchange["request"]["body"].get<std::string>().find("\"data\""), std::string::npos);
    EXPECT_EQ(exchange["answer"]["content"]["result"]["list"].size(), 242U);
    EXPECT_EQ(exchange["answer"]["encrypted"], true);
    const auto &headers = exchange["request"]["headers"];
    EXPECT_TRUE(std::any_of(headers.begin(), headers.end(),
        [](const json &each) { return each["name"] == "X-TRZ-Lang" && each["value"] == "en"; }));

    auto unsorted = sandbox.request("init", R"({"timezone":"UTC","deviceName":"p"})");
    sandbox.send(unsorted);
    EXPECT_EQ(lastOf(sandbox)["comparison"]["expected"], R"({"deviceName":"p","timezone":"UTC"})");
    EXPECT_EQ(lastOf(sandbox)["verdict"], "refused");

    sandbox.post("/sandbox/outcomes", { { "connection", { { "fault", "close@accept" } } } });
    EXPECT_FALSE(sandbox.client().Get("/sandbox/health"));
    EXPECT_EQ(lastOf(sandbox)["verdict"], "fault");
    EXPECT_EQ(lastOf(sandbox)["fault"], "close@accept");
}

TEST(SandboxJournal, GivesACurlLineThatSendsTheSameAgain)
{
    const Sandbox sandbox;
    sandbox.call("start", { { "app", "it's" } });
    const auto id = lastOf(sandbox)["id"].get<int>();
    const auto whole = sandbox.get("/sandbox/journal/" + std::to_string(id));
    Process curl({ "/bin/sh", "-c", whole["curl"].get<std::string>() });
    EXPECT_EQ(curl.waitForEnd(), 0) << curl.output();
    auto again = lastOf(sandbox);
    EXPECT_GT(again["id"], id);
    EXPECT_EQ(again["reason"], "\"app\": not on offer") << "it passed the judge";
    EXPECT_EQ(again["request"]["parameters"], whole["request"]["parameters"]);
}

TEST(SandboxJournal, FindsAndTellsWhatIsNew)
{
    const Sandbox sandbox;
    sandbox.call("country", json::object());
    sandbox.call("start", { { "app", "parlo" } });
    sandbox.call("check", { { "reference", "NoWhere" } });
    const std::pair<const char *, int> queries[] = {
        { "", 3 },
        { "call=start", 1 },
        { "verdict=refused", 1 },
        { "search=nowhere", 1 },
        { "search=PARLOQUIN-DEMO", 3 },
        { "search=nobody", 0 },
        { "limit=2", 2 },
        { "before=2", 1 },
        { "after=2", 1 },
        { "verdict=accepted&call=check", 0 },
    };
    for (const auto &[query, count] : queries)
        EXPECT_EQ(
            sandbox.get(std::string("/sandbox/journal?view=list&") + query)["exchanges"].size(),
            static_cast<std::size_t>(count))
            << query;
    EXPECT_EQ(sandbox.get("/sandbox/journal?limit=many")["status"], 400);

    const auto revision = sandbox.get("/sandbox/journal")["revision"].get<int>();
    auto news = std::async(std::launch::async, [&sandbox, revision] {
        return sandbox.get("/sandbox/journal?wait=20&after=" + std::to_string(revision));
    });
    sandbox.call("init", { { "deviceName", "p" }, { "timezone", "UTC" } });
    EXPECT_EQ(news.get()["exchanges"].at(0)["call"], "init");

    sandbox.post("/sandbox/outcomes", { { "country", { { "delayMs", 2000 } } } });
    auto late = std::async(
        std::launch::async, [&sandbox] { return sandbox.call("country", json::object()).status; });
    const auto waiting =
        sandbox.get("/sandbox/journal?wait=20&after=" + std::to_string(revision + 1));
    EXPECT_EQ(waiting["exchanges"].at(0)["verdict"], "waiting");
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
    while (sentAway() < 64 && std::chrono::steady_clock::now() - begin < std::chrono::seconds(20))
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(sentAway(), 64) << "as many as may wait do";
    EXPECT_EQ(sandbox.get("/sandbox/codes")["status"], 200);
    EXPECT_EQ(sandbox.call("country", json::object()).metaStatus(), 200);
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
    EXPECT_GT(page["dropped"], 0);
    EXPECT_GT(page["held"], 200);
    EXPECT_EQ(page["exchanges"].at(0)["id"], page["oldest"]);
    EXPECT_TRUE(lastOf(sandbox)["request"]["body"].get<std::string>().ends_with(
        "cut; 300000 bytes in all"));
}
