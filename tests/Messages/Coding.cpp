#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Extension/String+Extension.h"
#include "Parloquin/Networking/Model/Base/BaseRequestHeaderModel.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "Parloquin/Networking/Router/ApiRouter.h"

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

/// What a model makes of a body: its own JSON text again, or the fault.
template <class Model> QByteArray outcome(const QByteArray &body)
{
    QString fault;
    const std::optional<Model> model = decode<Model>(body, &fault);
    return model ? jsonText(dictionary(*model)) : fault.toUtf8();
}

using Read = QByteArray (*)(const QByteArray &body);
constexpr Read init = outcome<BaseResponseModel<InitResponseModel>>;
constexpr Read start = outcome<BaseResponseModel<StartResponseModel>>;
constexpr Read check = outcome<BaseResponseModel<CheckResponseModel>>;
constexpr Read sendOtp = outcome<BaseResponseModel<SendOtpResponseModel>>;
constexpr Read checkOtp = outcome<BaseResponseModel<CheckOtpResponseModel>>;
constexpr Read country = outcome<BaseResponseModel<CountryResponseModel>>;

const QByteArray kit = R"({"app":"parlo","appPackage":"parlo:\/\/","bgColour":"#12ab34",)"
                       R"("icon":"http:\/\/x\/i.png","name":"Parlo","text":"Use Parlo",)"
                       R"("textColour":"ffffff"})";
const QByteArray wholeInit =
    R"({"meta":{"errorCode":"403026","errorMessage":"m","httpStatusCode":404,"requestId":"r"},)"
    R"("result":{"alternativeValidation":"otp","alternativeValidationDescription":"d",)"
    R"("appPackageList":[{"package":"parlo:\/\/"},{}],"countryCode":"TR","description":"D",)"
    R"("list":[)"
    + kit + "," + kit
    + R"(],"localizationList":[{"key":"k","value":"v"}],"validation":"3rdparty"}})";
const QByteArray wholeStart =
    R"({"result":{"countryList":[{"countryCode":"TR","phoneCode":"+90","title":"T"}],)"
    R"("deeplink":"parlo:\/\/send","reference":"r","type":"t"}})";

const QByteArray wholeHeader =
    R"({"User-Agent":"a","X-TRZ-Client-Device-Id":"","X-TRZ-Client-Key":"","X-TRZ-Encrypted":"0",)"
    R"("X-TRZ-Lang":"","X-TRZ-Os":"","X-TRZ-Req-Signature":"","X-TRZ-Req-Timestamp":"",)"
    R"("X-TRZ-Sdk-Version":""})";

