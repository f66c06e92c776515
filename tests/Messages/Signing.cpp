#include "Parloquin/Networking/Helper/ApiRequestHelper.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Router/ApiRouter.h"
#include "support/Console.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

QJsonObject headersAt(
    const QJsonValue &timeStamp, const QJsonValue &encrypted = QStringLiteral("1"))
{
    return { { QStringLiteral("X-TRZ-Req-Timestamp"), timeStamp },
        { QStringLiteral("X-TRZ-Encrypted"), encrypted }, { QStringLiteral("User-Agent"), 5 } };
}

QByteArray signatureOf(const std::optional<QJsonObject> &headers)
{
    return headers ? headers->value(u"X-TRZ-Req-Signature").toString().toLatin1() : "none";
}

TEST(Parameters, AreCleanedAtTheTopLevelOnly)
{
    const auto of = [](const char *json) { return QJsonDocument::fromJson(json).object(); };
    const QJsonObject dirty = of(
        R"({"empty":"","null":null,"no":false,"zero":0,"blank":" ","list":[],"nested":{"empty":""}})");
    const QJsonObject clean =
        of(R"({"no":false,"zero":0,"blank":" ","list":[],"nested":{"empty":""}})");

    // Plain where the flag is off, unknown, absent or no text.
    const QString now = QStringLiteral("1");
    const QJsonValue flags[] = { QStringLiteral("0"), QStringLiteral("2"), QStringLiteral("1 "), 1,
        true, {} };
    for (const QJsonValue &flag : flags)
        EXPECT_EQ(ApiRequestHelper(dirty, headersAt(now, flag)).requestParameters(), clean);
    EXPECT_EQ(ApiRequestHelper(dirty, std::nullopt).requestParameters(), clean);
    EXPECT_EQ(ApiRequestHelper(std::nullopt, headersAt(now)).requestParameters(), std::nullopt);

    // The same is signed and encrypted.
    EXPECT_EQ(ApiRequestHelper(dirty, headersAt(now)).requestParameters(),
        ApiRequestHelper(clean, headersAt(now)).requestParameters());
    EXPECT_EQ(signatureOf(ApiRequestHelper(dirty, headersAt(now)).requestHeaders()),
        signatureOf(ApiRequestHelper(clean, headersAt(now)).requestHeaders()));
}

TEST(Signature, NeedsParametersHeadersAndATimestampInText)
{
    const QJsonObject parameters;
    const ApiRequestHelper helpers[] = { { parameters, std::nullopt },
        { parameters, QJsonObject() }, { parameters, headersAt(QJsonValue(1.7e12)) },
        { std::nullopt, headersAt(QStringLiteral("1")) } };
    for (const auto &helper : helpers) {
        bool isSigned = false;
        EXPECT_EQ(printedBy([&] { isSigned = helper.requestHeaders().has_value(); }), "");
        EXPECT_FALSE(isSigned) << &helper - helpers;
    }

    // Replaces what stands there, and keeps the rest.
    QJsonObject headers = headersAt(QStringLiteral("1"));
    headers.insert(QStringLiteral("X-TRZ-Req-Signature"), QStringLiteral("old"));
    const auto signedHeaders = ApiRequestHelper(parameters, headers).requestHeaders();
    EXPECT_EQ(signatureOf(signedHeaders).size(), 44);
    EXPECT_EQ(signedHeaders->value(u"User-Agent"), 5);
}

TEST(Timestamp, IsCutToWholeSeconds)
{
    using Clock = std::chrono::system_clock;
    const auto at = [](qint64 milliseconds) {
        return BaseRequestHeaderModel::timeStampText(
            Clock::time_point(std::chrono::milliseconds(milliseconds)));
    };
    EXPECT_EQ(at(1700000000900), QStringLiteral("1700000000000"));
    EXPECT_EQ(at(999), QStringLiteral("0"));
    EXPECT_DEATH(at(-1), "clock");
}

TEST(ServiceAddress, ThatIsNoUrlStopsTheProgram)
{
    for (const char *host : { "", "bad host", "127.0.0.1:999999" }) {
        setServiceHost(QString::fromLatin1(host));
        EXPECT_DEATH((void)ApiRouter::check({}).asURLRequest(), "PARLOQUIN_SERVICE_HOST") << host;
    }
}

TEST(RequestHeader, IsOneFieldWhateverItsCase)
{
    UrlRequest request;
    request.addHeader("Accept", "a");
    request.addHeader("accept", "b");
    request.setHeader("Key", "x\r\nEvil: 1\n");
    request.setHeader("KEY", "y\r\nEvil: 2\n");
    request.addHeader("Breaks", "\r\n");
    request.addHeader("Null", QByteArray());
    EXPECT_EQ(request.headers,
        (HeaderFields {
            { "Accept", "a,b" }, { "Key", "y  Evil: 2" }, { "Breaks", "" }, { "Null", "" } }));
    for (const auto &[name, value] : request.headers)
        EXPECT_FALSE(value.isNull()) << name.constData();
    EXPECT_EQ(request.header("nUlL"), "");
    EXPECT_EQ(request.header("None"), std::nullopt);
}

} // namespace
