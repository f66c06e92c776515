// What the client decides and writes, beside the weather.
#include "Network/Network.h"
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Router/ApiRequestModels.h"
#include "support/Console.h"

#include <QtCore/QDateTime>

#include <limits>

namespace {

QByteArray answerOf(const QByteArray &meta)
{
    return RawServer::http(200, "{\"meta\":{" + meta + "}}", "X-Twice: a\r\nX-Twice: \"b\"\r\n");
}

TEST(ApiClient, TellsTransportFailuresApartInItsOrder)
{
    const QByteArray data = "x";
    const UrlResponse response { 200, {}, {} };
    const UrlResponse unreadable { 200, { { "X-\xff", "1" } }, {} };
    const auto error = [](int code) { return TransportError { code, u"why\r\n\t\0"_s }; };
    const char *const why = "[Parloquin]\n⚠️\n*Server Error \n"
                            "- Error: Optional(\"why\\r\\n\\t\\0\"), \n- Path: send-otp\n";
    const struct {
        std::optional<QByteArray> data;
        std::optional<UrlResponse> response;
        std::optional<TransportError> error;
        std::optional<ApiError> failure;
        const char *log = nullptr;
    } rows[] = {
        { data, {}, {}, ApiError::general },
        { {}, {}, error(TransportError::timedOut), ApiError::general },
        { {}, {}, error(TransportError::notConnectedToInternet), ApiError::general },
        { data, unreadable, {}, ApiError::general },
        { {}, unreadable, error(4), ApiError::general },
        { {}, response, {}, ApiError::general, "- Error: nil, \n- Path: send-otp\n" },
        { {}, response, error(TransportError::notConnectedToInternet), ApiError::connection, why },
        { {}, response, error(4), ApiError::noSuchFile, why },
        { {}, response, error(TransportError::timedOut), ApiError::timeOutEtc, why },
        { {}, response, error(0), ApiError::timeOutEtc, why },
        { data, response, error(4), {} },
    };
    ApiClient client;
    client.router = ApiRouter::sendOTP({});
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        std::optional<ApiError> failure;
        const std::string log = printedBy(
            [&] { failure = client.transportFailure(row.data, row.response, row.error); });
        EXPECT_EQ(failure, row.failure);
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
    AwaitedResult<CheckResponseModel> unreachable;
    AwaitedResult<CheckResponseModel> routeless;
    const std::string log = printedBy([&] {
        ApiSessionHelper::shared().isNetworkReachable = false;
        ApiRequest::check({}, unreachable.handler());
        ApiSessionHelper::shared().isNetworkReachable = true;
        std::make_shared<ApiClient>()->request<CheckResponseModel>({}, routeless.handler());
    });
    EXPECT_EQ(unreachable.count(), 1);
    EXPECT_EQ(unreachable.wait(), "connection");
    EXPECT_TRUE(unreachable.onThisThread());
    EXPECT_EQ(routeless.count(), 1);
    EXPECT_EQ(routeless.wait(), "requestObjectCreate");
    EXPECT_TRUE(routeless.onThisThread());

    EXPECT_EQ(log, "");
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
    const std::pair<const char *, int> rows[] = {
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
    for (const auto &[meta, counted] : rows) {
        server.answer("/v1.0/check", answerOf(meta));
        const qint64 before = ApiClient::TokenExpiredTryCount::current;
        AwaitedResult<CheckResponseModel> call;
        ApiRequest::check({}, call.handler());
        EXPECT_NE(call.wait(), "jsonDecode");
        EXPECT_EQ(ApiClient::TokenExpiredTryCount::current - before, counted) << meta;
    }
}

TEST(ApiClient, StopsTheProgramOnWhatCannotBe)
{
    const auto countOneMoreThanThereIsRoomFor = [] {
        ApiClient::TokenExpiredTryCount::current = std::numeric_limits<qint64>::max();
        (void)ApiClient().isTokenExpired(
            HttpStatusCode::forbiddenError, ResponseErrorCode::authTokenNotFound);
    };
    EXPECT_DEATH(countOneMoreThanThereIsRoomFor(), "count of expired tokens");
    EXPECT_DEATH(ApiClient().handleResponseError({}), "ApiClient: an answer without a route");
    EXPECT_DEATH(
        ApiClient().logRequest(Dump(MetaModel()), {}, {}, {}), "ParloquinSecret.*Info.plist");
}

TEST(ApiClient, WritesTheRequestLog)
{
    RawServer server;
    server.answer("/v1.0/check", answerOf(R"("httpStatusCode":403,"errorMessage":"no")"));
    setServiceHost(server.hostAndPort());
    qputenv("TZ", "Asia/Kolkata"); // the dates are those of UTC wherever the device is
    AwaitedResult<CheckResponseModel> call;
    QString log = QString::fromStdString(printedBy([&] {
        ApiRequest::check({ u"ë\"/b"_s }, call.handler());
        call.wait();
    }));
    EXPECT_EQ(call.wait(), "refused");

    const auto date = QDateTime::fromString(
        log.section(u"Start Date: "_s, 1).first(19).replace(u' ', u'T') + u'Z', Qt::ISODate);
    EXPECT_NEAR(date.toSecsSinceEpoch(), QDateTime::currentSecsSinceEpoch(), 60);
    log.replace(server.hostAndPort(), u"HOST"_s);
    log.replace(QRegularExpression(u"2\\d{3}(-\\d\\d){2} \\d\\d(:\\d\\d){2} \\+0000"_s), u"DATE"_s);
    log.replace(QRegularExpression(u"\"iOS\", .*\", \"Content"_s), u"... \"Content"_s);
    log.replace(QRegularExpression(u": 1\\d{9}000-"_s), u": TIME-"_s);
    log.replace(QRegularExpression(u"\\(\"[\\w+/]{43}=\"\\)"_s), u"(SIGNATURE)"_s);
    EXPECT_EQ(log.toStdString(),
        R"--(


🌀🌀🌀🌀🌀
[HMAC/SIGNATURE Start]
HMAC: TIME-{"reference":"ë\"/b"}
HMAC with SHA: Optional(SIGNATURE)
[HMAC/SIGNATURE End]
🌀🌀🌀🌀🌀





✓
Parloquin Request Start
[Start Date: DATE]
🌐 URL: Optional(http://HOST/v1.0/check)
🤜🏻 Request Header: ["User-Agent": ... "Content-Type": "application/json; charset=utf-8"]
🤜🏻 Request Params: Optional("{\"reference\":\"ë\\\"\\/b\"}"))
** --------------- **)--"
        R"--( 
✅ Response Header: ["X-Twice": "a, \"b\"", "Content-Length": "51", "Connection": "close"]
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