TEST(Decoding, ReadsStrictlyAndNamesTheFieldAtFault)
{
    const struct {
        Read read;
        QByteArray body, expected;
    } rows[] = {
        { init, "{}", "{}" },
        { init, R"({"meta":null,"result":null})", "{}" },
        { init, wholeInit, wholeInit },
        { start, wholeStart, wholeStart },
        { init, R"({"result":{"list":[]}})", R"({"result":{"list":[]}})" },
        { check, R"({"result":{"sessionId":null,"validationStatus":false}})",
            R"({"result":{"validationStatus":false}})" },
        { checkOtp, R"({"result":{"sessionId":"","validationStatus":true}})",
            R"({"result":{"sessionId":"","validationStatus":true}})" },
        { country,
            R"({"result":{"list":[{"title":"\u00c5land"},{"title":"b"},{},{"title":"d"},{}]}})",
            R"({"result":{"list":[{"title":"Åland"},{"title":"b"},{},{"title":"d"},{}]}})" },
        { sendOtp, R"({"x":[1,{"y":2.5}],"result":{"Reference":1,"reference":"r"}})",
            R"({"result":{"reference":"r"}})" },
        { sendOtp, R"({"result":{"\u0072eference":"r"}})", R"({"result":{"reference":"r"}})" },
        { sendOtp, R"({"result":{"reference":5,"reference":"b"}})",
            R"({"result":{"reference":"b"}})" },
        { check, R"({"result":{"sessionId":"a"},"result":{"validationStatus":true}})",
            R"({"result":{"validationStatus":true}})" },
        { sendOtp, R"({"result":{"reference":"a","reference":null}})", R"({"result":{}})" },
        { check, " \n\t{ } \r\n", "{}" },
        { sendOtp, R"({"result":{"reference":"\ud83c\udf00"}})",
            "{\"result\":{\"reference\":\"\U0001F300\"}}" },
        { sendOtp, R"({"result":{"reference":"\ufeffr"}})",
            "{\"result\":{\"reference\":\"\uFEFFr\"}}" },
        { sendOtp,
            R"({"x":[1e400,-340282366920938463463374607431768211456],"\"":0.1E+999,"result":{}})",
            R"({"result":{}})" },
        { outcome<CountryRequestModel>, R"({"countryCode":""})", R"({"countryCode":""})" },
        { outcome<BaseRequestHeaderModel>, wholeHeader, wholeHeader },
        { init, R"({"meta":{"httpStatusCode":"200"}})", "meta.httpStatusCode: expected integer" },
        { init, R"({"meta":{"httpStatusCode":200.5}})", "meta.httpStatusCode: expected integer" },
        { init, R"({"meta":{"httpStatusCode":401}})", "meta.httpStatusCode: unknown value 401" },
        { init, R"({"meta":{"httpStatusCode":413}})", "meta.httpStatusCode: unknown value 413" },
        { init, R"({"meta":{"httpStatusCode":18446744073709551615}})",
            "meta.httpStatusCode: unknown value 18446744073709551615" },
        { init, R"({"meta":{"httpStatusCode":4294967496}})",
            "meta.httpStatusCode: unknown value 4294967496" },
        { check, R"({"meta":{"errorCode":"403004"}})",
            R"(meta.errorCode: unknown value "403004")" },
        { check, R"({"meta":{"errorCode":403001}})", "meta.errorCode: expected string" },
        { check, R"({"meta":[]})", "meta: expected object" },
        { check, R"({"result":{},"result":1})", "result: expected object" },
        { init, R"({"result":{"validation":"Otp"}})", R"(result.validation: unknown value "Otp")" },
        { init, R"({"result":{"list":{}}})", "result.list: expected array" },
        { init, R"({"result":{"list":[{},null]}})", "result.list[1]: expected object" },
        { check, R"({"result":{"validationStatus":1}})",
            "result.validationStatus: expected boolean" },
        { country, R"({"result":{"list":[{"title":"a"},{"title":1.5}]}})",
            "result.list[1].title: expected string" },
        { outcome<CountryRequestModel>, "{}", "countryCode: missing" },
        { outcome<CountryRequestModel>, R"({"countryCode":null})", "countryCode: expected string" },
        { check, "[]", "body: expected object" },
        { init, R"({"meta":{"httpStatusCode":200e400}})", "meta.httpStatusCode: expected integer" },
    };
    for (const auto &[read, body, expected] : rows)
        EXPECT_EQ(read(body), expected) << body.left(200).constData();
    for (const char *method :
        { "accountkit", "otp", "call", "3rdparty", "whatsapp", "telegram", "viber" }) {
        const QByteArray body = R"({"result":{"validation":")" + QByteArray(method) + R"("}})";
        EXPECT_EQ(init(body), body);
    }
    const QByteArray others[] = { "<html></html>", "\xEF\xBB\xBF{}", "{} {}", R"({"meta":null,})",
        R"({"x":[1,]})", R"({"result":{"sessionId":"\ud800"}})",
        "{\"result\":{\"sessionId\":\"\xff\"}}", "{\"result\":{\"sessionId\":\"\x01\"}}",
        R"({"x":1e400,"y":012345})", R"({"x":3-2623})", R"({"x":32623-26})",
        R"({"x":)" + QByteArray(100000, '[') + QByteArray(100000, ']') + '}' };
    for (const QByteArray &body : others)
        EXPECT_TRUE(check(body).startsWith("body: no JSON")) << body.left(200).constData();
    for (qsizetype size = 0; size < wholeInit.size(); ++size)
        ASSERT_TRUE(init(wholeInit.first(size)).startsWith("body: no JSON")) << size;
}

