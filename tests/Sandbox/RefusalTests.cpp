#include "Client.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {
const std::string rightInit =
    R"({"countryCode":"TR","deviceName":"phone","timezone":"Europe\/Istanbul"})";

/// Parameters as \p text, all else right for them.
void replaceParameters(Request &request, const std::string &text)
{
    request.body = json { { "data", encrypted(text, secret) } }.dump();
    request.set("X-TRZ-Req-Signature",
        signature(request.headers.find("X-TRZ-Req-Timestamp")->second, text));
}

void replaceTime(Request &request, const std::string &timeStamp)
{
    request.set("X-TRZ-Req-Timestamp", timeStamp);
    request.set("X-TRZ-Req-Signature", signature(timeStamp, rightInit));
}

struct RefusalRow {
    const char *name;
    std::function<void(Request &)> spoil;
    int status;
    const char *errorCode;
    const char *reason; // somewhere in message and console line
};

std::function<void(Request &)> header(const char *name, const char *value)
{
    return [=](Request &request) { request.set(name, value); };
}

std::function<void(Request &)> without(const char *name)
{
    return [=](Request &request) { request.headers.erase(name); };
}

std::function<void(Request &)> body(const char *text)
{
    return [=](Request &request) { request.body = text; };
}

std::function<void(Request &)> parameters(const char *text)
{
    return [=](Request &request) { replaceParameters(request, text); };
}

const RefusalRow refusals[] = {
    { "Get", [](Request &request) { request.method = "GET"; }, 404, "", "GET: expected POST" },
    { "Put", [](Request &request) { request.method = "PUT"; }, 404, "", "PUT: expected POST" },
    { "UnknownPath", [](Request &request) { request.path = "/v1.0/checkOTP"; }, 404, "",
        "no such call" },
    { "OtherVersion", [](Request &request) { request.path = "/v1.1/init"; }, 404, "",
        "no such call" },
    { "Query", [](Request &request) { request.path += "?a=b"; }, 404, "", "no such call" },
    { "ContentTypeWithoutCharset", header("Content-Type", "application/json"), 400, "",
        "Content-Type: expected" },
    { "NoUserAgent", without("User-Agent"), 400, "", "User-Agent: expected" },
    { "OtherUserAgent", header("User-Agent", "ios"), 400, "", "User-Agent: expected" },
    { "NoOs", without("X-TRZ-Os"), 400, "", "X-TRZ-Os: missing" },
    { "OsInCapitals", header("X-TRZ-Os", "iOS 12"), 400, "", "X-TRZ-Os: expected" },
    { "OsWithoutVersion", header("X-TRZ-Os", "ios"), 400, "", "X-TRZ-Os: expected" },
    { "OtherSdkVersion", header("X-TRZ-Sdk-Version", "1.0.0"), 400, "", "X-TRZ-Sdk-Version" },
    { "DeviceIdInSmallLetters",
        header("X-TRZ-Client-Device-Id", "6f9619ff-8b86-d011-b42d-00c04fc964ff"), 400, "",
        "X-TRZ-Client-Device-Id" },
    { "DeviceIdCutShort", header("X-TRZ-Client-Device-Id", "6F9619FF-8B86-D011-B42D-00C04FC964F"),
        400, "", "X-TRZ-Client-Device-Id" },
    { "DeviceIdOfOtherGroups",
        header("X-TRZ-Client-Device-Id", "6F9619FF-8B86-D011-B42D0-0C04FC964FF"), 400, "",
        "X-TRZ-Client-Device-Id" },
    { "OsAfterTwoBlanks", header("X-TRZ-Os", "ios  12"), 400, "", "X-TRZ-Os: expected" },
    { "LanguageWithRegion", header("X-TRZ-Lang", "en_GB"), 400, "", "X-TRZ-Lang" },
    { "LanguageOfOneLetter", header("X-TRZ-Lang", "e"), 400, "", "X-TRZ-Lang" },
    { "LanguageOfNineLetters", header("X-TRZ-Lang", "abcdefghi"), 400, "", "X-TRZ-Lang" },
    { "NoTimeStamp", without("X-TRZ-Req-Timestamp"), 400, "", "X-TRZ-Req-Timestamp: missing" },
    { "TimeWithMilliseconds",
        [](Request &request) {
            auto time = timeStampOf();
            time.back() = '1';
            replaceTime(request, time);
        },
        400, "", "ending in 000" },
    { "TimeInSeconds", [](Request &request) { replaceTime(request, "1700000000"); }, 403, "",
        "seconds old" },
    { "OldTime", [](Request &request) { replaceTime(request, timeStampOf(-310)); }, 403, "",
        "seconds old" },
    { "FutureTime", [](Request &request) { replaceTime(request, timeStampOf(310)); }, 403, "",
        "seconds ahead" },
    { "NotMarkedEncrypted", header("X-TRZ-Encrypted", "0"), 403, "403026", "X-TRZ-Encrypted" },
    { "NoClientKey", without("X-TRZ-Client-Key"), 403, "403002", "X-TRZ-Client-Key: empty" },
    { "OtherClientKey", header("X-TRZ-Client-Key", "Parloquin-demo"), 403, "403001",
        "X-TRZ-Client-Key: not" },
    { "TwoSignatures",
        [](Request &request) { request.headers.emplace("X-TRZ-Req-Signature", "x"); }, 400, "",
        "X-TRZ-Req-Signature: stands 2 times" },
    { "Cookie", header("Cookie", "a=b"), 400, "", "Cookie: not a header" },
    { "UpgradeOffer", header("Upgrade", "h2c"), 400, "", "Upgrade: not a header" },
    { "BodyNoJson", body("hello"), 400, "", "body: not JSON" },
    { "BodyPlain", body(R"({"deviceName":"phone"})"), 403, "403026", "\"data\"" },
    { "BodyNull", body(R"({"data":null})"), 403, "403026", "\"data\" is null" },
    { "BodyWithMore", body(R"({"data":"","more":1})"), 403, "403026", "one key" },
    { "BodyNoBase64", body(R"({"data":"AAAA\nAAAA"})"), 400, "", "not Base64" },
    { "BodyCutBlock", body(R"({"data":"AAAAAAAAAAAAAAAA"})"), 400, "", "does not decrypt" },
    { "OtherSecret",
        [](Request &request) {
            request.body = json { { "data", encrypted(rightInit, std::string(32, 'k')) } }.dump();
        },
        400, "", "decrypt" },
    { "NoSignature", without("X-TRZ-Req-Signature"), 400, "", "X-TRZ-Req-Signature: missing" },
    { "SignedOtherTime",
        [](Request &request) {
            request.set("X-TRZ-Req-Signature", signature(timeStampOf(1), rightInit));
        },
        403, "403003", "does not match" },
    { "SignedEscapedSlashes",
        [](Request &request) {
            // One of the two backslashes goes, so that the escaped text is what is signed.
            request.set("X-TRZ-Req-Signature",
                signature(request.headers.find("X-TRZ-Req-Timestamp")->second,
                    R"({"countryCode":"TR","deviceName":"phone","timezone":"Europe\\/Istanbul"})"));
        },
        403, "403003", "does not match" },
    { "SignedOtherText",
        [](Request &request) {
            request.set("X-TRZ-Req-Signature",
                signature(request.headers.find("X-TRZ-Req-Timestamp")->second,
                    R"({"deviceName":"phone","timezone":"Europe\/Istanbul"})"));
        },
        403, "403003", "does not match" },
    { "PlainSlash", parameters(R"({"deviceName":"phone","timezone":"Europe/Istanbul"})"), 400, "",
        "escaped slashes" },
    { "Blanks", parameters(R"({"deviceName": "phone","timezone":"UTC"})"), 400, "", "compact" },
    { "UnsortedKeys", parameters(R"({"timezone":"UTC","deviceName":"phone"})"), 400, "",
        "sorted keys" },
    { "TwiceAKey", parameters(R"({"deviceName":"a","deviceName":"phone","timezone":"UTC"})"), 400,
        "", "sorted keys" },
    { "List", parameters(R"([])"), 400, "", "no JSON object" },
};

