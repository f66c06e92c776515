#include "Parloquin/Networking/Helper/ApiRequestHelper.h"
#include "Parloquin/Networking/Router/ApiRouter.h"
#include "Parloquin/Platform/Device.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QMessageAuthenticationCode>

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

InitRequestModel initModel()
{
    InitRequestModel model;
    model.deviceName = QStringLiteral(u"Zo\u00eb's \"phone\" 1/2");
    model.timezone = QStringLiteral("Europe/Berlin");
    model.countryCode = QStringLiteral("DE");
    return model;
}

struct Row {
    const char *path; // and name of the case
    std::function<ApiRouter()> route;
    const char *signedJson;
    const char *signature; // at 1700000000000
    const char *body;
};

// Signatures by Python's hmac, bodies by the openssl command, under the key of support/Info.plist.
const Row rows[] = {
    { "init", [] { return ApiRouter::initializer(initModel()); },
        R"({"countryCode":"DE","deviceName":"Zoë's \"phone\" 1/2","timezone":"Europe/Berlin"})",
        "3Sj1bqYz2neeGqNnL2rcuNIE9ndUJeGda8ipUAdFrbQ=",
        R"({"data":"qMoY234nJmvg4l2Y0NhKNh\/ia1ZDBWkcHHV1uJRM3tdow3IlrAmiMktQliB+QyDZuNcCcx1RBlTFz)"
        R"(26x8MWP2FFOVRMmtj2+YbkFH1fiZ764bf95XLcWCM5+KHDux1+P"})" },
    { "start",
        [] {
            return ApiRouter::start({ QStringLiteral("tr"), QStringLiteral("parlo"),
                QStringLiteral(R"({"kite:\/\/":"0","parlo:\/\/":"1"})") });
        },
        R"({"app":"parlo","countryCode":"tr","installedApps":"{\"kite:\\/\\/\":\"0\",)"
        R"(\"parlo:\\/\\/\":\"1\"}"})",
        "Ll8B+d5SjadDDdW4p5ofIl4K0fD/vZRCQ9zc3vr8Evk=",
        R"({"data":"xROLCO2UlEsRqn4w1lqn5DlqxAq3obXCsa4eSBMgN7+hO24zFku2xMJg7V3fx0m7R\/1uq3mPW+xVm)"
        R"(YUEToA53l+2FcaFrEPBrKrk979HseUL\/qRM6F1oHaUewfVMENTOokBvD5s9Kqf5v3aXcdgThA=="})" },
    { "check", [] { return ApiRouter::check({ QStringLiteral("ref/1") }); },
        R"({"reference":"ref/1"})", "UAwHmPeh2PE9iT+xx8rxXChAHhD1LSmTKjP+wJAxk+8=",
        R"({"data":"vJFsvY6kKe6s13xAZIvALEmNHDnQ\/AVpe+UevZ4XVqA="})" },
    { "send-otp",
        [] {
            return ApiRouter::sendOTP({ QStringLiteral("+905551234567"), QStringLiteral("TR") });
        },
        R"({"countryCode":"TR","phoneNumber":"+905551234567"})",
        "98AjZDH+UvCytlolBu7naHnwhQTu2CX7ZHPKZfTL66Q=",
        R"({"data":"qMoY234nJmvg4l2Y0NhKNvWhs7DL7EnuY2t7cs1h45QKuj397gPdo7Cl9VvRGH5m5q8P4fuHPW\/7d)"
        R"(exFBfu+vg=="})" },
    { "check-otp",
        [] {
            return ApiRouter::checkOTP({ QStringLiteral("5551234567"), QStringLiteral("TR"),
                QStringLiteral("A\\7"), QStringLiteral("r-2") });
        },
        R"({"code":"A\\7","countryCode":"TR","phoneNumber":"5551234567","reference":"r-2"})",
        "YeDBNNIzNDzDx0132QdmZ30MpwU/pK8PGAYeZeEUwYw=",
        R"({"data":"oaASaNvPgt76VmFjVkozptsfZOK2kkB\/xnkmuQGFmxOQvYdb4eB71anvSg26CnlYPYl70M7Zw25Of)"
        R"(i49Ia3UMepehi\/Z8yWRGz2pmf35HCk="})" },
    { "result", [] { return ApiRouter::checkResult({ QStringLiteral("s-3") }); },
        R"({"session_id":"s-3"})", "KFKEemz8/ulnGoYDzSBbIR880o0sxf/y3QD65OsB8lU=",
        R"({"data":"8fOhQGZv1cAq327MwPxrHzZ\/JbvpFewJ483LZ87LWmA="})" },
    // The empty country code is cleaned away.
    { "country", [] { return ApiRouter::country({ QString() }); }, "{}",
        "AV2KuKEYvi3bsm9g6q3lSO52H8gMNQ3Ebn/r+Ph8Guc=", R"({"data":"xDWj8Agp+WlhR65UJAXapg=="})" },
};

