// What the client decides and writes, beside the weather.
#include "Network/Network.h"
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Router/ApiRequestModels.h"
#include "support/Console.h"
#include "support/DeveloperWords.h"

#include <QtCore/QDateTime>

static int step = 0; // hours that pass whenever the log asks for the time

QDateTime realNow() asm("__real__ZN9QDateTime18currentDateTimeUtcEv");
QDateTime hastyNow() asm("__wrap__ZN9QDateTime18currentDateTimeUtcEv");
QDateTime hastyNow()
{
    static int hours = 0;
    return realNow().addSecs(3600 * (hours += step));
}

namespace {

QByteArray answerOf(const QByteArray &meta)
{
    return RawServer::http(
        200, "{\"meta\":{" + meta + "}}", "X-Twice: a\\b\tc\r\nX-Twice: \"d\"\r\n");
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

TEST(ApiClient, WritesTheRequestLog)
{
    RawServer server;
    server.answer("/v1.0/check", answerOf(R"("httpStatusCode":403,"errorMessage":"no")"));
    setServiceHost(server.hostAndPort());
    const DeveloperWords words;
    qputenv("TZ", "Asia/Kolkata"); // the dates are those of UTC wherever the device is
    step = 1;
    AwaitedResult<CheckResponseModel> call;
    QString log = QString::fromStdString(printedBy([&] {
        ApiRequest::check({ u"ë\"/b"_s }, call.handler());
        call.wait();
    }));
    EXPECT_EQ(call.wait(), "refused");
    EXPECT_EQ(
        words.heard(), QStringList(u"check: refused by the service, status 403, code none"_s));

    const QString start = log.section(u"Start Date: "_s, 1).first(19);
    const auto date = QDateTime::fromString(QString(start).replace(u' ', u'T') + u'Z', Qt::ISODate);
    EXPECT_NEAR(date.toSecsSinceEpoch(), QDateTime::currentSecsSinceEpoch() + 3600, 60);
    step = 0;
    log.replace(server.hostAndPort(), u"HOST"_s);
    log.replace(start + u" +0000"_s, u"START"_s);
    log.replace(date.addSecs(3600).toString(u"yyyy-MM-dd HH:mm:ss '+0000'"_s), u"END"_s);
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
[Start Date: START]
🌐 URL: Optional(http://HOST/v1.0/check)
🤜🏻 Request Header: ["User-Agent": ... "Content-Type": "application/json; charset=utf-8"]
🤜🏻 Request Params: Optional("{\"reference\":\"ë\\\"\\/b\"}"))
** --------------- **)--"
        R"--( 
✅ Response Header: ["X-Twice": "a\\b\tc, \"d\"", "Content-Length": "51", "Connection": "close"]
✅ Response:
- meta:
  - requestId: nil
  - httpStatusCode: 403
  - errorCode: nil
  - errorMessage: "no"
- result: nil
[End Date: END]
Parloquin Request End
✓


)--");
}

} // namespace