std::string nameOf(const testing::TestParamInfo<RefusalRow> &row) { return row.param.name; }
}

class SandboxRefuses : public testing::TestWithParam<RefusalRow> { };

TEST_P(SandboxRefuses, WhatOneFaultSpoils)
{
    Sandbox sandbox;
    auto request = sandbox.request("init", rightInit);
    ASSERT_EQ(sandbox.send(request).metaStatus(), 200);

    GetParam().spoil(request);
    const auto reply = sandbox.send(request);

    ASSERT_EQ(reply.status, GetParam().status);
    EXPECT_EQ(reply.metaStatus(), GetParam().status);
    EXPECT_EQ(reply.errorCode(), GetParam().errorCode);
    EXPECT_NE(reply.errorMessage().find(GetParam().reason), std::string::npos)
        << reply.errorMessage();
    EXPECT_TRUE(reply.result().is_null());
    const auto console = sandbox.process().waitForOutput("refused");
    EXPECT_NE(console.find(reply.errorMessage()), std::string::npos) << console;
}

INSTANTIATE_TEST_SUITE_P(Requests, SandboxRefuses, testing::ValuesIn(refusals), nameOf);

// The other side of each rule.
TEST(SandboxAccepts, WhatIsJustRight)
{
    const std::pair<const char *, std::function<void(Request &)>> requests[] = {
        { "old by less than is tolerated", [](auto &r) { replaceTime(r, timeStampOf(-290)); } },
        { "ahead by less than is tolerated", [](auto &r) { replaceTime(r, timeStampOf(290)); } },
        { "an OS of one digit", header("X-TRZ-Os", "ios 9") },
        { "a device id", header("X-TRZ-Client-Device-Id", "6F9619FF-8B86-D011-B42D-00C04FC964FF") },
        { "no device id", without("X-TRZ-Client-Device-Id") },
        { "a language of two letters", header("X-TRZ-Lang", "az") },
        { "a language of eight letters", header("X-TRZ-Lang", "abcdefgh") },
        { "no language", without("X-TRZ-Lang") },
        { "the transport's own", header("Accept-Language", "tr") },
        { "fewer parameters", parameters(R"({"deviceName":"p","timezone":"UTC"})") },
    };
    const Sandbox sandbox;
    for (const auto &[name, change] : requests) {
        auto request = sandbox.request("init", rightInit);
        change(request);
        const auto reply = sandbox.send(request);
        EXPECT_EQ(reply.metaStatus(), 200) << name << ": " << reply.errorMessage();
    }
}

