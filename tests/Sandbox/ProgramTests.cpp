#include "Client.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

using nlohmann::json;

namespace {
constexpr auto keysText = R"("keys":{"client":"c","secret":
    "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"})";

struct ScenarioRow {
    const char *name;
    std::string scenario;
    const char *complaint;
};

std::string beside(const char *fields) { return "{" + std::string(keysText) + "," + fields + "}"; }

const ScenarioRow scenarios[] = {
    { "NoJson", "{\n\"keys\": }", "line 2" },
    { "List", "[]", "scenario: expected an object" },
    { "NoKeys", "{}", "keys: missing" },
    { "NoSecret", R"({"keys":{"client":"c"}})", "keys.secret: missing" },
    { "NoClientKey",
        R"({"keys":{"secret":"8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"}})",
        "keys.client: missing" },
    { "ShortSecret", R"({"keys":{"client":"c","secret":"8f2d"}})",
        "keys.secret: expected 64 hexadecimal digits" },
    { "ObjectForList", beside(R"("apps":{})"), "apps: expected a list" },
    { "NumberOutOfRange", beside(R"("clockToleranceSeconds":1e400)"), "number overflow" },
    { "UnknownField", beside(R"("app":[])"), "app: unknown field" },
    { "WrongType", beside(R"("apps":[{"app":"a","name":"A"},{"app":5}])"),
        "apps[1].app: expected text" },
    { "TwiceAnApp", beside(R"("apps":[{"app":"a","name":"A"},{"app":"a","name":"B"}])"),
        "apps[1].app: \"a\" stands twice" },
    { "Colour", beside(R"("apps":[{"app":"a","name":"A","bgColour":"green"}])"),
        "apps[0].bgColour: expected six" },
    { "MessageWithoutCode", beside(R"("texts":{"message":"hello"})"), "texts.message: expected" },
    { "Country", beside(R"("countries":[{"countryCode":"TR","title":"T","phoneCode":"90"}])"),
        "countries[0].phoneCode: expected" },
    { "Expiry", beside(R"("codes":{"expirySeconds":-1})"),
        "codes.expirySeconds: expected a whole" },
    { "UnknownCall", beside(R"("outcomes":{"begin":"success"})"), "outcomes.begin: no call" },
    { "UnknownOutcome", beside(R"("outcomes":{"check":["success","maybe"]})"),
        "outcomes.check[1]: no outcome" },
    { "UnknownStatus", beside(R"("outcomes":{"check":{"status":401}})"),
        "outcomes.check.status: expected" },
    { "UnknownMoment", beside(R"("outcomes":{"check":["success",{"fault":"reset@lunch"}]})"),
        "outcomes.check[1].fault: \"reset@lunch\": no moment" },
    { "AcceptOfACall", beside(R"("outcomes":{"check":{"fault":"reset@accept"}})"),
        "outcomes.check: the call is not known" },
    { "PlainCipher", beside(R"("outcomes":{"check":{"plain":true,"fault":"key:wrong"}})"),
        "outcomes.check: this fault needs" },
};
}

class SandboxScenario : public testing::TestWithParam<ScenarioRow> { };

TEST_P(SandboxScenario, NamesTheFieldAtFault)
{
    const TemporaryFile file(GetParam().scenario);
    Process program({ SANDBOX_PROGRAM, "--port", "0", "--scenario", file.path() });
    EXPECT_EQ(program.waitForEnd(), EXIT_FAILURE);
    EXPECT_NE(program.output().find(file.path() + ": "), std::string::npos) << program.output();
    EXPECT_NE(program.output().find(GetParam().complaint), std::string::npos) << program.output();
}

INSTANTIATE_TEST_SUITE_P(Faults, SandboxScenario, testing::ValuesIn(scenarios),
    [](const auto &row) { return row.param.name; });

TEST(SandboxProgram, TakesTheScenarioThatItPrints)
{
    Process print({ SANDBOX_PROGRAM, "--print-scenario" });
    ASSERT_EQ(print.waitForEnd(), EXIT_SUCCESS);
    const auto scenario = json::parse(print.output());
    const Sandbox sandbox(scenario);
    EXPECT_EQ(
        sandbox.call("country", json::object()).result().at("list"), scenario.at("countries"));
}

TEST(SandboxProgram, SaysThatItsPortIsTaken)
{
    const Sandbox first;
    Process second({ SANDBOX_PROGRAM, "--port", std::to_string(first.port()) });
    EXPECT_EQ(second.waitForEnd(), EXIT_FAILURE);
    EXPECT_NE(second.output().find("port " + std::to_string(first.port())), std::string::npos);
    EXPECT_NE(second.output().find("in use"), std::string::npos) << second.output();
}

TEST(SandboxProgram, TakesAFreePortForItsPageWhereTheUsualIsTaken)
{
    const std::vector<std::string> anyPort { SANDBOX_PROGRAM, "--port", "0" };
    Process first(anyPort); // has the usual one, unless something else on this machine has
    const auto ofFirst = first.waitForOutput("/\n");
    Process second(anyPort);
    const auto ofSecond = second.waitForOutput("/\n");
    const auto page = [](const std::string &output) { return output.find("its page is at http"); };
    ASSERT_NE(page(ofFirst), std::string::npos) << ofFirst;
    ASSERT_NE(page(ofSecond), std::string::npos) << ofSecond;
    EXPECT_NE(ofFirst.substr(page(ofFirst)), ofSecond.substr(page(ofSecond)));
}