TEST(RawValue, IsExactlyOneOfItsTable)
{
    for (int status = 0; status < 1000; ++status) {
        const bool isKnown = QList { 200, 201, 400, 403, 404, 429, 500 }.contains(status);
        const auto value = fromRaw<HttpStatusCode>(status);
        EXPECT_EQ(value ? rawValue(*value) : -1, isKnown ? status : -1) << status;
    }
    EXPECT_EQ(fromRaw<HttpStatusCode>(404), HttpStatusCode::notFoundError);
    // Stored by index somewhere, this order must not change: 404 stands before 403.
    EXPECT_LT(HttpStatusCode::notFoundError, HttpStatusCode::forbiddenError);
}

TEST(Success, IsDecidedByTheStatusAlone)
{
    const std::pair<const char *, bool> rows[] = {
        { "{}", false },
        { R"({"meta":{},"result":{"sessionId":"s"}})", false },
        { R"({"meta":{"httpStatusCode":200,"errorCode":"403002"}})", true },
        { R"({"meta":{"httpStatusCode":201}})", true },
        { R"({"meta":{"httpStatusCode":400},"result":{"sessionId":"s"}})", false },
    };
    for (const auto &[body, isSuccess] : rows)
        EXPECT_EQ(decode<BaseResponseModel<CheckResponseModel>>(body)->isSuccess(), isSuccess);
}

TEST(Encoding, LeavesOutWhatIsEmptyAndKeepsWhatIsRequired)
{
    const std::pair<ApiRouter, const char *> rows[] = {
        { ApiRouter::start({ QString(), {}, {} }), R"({"countryCode":""})" },
        { ApiRouter::start({ QStringLiteral("tr"), QString(), QStringLiteral("{}") }),
            R"({"app":"","countryCode":"tr","installedApps":"{}"})" },
        { ApiRouter::check({}), "{}" },
        { ApiRouter::sendOTP({ QStringLiteral("1"), {} }), R"({"phoneNumber":"1"})" },
        { ApiRouter::check({ QStringLiteral("\"\\/\b\f\n\r\t\x01\x1f\x7f\u2028") }),
            "{\"reference\":\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\u2028\"}" },
    };
    for (const auto &[route, text] : rows)
        EXPECT_EQ(jsonText(route.parameters()), text);
}

TEST(Dump, ShowsEveryFieldOfEveryLevel)
{
    const auto model = decode<BaseResponseModel<InitResponseModel>>(
        R"({"meta":{"httpStatusCode":200,"errorCode":"403001"},"result":{"appPackageList":[{},{"package":"a"}]}})");
    QString text;
    Dump(*model).write([&text](QStringView piece) { text += piece; });
    EXPECT_EQ(text.toStdString(),
        "- meta:\n  - requestId: nil\n  - httpStatusCode: 200\n  - errorCode: \"403001\"\n"
        "  - errorMessage: nil\n- result:\n  - validation: nil\n  - countryCode: nil\n"
        "  - description: nil\n  - list: nil\n  - alternativeValidation: nil\n"
        "  - alternativeValidationDescription: nil\n  - appPackageList: 2 elements\n    - [0]:\n"
        "      - package: nil\n    - [1]:\n      - package: \"a\"\n  - localizationList: nil");
}

TEST(Dump, OfALongListComesWholeInShortPieces)
{
    CountryResponseModel model { QList<CountryModel>(1000) };
    model.list->last().title = QStringLiteral("Z");
    QString text;
    qsizetype longest = 0;
    Dump(model).write([&](QStringView piece) {
        text += piece;
        longest = std::max(longest, piece.size());
    });
    EXPECT_LT(longest, 8192);
    EXPECT_EQ(text.count(u'\n'), 4000);
    EXPECT_EQ(text.count(QStringLiteral("title: nil\n  - [")), 999);
    EXPECT_TRUE(text.endsWith(QStringLiteral("- title: \"Z\"")));
}

} // namespace