TEST(SandboxConsole, ShowsNothingOfStrangersThatPassesForItsOwn)
{
    Sandbox sandbox;
    const std::string lie = "\x1b[2J\n12:00:00  init        accepted\x7f\r";
    sandbox.call("init", { { "deviceName", "p" }, { "timezone", "UTC" }, { lie, "x" } });
    auto console = sandbox.process().waitForOutput("not a key");
    sandbox.client().Post("/v1.0/%1b%5b2J%0a12:00:00%7f", "", "text/plain");
    console = sandbox.process().waitForOutput("no such call");
    EXPECT_NE(console.find("?[2J?12:00:00  init        accepted"), std::string::npos) << console;
    for (const char c : console)
        EXPECT_TRUE(c == '\n' || (static_cast<unsigned char>(c) >= 0x20 && c != 0x7f)) << int(c);
    EXPECT_EQ(console.find("\n12:00:00"), std::string::npos) << console;
}

namespace {
struct ParameterRow {
    const char *name;
    const char *call;
    json parameters;
    const char *reason; // empty: accepted
};

const ParameterRow parameterRows[] = {
    { "InitWithoutCountry", "init", { { "deviceName", "p" }, { "timezone", "UTC" } }, "" },
    { "InitWithoutDevice", "init", { { "timezone", "UTC" } }, "\"deviceName\": missing" },
    { "InitUnknownKey", "init", { { "deviceName", "p" }, { "timezone", "UTC" }, { "os", "x" } },
        "\"os\": not a key" },
    { "InitEmptyText", "init",
        { { "deviceName", "p" }, { "timezone", "UTC" }, { "countryCode", "" } },
        "\"countryCode\": empty" },
    { "InitNumber", "init", { { "deviceName", 7 }, { "timezone", "UTC" } },
        "\"deviceName\": expected text" },
    { "InitLongCountry", "init",
        { { "deviceName", "p" }, { "timezone", "UTC" }, { "countryCode", "TUR" } }, "two letters" },
    { "StartCarrierCountry", "start", { { "app", "parlo" }, { "countryCode", "tr" } }, "" },
    { "StartWithoutApp", "start", { { "countryCode", "TR" } }, "\"app\": missing" },
    { "StartReport", "start",
        { { "app", "kite" },
            { "installedApps",
                R"({"hushbell:\/\/":"0","kite:\/\/":"1","murmur:\/\/":"0","parlo:\/\/":"1","wrenly:\/\/":"0"})" } },
        "" },
    { "StartReportUnescaped", "start",
        { { "app", "kite" }, { "installedApps", R"({"kite://":"1"})" } }, "escaped slashes" },
    { "StartReportBoolean", "start",
        { { "app", "kite" }, { "installedApps", R"({"kite:\/\/":true})" } }, "\"0\" or \"1\"" },
    { "StartReportPart", "start",
        { { "app", "kite" }, { "installedApps", R"({"kite:\/\/":"1"})" } },
        "not the schemes that init lists" },
    { "StartReportObject", "start", { { "app", "kite" }, { "installedApps", json::object() } },
        "expected text" },
    { "CheckWithoutReference", "check", json::object(), "\"reference\": missing" },
    { "SendWithoutNumber", "send-otp", { { "countryCode", "TR" } }, "\"phoneNumber\": missing" },
    { "CheckCodeWithoutReference", "check-otp",
        { { "countryCode", "TR" }, { "phoneNumber", "5321234567" }, { "code", "123" } },
        "\"reference\": missing" },
    { "ResultCamelCase", "result", { { "sessionId", "x" } }, "\"sessionId\": not a key" },
    { "CountryWithout", "country", json::object(), "" },
    { "CountryWith", "country", { { "countryCode", "TR" } }, "" },
};
}

class SandboxParameters : public testing::TestWithParam<ParameterRow> { };

TEST_P(SandboxParameters, MustBeThoseOfTheCall)
{
    const Sandbox sandbox;
    const auto &row = GetParam();
    const auto reply = sandbox.call(row.call, row.parameters);
    EXPECT_TRUE(reply.wasEncrypted);
    EXPECT_EQ(reply.metaStatus(), *row.reason == '\0' ? 200 : 400) << reply.body;
    EXPECT_NE(reply.errorMessage().find(row.reason), std::string::npos) << reply.body;
}

INSTANTIATE_TEST_SUITE_P(Calls, SandboxParameters, testing::ValuesIn(parameterRows),
    [](const auto &row) { return row.param.name; });
