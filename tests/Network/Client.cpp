// What the client decides and writes, beside the weather.
#include "Network/Awaited.h"
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Networking/Router/ApiRequestModels.h"
#include "support/RawServer.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <limits>

using namespace parloquin;

namespace {

QByteArray answerOf(const QByteArray &meta)
{
    return RawServer::http(200, "{\"meta\":{" + meta + "}}", "X-Twice: a\r\nX-Twice: b\r\n");
}

struct Transport {
    std::optional<QByteArray> data;
    std::optional<UrlResponse> response;
    std::optional<TransportError> error;
    std::optional<ApiError> failure;
    const char *log;
};

TEST(ApiClient, TellsTransportFailuresApartInItsOrder)
{
    const QByteArray data = "x";
    const UrlResponse response { 200, {}, {} };
    const UrlResponse unreadable { 200, { { "X-\xff", "1" } }, {} };
    const auto error = [](int code) { return TransportError { code, QStringLiteral("why") }; };
    const char *const why =
        "[Parloquin]\n⚠️\n*Server Error \n- Error: Optional(\"why\"), \n- Path: send-otp\n";
    const Transport rows[] = {
        { data, {}, {}, ApiError::general, nullptr },
        { {}, {}, error(TransportError::timedOut), ApiError::general, nullptr },
        { {}, {}, error(TransportError::notConnectedToInternet), ApiError::general, nullptr },
        { data, unreadable, {}, ApiError::general, nullptr },
        { {}, unreadable, error(4), ApiError::general, nullptr },
        { {}, response, {}, ApiError::general, "- Error: nil, \n- Path: send-otp\n" },
        { {}, response, error(TransportError::notConnectedToInternet), ApiError::connection, why },
        { {}, response, error(4), ApiError::noSuchFile, why },
        { {}, response, error(TransportError::timedOut), ApiError::timeOutEtc, why },
        { {}, response, error(0), ApiError::timeOutEtc, why },
        { data, response, error(4), {}, nullptr },
    };
    ApiClient client;
    client.router = ApiRouter::sendOTP({});
    for (const Transport &row : rows) {
        SCOPED_TRACE(&row - rows);
        testing::internal::CaptureStdout();
        EXPECT_EQ(client.transportFailure(row.data, row.response, row.error), row.failure);
        const std::string log = testing::internal::GetCapturedStdout();
        if (row.log)
            EXPECT_NE(log.find(row.log), std::string::npos) << log;
        else
            EXPECT_EQ(log, "");
    }
}

TEST(ApiClient, FailsAtOnceWhereNothingCanBeSent)
{
    RawServer server;
    setServiceHost(server.hostAndPort());
    testing::internal::CaptureStdout();
    AwaitedResult<CheckResponseModel> unreachable;
    ApiSessionHelper::shared().isNetworkReachable = false;
    ApiRequest::check({}, unreachable.handler());
    EXPECT_EQ(unreachable.count(), 1);
    EXPECT_EQ(unreachable.wait(), "connection");
    EXPECT_TRUE(unreachable.onThisThread());

    AwaitedResult<CheckResponseModel> routeless;
    ApiSessionHelper::shared().isNetworkReachable = true;
    std::make_shared<ApiClient>()->request<CheckResponseModel>({}, routeless.handler());
    EXPECT_EQ(routeless.count(), 1);
    EXPECT_EQ(routeless.wait(), "requestObjectCreate");
    EXPECT_TRUE(routeless.onThisThread());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(server.connections(), 0);
}

// The service refuses what was signed minutes ago.
TEST(ApiClient, SignsEachCallWithItsOwnTime)
{
    const auto second = [] { return QDateTime::currentSecsSinceEpoch(); };
    RawServer server;
    setServiceHost(server.hostAndPort());
    for (std::size_t i = 0; i < 2; ++i) {
        const auto before = second();
        AwaitedResult<CheckResponseModel> call;
        ApiRequest::check({}, call.handler());
        ASSERT_EQ(call.wait(), "refused");
        const auto stamp = server.requests().at(i).header("X-TRZ-Req-Timestamp");
        EXPECT_GE(stamp.toLongLong(), before * 1000) << "call " << i;
        EXPECT_LE(stamp.toLongLong(), second() * 1000) << "call " << i;
        ASSERT_TRUE(QTest::qWaitFor([&] { return second() > before; }));
    }
}

TEST(ApiClient, CountsExpiredTokens)
{
    const struct {
        const char *meta;
        int counted;
    } rows[] = {
        { R"("httpStatusCode":403,"errorCode":"403001")", 1 },
        { R"("httpStatusCode":403,"errorCode":"403002")", 1 },
        { R"("httpStatusCode":403,"errorCode":"403003")", 0 },
        { R"("httpStatusCode":403,"errorCode":"403026")", 0 },
        { R"("httpStatusCode":403)", 0 },
        { R"("httpStatusCode":404,"errorCode":"403001")", 0 },
        { R"("httpStatusCode":200,"errorCode":"403001")", 0 },
        { R"("errorCode":"403001")", 0 },
    };
    RawServer server;
    setServiceHost(server.hostAndPort());
    for (const auto &row : rows) {
        server.answer("/v1.0/check", answerOf(row.meta));
        const qint64 before = ApiClient::TokenExpiredTryCount::current;
        AwaitedResult<CheckResponseModel> call;
        ApiRequest::check({}, call.handler());
        EXPECT_NE(call.wait(), "jsonDecode");
        EXPECT_EQ(ApiClient::TokenExpiredTryCount::current - before, row.counted) << row.meta;
    }
}

TEST(ApiClient, StopsTheProgramWhenTheCountIsFull)
{
    ApiClient::TokenExpiredTryCount::current = std::numeric_limits<qint64>::max();
    EXPECT_DEATH((void)ApiClient().isTokenExpired(
                     HttpStatusCode::forbiddenError, ResponseErrorCode::authTokenNotFound),
        "count of expired tokens");
}

TEST(ApiClient, StopsTheProgramWithoutARoute)
{
    EXPECT_DEATH(ApiClient().handleResponseError({}), "ApiClient: an answer without a route");
}

TEST(ApiClient, StopsTheProgramWhenItCannotReadItsOwnRequest)
{
    EXPECT_DEATH(ApiClient().logRequest({}, {}, {}, {}), "ParloquinSecret.*Info.plist");
}

TEST(ApiClient, WritesTheRequestLog)
{
    RawServer server;
    server.answer("/v1.0/check", answerOf(R"("httpStatusCode":403,"errorMessage":"no")"));
    setServiceHost(server.hostAndPort());
    testing::internal::CaptureStdout();
    AwaitedResult<CheckResponseModel> call;
    ApiRequest::check({ QStringLiteral("a\"/b") }, call.handler());
    EXPECT_EQ(call.wait(), "refused");
    QString log = QString::fromStdString(testing::internal::GetCapturedStdout());

    log.remove(0, log.indexOf(QStringLiteral("\n\n✓")));
    log.replace(server.hostAndPort(), QStringLiteral("HOST"));
    static const QRegularExpression date(
        QStringLiteral("2\\d{3}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\+0000"));
    static const QRegularExpression agent(QStringLiteral("\"iOS\", .*\", \"Content"));
    log.replace(date, QStringLiteral("DATE"));
    log.replace(agent, QStringLiteral("... \"Content"));
    EXPECT_EQ(log.toStdString(),
        R"--(

✓
Parloquin Request Start
[Start Date: DATE]
🌐 URL: Optional(http://HOST/v1.0/check)
🤜🏻 Request Header: ["User-Agent": ... "Content-Type": "application/json; charset=utf-8"]
🤜🏻 Request Params: Optional("{\"reference\":\"a\\\"\\/b\"}"))
** --------------- **)--"
        R"--( 
✅ Response Header: ["X-Twice": "a, b", "Content-Length": "51", "Connection": "close"]
✅ Response:
- meta:
  - requestId: nil
  - httpStatusCode: 403
  - errorCode: nil
  - errorMessage: "no"
- result: nil
[End Date: DATE]
Parloquin Request End
✓


)--");
}

} // namespace
