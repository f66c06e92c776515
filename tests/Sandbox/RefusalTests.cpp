#include "Client.h"

namespace {
const std::string rightInit =
    R"({"countryCode":"TR","deviceName":"phone","timezone":"Europe\/Istanbul"})";

/// \param what a header, "no" and a header, or another piece of the request; nothing that depends
/// on it is set right again but the signature of other parameters, or at another time
void spoil(Request &request, const std::string &what, const std::string &value)
{
    const auto sign = [&](const std::string &text) {
        const auto time = request.headers.find("X-TRZ-Req-Timestamp")->second;
        request.set("X-TRZ-Req-Signature", signature(time, text));
    };
    if (what == "method") {
        request.method = value;
    } else if (what == "path") {
        request.path = value;
    } else if (what == "body") {
        request.body = value;
    } else if (what == "signed") {
        sign(value);
    } else if (what == "parameters" || what == "parameters of another key"
        || what == "content-length") {
        const auto key = what == "parameters of another key" ? std::string(32, 'k') : secret;
        request.body = json { { "data", encrypted(value, key) } }.dump();
        sign(value);
        if (what == "content-length") // so written, as by some clients
            request.headers.emplace(what, std::to_string(request.body.size()));
    } else if (what == "time" || what == "seconds from now") {
        const auto stamp = what == "time" ? value : timeStampOf(std::stol(value));
        request.set("X-TRZ-Req-Timestamp", stamp);
        sign(rightInit);
    } else if (what.starts_with("one more ")) {
        request.headers.emplace(what.substr(9), value);
    } else if (what.starts_with("no ")) {
        request.headers.erase(what.substr(3));
    } else {
        request.set(what, value);
    }
}
}

