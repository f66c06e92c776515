// A page that a developer happens to have open must not read or change a sandbox.
#include "Client.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {
struct Visit {
    const char *name;
    const char *method;
    const char *path;
    httplib::Headers headers; ///< PAGE and PORT stand for the two ports
    int status;
    const char *body = R"({"check":"limit"})";
};

const Visit visits[] = {
    { "CurlOfText", "POST", "/sandbox/outcomes", { { "Content-Type", "text/plain" } }, 200 },
    { "OwnPage", "POST", "/sandbox/outcomes",
        { { "Origin", "http://127.0.0.1:PAGE" }, { "Content-Type", "application/json" } }, 200 },
    { "OwnPageByName", "GET", "/sandbox/journal",
        { { "Host", "LocalHost:PAGE" }, { "Origin", "http://localhost:PAGE" } }, 200 },
    { "OwnPageFetching", "GET", "/sandbox/codes", { { "Sec-Fetch-Site", "same-origin" } }, 200 },
    { "IPv6", "GET", "/sandbox/codes", { { "Host", "[::1]:8047" } }, 200 },

    { "ForeignOrigin", "POST", "/sandbox/outcomes",
        { { "Origin", "http://evil.example" }, { "Content-Type", "application/json" } }, 403 },
    { "ForeignRead", "GET", "/sandbox/journal", { { "Origin", "http://evil.example" } }, 403 },
    { "OtherPort", "GET", "/sandbox/journal", { { "Origin", "http://127.0.0.1:PORT" } }, 403 },
    { "Secure", "GET", "/sandbox/journal", { { "Origin", "https://127.0.0.1:PAGE" } }, 403 },
    { "LongerName", "GET", "/sandbox/journal",
        { { "Origin", "http://127.0.0.1:PAGE.evil.example" } }, 403 },
    { "NullOrigin", "POST", "/sandbox/outcomes",
        { { "Origin", "null" }, { "Content-Type", "application/json" } }, 403 },
    { "TwoOrigins", "GET", "/sandbox/journal",
        { { "Origin", "http://127.0.0.1:PAGE" }, { "Origin", "http://evil.example" } }, 403 },
    { "OwnPageNoJson", "POST", "/sandbox/outcomes",
        { { "Origin", "http://127.0.0.1:PAGE" }, { "Content-Type", "text/plain" } }, 403 },
    { "OwnPageOnlySaysJson", "POST", "/sandbox/reset",
        { { "Origin", "http://127.0.0.1:PAGE" }, { "Content-Type", "application/json" } }, 403,
        "a=b" },
    { "Preflight", "OPTIONS", "/sandbox/outcomes",
        { { "Origin", "http://evil.example" }, { "Access-Control-Request-Method", "POST" } }, 403 },
    { "Picture", "GET", "/sandbox/icons/parlo.png", { { "Sec-Fetch-Site", "cross-site" } }, 403 },
    { "Neighbour", "GET", "/sandbox/journal", { { "Sec-Fetch-Site", "same-site" } }, 403 },
    { "Frame", "GET", "/",
        { { "Sec-Fetch-Site", "cross-site" }, { "Sec-Fetch-Mode", "navigate" },
            { "Sec-Fetch-Dest", "iframe" } },
        403 },

    { "Rebound", "GET", "/sandbox/journal", { { "Host", "evil.example:PAGE" } }, 421 },
    { "ReboundChange", "POST", "/sandbox/reset", { { "Host", "evil.example" } }, 421 },
    { "ReboundOwnOrigin", "GET", "/sandbox/journal",
        { { "Host", "evil.example:PAGE" }, { "Origin", "http://127.0.0.1:PAGE" } }, 421 },
    { "NumbersInAName", "GET", "/sandbox/codes", { { "Host", "127.0.0.1.evil.example" } }, 421 },
    { "ThreeNumbers", "GET", "/sandbox/codes", { { "Host", "127.0.1" } }, 421 },
    { "OtherAddress", "GET", "/sandbox/codes", { { "Host", "192.168.0.1:PAGE" } }, 421 },
    { "AllAddresses", "GET", "/sandbox/codes", { { "Host", "0.0.0.0:PAGE" } }, 421 },
    { "UserPart", "GET", "/sandbox/codes", { { "Host", "localhost@evil.example" } }, 421 },
    { "TwoHosts", "GET", "/sandbox/codes", { { "Host", "127.0.0.1" }, { "Host", "evil.example" } },
        421 },
    { "NoSuchCall", "GET", "/sandbox/nothing", { { "Host", "evil.example" } }, 421 },
};
}

class SandboxGuard : public testing::TestWithParam<Visit> { };

TEST_P(SandboxGuard, LetsOnlyItsOwnPageIn)
{
    const Sandbox sandbox;
    const auto &row = GetParam();
    for (const auto port : { sandbox.pagePort(), sandbox.port() }) {
        if (port == sandbox.port() && row.path == std::string("/"))
            continue; // no page is there
        httplib::Request request;
        request.method = row.method;
        request.path = row.path;
        request.body = row.method == std::string("GET") ? "" : row.body;
        for (auto [name, value] : row.headers) {
            for (const auto &[word, number] :
                { std::pair("PAGE", sandbox.pagePort()), std::pair("PORT", sandbox.port()) })
                if (const auto at = value.find(word); at != value.npos)
                    value.replace(at, 4, std::to_string(number));
            request.headers.emplace(name, value);
        }
        const auto answer = httplib::Client("127.0.0.1", port).send(request);
        ASSERT_TRUE(answer) << port;
        EXPECT_EQ(answer->status, row.status) << answer->body;
        for (const auto &[name, value] : answer->headers)
            EXPECT_FALSE(name.starts_with("Access-Control")) << name;
        if (row.status == 200)
            continue;
        EXPECT_EQ(json::parse(answer->body).size(), 1U) << "nothing but the reason";
        EXPECT_EQ(sandbox.get("/sandbox/outcomes").size(), 1U) << "nothing was set";
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, SandboxGuard, testing::ValuesIn(visits),
    [](const auto &row) { return row.param.name; });

TEST(SandboxGuard, ServesNoFileOfTheDisk)
{
    const Sandbox sandbox;
    for (const auto *path :
        { "/../../../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "//etc/passwd",
            "/sandbox/icons/../../etc/passwd", "/sandbox/icons/..%2f..%2fetc%2fpasswd" })
        for (const auto port : { sandbox.pagePort(), sandbox.port() }) {
            const auto answer = httplib::Client("127.0.0.1", port).Get(path);
            ASSERT_TRUE(answer) << path;
            EXPECT_EQ(answer->status, 404) << path;
            EXPECT_EQ(answer->body.find("root:"), std::string::npos) << path;
        }
}