class Route : public testing::TestWithParam<Row> { };

TEST_P(Route, IsSignedAndEncryptedAsComputedElsewhere)
{
    const ApiRequestHelper helper(
        GetParam().route().parameters(), headersAt(QStringLiteral("1700000000000")));
    testing::internal::CaptureStdout();
    EXPECT_EQ(signatureOf(helper.requestHeaders()), GetParam().signature);
    const std::string cyclones = "\U0001F300\U0001F300\U0001F300\U0001F300\U0001F300";
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
        "\n\n\n" + cyclones + "\n[HMAC/SIGNATURE Start]\nHMAC: 1700000000000-"
            + GetParam().signedJson + "\nHMAC with SHA: Optional(\"" + GetParam().signature
            + "\")\n[HMAC/SIGNATURE End]\n" + cyclones + "\n\n\n\n");
}

TEST_P(Route, BecomesOneWholeRequest)
{
    setServiceHost(QStringLiteral("127.0.0.1:4321"));
    setServiceTimeout(std::chrono::milliseconds(1234));
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const UrlRequest request = GetParam().route().asURLRequest();
    const qint64 after = QDateTime::currentSecsSinceEpoch();

    EXPECT_EQ(request.url.toEncoded(), QByteArray("http://127.0.0.1:4321/v1.0/") + GetParam().path);
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.timeout, std::chrono::milliseconds(1234));
    EXPECT_EQ(request.body, GetParam().body);

    const QByteArray timeStamp = request.header("X-TRZ-Req-Timestamp").value_or("none");
    EXPECT_GE(timeStamp.toLongLong(), before * 1000);
    EXPECT_LE(timeStamp.toLongLong(), after * 1000);
    EXPECT_TRUE(timeStamp.endsWith("000"));
    const QByteArray mac = QMessageAuthenticationCode::hash(timeStamp + '-' + GetParam().signedJson,
        R"(GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/)",
        QCryptographicHash::Sha256);
    HeaderFields expected = {
        { "Content-Type", "application/json; charset=utf-8" },
        { "User-Agent", "iOS" },
        { "X-TRZ-Client-Device-Id", Device::identifierForVendor().toUtf8() },
        { "X-TRZ-Client-Key", "parloquin-demo" },
        { "X-TRZ-Encrypted", "1" },
        { "X-TRZ-Lang", Device::languageCode().toUtf8() },
        { "X-TRZ-Os", "ios " + Device::systemVersion().toUtf8() },
        { "X-TRZ-Req-Signature", mac.toBase64() },
        { "X-TRZ-Req-Timestamp", timeStamp },
        { "X-TRZ-Sdk-Version", "1.0" },
    };
    HeaderFields sent = request.headers;
    std::sort(sent.begin(), sent.end());
    EXPECT_EQ(sent, expected);
    for (const auto &[name, value] : sent)
        EXPECT_FALSE(value.isNull()) << name.constData(); // a null value would not be sent
}

INSTANTIATE_TEST_SUITE_P(Golden, Route, testing::ValuesIn(rows),
    [](const auto &row) { return QByteArray(row.param.path).replace('-', '_').toStdString(); });

TEST(Parameters, AreCleanedAtTheTopLevelOnly)
{
    const QJsonObject dirty {
        { QStringLiteral("empty"), QString() },
        { QStringLiteral("null"), QJsonValue() },
        { QStringLiteral("no"), false },
        { QStringLiteral("zero"), 0 },
        { QStringLiteral("blank"), QStringLiteral(" ") },
        { QStringLiteral("list"), QJsonArray() },
        { QStringLiteral("nested"), QJsonObject { { QStringLiteral("empty"), QString() } } },
    };
    QJsonObject clean = dirty;
    clean.remove(QStringLiteral("empty"));
    clean.remove(QStringLiteral("null"));

    // Plain where the flag is off, unknown, absent or no text.
    const QString now = QStringLiteral("1");
    for (const QJsonValue &flag :
        { QJsonValue(QStringLiteral("0")), QJsonValue(QStringLiteral("2")),
            QJsonValue(QStringLiteral("1 ")), QJsonValue(1), QJsonValue(true), QJsonValue() })
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
    testing::internal::CaptureStdout();
    const QJsonObject parameters;
    EXPECT_FALSE(ApiRequestHelper(parameters, std::nullopt).requestHeaders());
    EXPECT_FALSE(ApiRequestHelper(parameters, QJsonObject()).requestHeaders());
    EXPECT_FALSE(ApiRequestHelper(parameters, headersAt(QJsonValue(1.7e12))).requestHeaders());
    EXPECT_FALSE(ApiRequestHelper(std::nullopt, headersAt(QStringLiteral("1"))).requestHeaders());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

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