TEST(SandboxRefuses, WhatOneFaultSpoilsAndNothingElse)
{
    const struct {
        const char *what;
        std::string value = {};
        int status = 200;
        const char *errorCode = "";
        const char *reason = ""; ///< somewhere in message and console line
    } rows[] = {
        { "seconds from now", "-290" },
        { "seconds from now", "290" },
        { "X-TRZ-Os", "ios 9" },
        { "no X-TRZ-Client-Device-Id" },
        { "X-TRZ-Lang", "az" },
        { "X-TRZ-Lang", "abcdefgh" },
        { "no X-TRZ-Lang" },
        { "Accept-Language", "tr" },
        { "parameters", R"({"deviceName":"p","timezone":"Etc\/GMT+3"})" },
        { "content-length",
            R"({"deviceName":")" + std::string(200000, 'p') + R"(","timezone":"U"})" },

        { "method", "GET", 404, "", "GET: expected POST" },
        { "method", "PUT", 404, "", "PUT: expected POST" },
        { "path", "/v1.0/checkOTP", 404, "", "no such call" },
        { "path", "/v1.1/init", 404, "", "no such call" },
        { "path", "/v1.0/init?a=b", 404, "", "no such call" },
        { "path", "/v1.0/" + std::string(8000, 'x'), 404, "", "no such call" },
        { "Content-Type", "application/json", 400, "", "Content-Type: expected" },
        { "no User-Agent", "", 400, "", "User-Agent: expected" },
        { "User-Agent", "ios", 400, "", "User-Agent: expected" },
        { "no X-TRZ-Os", "", 400, "", "X-TRZ-Os: missing" },
        { "X-TRZ-Os", "iOS 12", 400, "", "X-TRZ-Os: expected" },
        { "X-TRZ-Os", "ios", 400, "", "X-TRZ-Os: expected" },
        { "X-TRZ-Os", "ios  12", 400, "", "X-TRZ-Os: expected" },
        { "X-TRZ-Sdk-Version", "1.0.0", 400, "", "X-TRZ-Sdk-Version" },
        { "X-TRZ-Client-Device-Id", "6f9619ff-8b86-d011-b42d-00c04fc964ff", 400, "", "Device-Id" },
        { "X-TRZ-Client-Device-Id", "6F9619FF-8B86-D011-B42D-00C04FC964F", 400, "", "Device-Id" },
        { "X-TRZ-Client-Device-Id", "6F9619FG-8B86-D011-B42D-00C04FC964FF", 400, "", "Device-Id" },
        { "X-TRZ-Client-Device-Id", "6F9619FF-8B86-D011-B42D0-0C04FC964FF", 400, "", "Device-Id" },
        { "X-TRZ-Lang", "en_GB", 400, "", "X-TRZ-Lang" },
        { "X-TRZ-Lang", "e", 400, "", "X-TRZ-Lang" },
        { "X-TRZ-Lang", "abcdefghi", 400, "", "X-TRZ-Lang" },
        { "no X-TRZ-Req-Timestamp", "", 400, "", "X-TRZ-Req-Timestamp: missing" },
        { "time", "1700000000001", 400, "", "ending in 000" },
        { "time", "1700000000", 403, "", "seconds old" },
        { "seconds from now", "-310", 403, "", "seconds old" },
        { "seconds from now", "310", 403, "", "seconds ahead" },
        { "X-TRZ-Encrypted", "0", 403, "403026", "X-TRZ-Encrypted" },
        { "no X-TRZ-Client-Key", "", 403, "403002", "X-TRZ-Client-Key: empty" },
        { "X-TRZ-Client-Key", "Parloquin-demo", 403, "403001", "X-TRZ-Client-Key: not" },
        { "one more X-TRZ-Req-Signature", "x", 400, "", "X-TRZ-Req-Signature: stands 2 times" },
        { "Cookie", "a=b", 400, "", "Cookie: not a header" },
        { "Upgrade", "h2c", 400, "", "Upgrade: not a header" },
        { "body", "hello", 400, "", "body: not JSON" },
        { "body", R"({"deviceName":"phone"})", 403, "403026", "\"data\"" },
        { "body", R"({"data":null})", 403, "403026", "\"data\" is null" },
        { "body", R"({"data":"","more":1})", 403, "403026", "one key" },
        { "body", R"({"data":"AAAA\nAAAA"})", 400, "", "not Base64" },
        { "body", R"({"data":"AAAAAAAAAAAAAAAA"})", 400, "", "does not decrypt" },
        { "parameters of another key", rightInit, 400, "", "decrypt" },
        { "no X-TRZ-Req-Signature", "", 400, "", "X-TRZ-Req-Signature: missing" },
        { "X-TRZ-Req-Signature", signature(timeStampOf(-60), rightInit), 403, "403003",
            "does not match" },
        // One of the two backslashes goes, so that the escaped text is what is signed.
        { "signed", R"({"countryCode":"TR","deviceName":"phone","timezone":"Europe\\/Istanbul"})",
            403, "403003", "does not match" },
        { "signed", R"({"deviceName":"phone","timezone":"Europe\/Istanbul"})", 403, "403003",
            "does not match" },
        { "parameters", R"({"deviceName":"phone","timezone":"a/b"})", 400, "", "escaped slashes" },
        { "parameters", R"({"deviceName": "phone","timezone":"UTC"})", 400, "", "compact" },
        { "parameters", R"({"timezone":"UTC","deviceName":"phone"})", 400, "", "sorted keys" },
        { "parameters", R"({"deviceName":"a","deviceName":"p","timezone":"U"})", 400, "",
            "sorted" },
        { "parameters", "[]", 400, "", "no JSON object" },
    };
    Sandbox sandbox;
    for (const auto &[what, value, status, errorCode, reason] : rows) {
        auto request = sandbox.request("init", rightInit);
        spoil(request, what, value);
        sandbox.process().takeOutput();
        const auto reply = sandbox.send(request);
        SCOPED_TRACE(what + (": " + value.substr(0, 80)));
        ASSERT_EQ(reply.status, status);
        EXPECT_EQ(reply.metaStatus(), status);
        EXPECT_EQ(reply.errorCode(), errorCode);
        EXPECT_TRUE(holds(reply.errorMessage(), reason));
        EXPECT_EQ(reply.result().is_null(), status != 200);
        const auto console =
            sandbox.process().waitForOutput(status == 200 ? "accepted" : "refused");
        EXPECT_TRUE(holds(console, reply.errorMessage()));
    }
}

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

// What other parameters are refused is held against the description of the calls.
TEST(SandboxParameters, OfAReportMustFitTheAppsOnOffer)
{
    const Sandbox sandbox;
    const std::pair<const char *, const char *> reports[] = {
        { R"({"hushbell:\/\/":"0","kite:\/\/":"1","murmur:\/\/":"0","parlo:\/\/":"1","wrenly:\/\/":"0"})",
            "" },
        { R"({"kite://":"1"})", "escaped slashes" },
        { R"({"kite:\/\/":true})", "\"0\" or \"1\"" },
        { R"({"kite:\/\/":"1"})", "not the schemes that init lists" },
        { R"({"hushbell:\/\/":"0","kite:\/\/":"1","murmur:\/\/":"0","one-more:\/\/":"0","parlo:\/\/":"1","wrenly:\/\/":"0"})",
            "not the schemes that init lists" },
    };
    for (const auto &[report, reason] : reports) {
        const auto reply =
            sandbox.call("start", { { "app", "kite" }, { "installedApps", report } });
        EXPECT_TRUE(reply.wasEncrypted);
        EXPECT_EQ(reply.metaStatus(), *reason == '\0' ? 200 : 400) << reply.body;
        EXPECT_TRUE(holds(reply.errorMessage(), reason));
    }
}