TEST(SandboxProgram, RefusesWhatItDoesNotUnderstand)
{
    const std::pair<std::vector<std::string>, const char *> calls[] = {
        { { "--port", "x" }, "--port: expected" },
        { { "--port", "65536" }, "--port: expected" },
        { { "--scenario", "/nowhere.json" }, "/nowhere.json: No such file" },
        { { "--scenario" }, "--scenario: expected a file" },
        { { "--fault", "check:cookie" }, "--fault: expected CALL=FAULT" },
        { { "--fault", "check=gzip:many" }, "--fault.check[0].fault: \"gzip:many\": expected a" },
        { { "--faults", "101:7" }, "--faults: expected PERCENT:SEED" },
        { { "--prot", "1" }, "--prot: unknown option" },
        { { "--port", "0", "listen" }, "listen: unknown command" },
    };
    for (const auto &[arguments, complaint] : calls) {
        std::vector<std::string> words { SANDBOX_PROGRAM };
        words.insert(words.end(), arguments.begin(), arguments.end());
        Process program(words);
        EXPECT_NE(program.waitForEnd().value_or(0), 0);
        EXPECT_NE(program.output().find(complaint), std::string::npos) << program.output();
    }
}

TEST(SandboxProgram, TellsWhatItIsAndChecksScenarios)
{
    const TemporaryFile right("{" + std::string(keysText) + "}");
    const TemporaryFile wrong(beside(R"("outcomes":{"check":"maybe"})"));
    const std::tuple<std::vector<std::string>, int, std::string> calls[] = {
        { { "--help" }, EXIT_SUCCESS, "--scenario FILE " },
        { { "--version" }, EXIT_SUCCESS, "parloquin-sandbox " SANDBOX_VERSION "\n" },
        { { "--check", right.path() }, EXIT_SUCCESS, "a right scenario" },
        { { "--check", wrong.path() }, EXIT_FAILURE, wrong.path() + ": outcomes.check: no " },
    };
    for (const auto &[arguments, code, words] : calls) {
        std::vector<std::string> all { SANDBOX_PROGRAM };
        all.insert(all.end(), arguments.begin(), arguments.end());
        Process program(all);
        EXPECT_EQ(program.waitForEnd(), code);
        EXPECT_NE(program.output().find(words), std::string::npos) << program.output();
    }
}

// Editors write a file in place, or put another in its place.
TEST(SandboxProgram, ReadsItsScenarioAgainWhenItChanges)
{
    const TemporaryFile file(beside(R"("codes":{"fixed":"111"})"));
    Process program({ SANDBOX_PROGRAM, "--port", "0", "--page", "0", "--scenario", file.path() });
    const auto output = program.waitForOutput("/\n");
    httplib::Client client("127.0.0.1", std::stoi(output.substr(output.find("1:") + 2)));
    const auto played = [&client] {
        return json::parse(client.Get("/sandbox/scenario")->body).at("text").get<std::string>();
    };
    std::ofstream(file.path()) << beside(R"("codes":{"fixed":"222"})");
    program.waitForOutput("read again");
    EXPECT_NE(played().find("222"), std::string::npos);

    program.takeOutput();
    std::ofstream(file.path()) << beside(R"("codes":{"fixed":"toolong"})");
    EXPECT_NE(program.waitForOutput("each number").find("codes.fixed: expected three"),
        std::string::npos);
    EXPECT_NE(played().find("222"), std::string::npos) << "the one before stays";

    program.takeOutput();
    std::ofstream(file.path() + ".new") << beside(R"("codes":{"fixed":"333"})");
    std::filesystem::rename(file.path() + ".new", file.path());
    program.waitForOutput("read again");
    EXPECT_NE(played().find("333"), std::string::npos);
}

TEST(SandboxProgram, EndsCleanlyOnSignals)
{
    for (const auto number : { SIGINT, SIGTERM }) {
        Sandbox sandbox;
        sandbox.process().signal(number);
        EXPECT_EQ(sandbox.process().waitForEnd(std::chrono::seconds(3)), EXIT_SUCCESS);
    }
}

TEST(SandboxProgram, SurvivesRequestsThatAreNone)
{
    Sandbox sandbox;
    const auto huge =
        sandbox.client().Post("/v1.0/init", std::string(2 * 1024 * 1024, 'x'), "application/json");
    if (huge) { // the service may hang up before it has read all
        EXPECT_GE(huge->status, 400);
    }
    auto forged = sandbox.request("init", "{}");
    forged.path = "/v1.0/x%0A12:00:00%20init%20accepted";
    EXPECT_EQ(sandbox.send(forged).status, 404);
    auto lengthy = forged;
    lengthy.path = "/v1.0/" + std::string(8000, 'x');
    EXPECT_EQ(sandbox.send(lengthy).status, 404);
    EXPECT_EQ(
        sandbox.process().waitForOutput("no such call").find("\n12:00:00"), std::string::npos);
    EXPECT_EQ(sandbox.call("country", json::object()).metaStatus(), 200);
}
