// A page that a developer happens to have open must not read or change a sandbox.
#include "Client.h"

#include <map>

namespace {
using Header = std::pair<const char *, const char *>; ///< PAGE stands for its port

constexpr Header own { "Origin", "http://127.0.0.1:PAGE" };
constexpr Header evil { "Origin", "http://evil.example" };
constexpr Header asJson { "Content-Type", "application/json" };
constexpr Header asText { "Content-Type", "text/plain" };
constexpr Header otherSite { "Sec-Fetch-Site", "cross-site" };

struct Visit {
    const char *method;
    const char *path;
    std::vector<Header> headers;
    int status;
    const char *body = R"({"check":"limit"})";
};
// Others are in the transcript, at one port each.
const Visit visits[] = {
    { "POST", "/sandbox/outcomes", { asText }, 200 }, // curl
    { "GET", "/sandbox/codes", { { "Sec-Fetch-Site", "same-origin" } }, 200 },

    { "POST", "/sandbox/outcomes", { evil, asJson }, 403 },
    { "GET", "/sandbox/journal", { { "Origin", "http://127.0.0.1:PAGE.evil.example" } }, 403 },
    { "POST", "/sandbox/outcomes", { { "Origin", "null" }, asJson }, 403 },
    { "POST", "/sandbox/outcomes", { own, asText }, 403 },
    { "POST", "/sandbox/reset", { own, asJson }, 403, "a=b" }, // only says that it is JSON
    { "GET", "/sandbox/icons/parlo.png", { otherSite }, 403 },

    { "POST", "/sandbox/reset", { { "Host", "evil.example" } }, 421 },
    { "GET", "/sandbox/journal", { { "Host", "evil.example:PAGE" }, own }, 421 },
    { "GET", "/sandbox/nothing", { { "Host", "evil.example" } }, 421 },
};
}

TEST(SandboxGuard, LetsOnlyItsOwnPageIn)
{
    const Sandbox sandbox;
    std::vector<Visit> all(std::begin(visits), std::end(visits));
    for (const auto *host : { "evil.example:PAGE", "127.0.0.1.evil.example", "127.0.1",
             "192.168.0.1:PAGE", "0.0.0.0:PAGE", "localhost@evil.example" })
        all.push_back({ "GET", "/sandbox/codes", { { "Host", host } }, 421 });
    // No file of the disk is served.
    for (const auto *path :
        { "/../../../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "//etc/passwd",
            "/sandbox/icons/../../etc/passwd", "/sandbox/icons/..%2f..%2fetc%2fpasswd" })
        all.push_back({ "GET", path, {}, 404 });
    for (const auto &[method, path, headers, status, body] : all) {
        httplib::Request request;
        request.method = method;
        request.path = path;
        request.body = request.method == "GET" ? "" : body;
        SCOPED_TRACE(request.method + ' ' + path);
        for (const auto &[name, text] : headers) {
            std::string value = text;
            if (const auto at = value.find("PAGE"); at != value.npos)
                value.replace(at, 4, std::to_string(sandbox.pagePort()));
            request.headers.emplace(name, value);
        }
        for (const auto port : { sandbox.pagePort(), sandbox.port() }) {
            if (port == sandbox.port() && request.path == "/")
                continue; // no page is there
            sandbox.post("/sandbox/reset", json::object());
            const auto answer = httplib::Client("127.0.0.1", port).send(request);
            ASSERT_TRUE(answer) << port;
            EXPECT_EQ(answer->status, status)
                << port << testing::PrintToString(headers) << answer->body;
            for (const auto &[name, value] : answer->headers)
                EXPECT_FALSE(name.starts_with("Access-Control")) << name;
            if (status == 200)
                continue;
            EXPECT_EQ(json::parse(answer->body).size(), 1U) << "nothing but the reason";
            EXPECT_EQ(sandbox.get("/sandbox/outcomes").size(), 1U) << "nothing was set";
        }
    }
}
