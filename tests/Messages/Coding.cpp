#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Extension/String+Extension.h"
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
constexpr Read checkOtp = outcome<BaseResponseModel<CheckOtpResponseModel>>;
constexpr Read sendOtp = outcome<BaseResponseModel<SendOtpResponseModel>>;
constexpr Read country = outcome<BaseResponseModel<CountryResponseModel>>;

const QByteArray wholeStart =
    R"({"meta":{"errorCode":"403001","errorMessage":"m","httpStatusCode":403,"requestId":"i"},)"
    R"("result":{"countryList":[{"countryCode":"TR","phoneCode":"+90","title":"T"}],)"
    R"("deeplink":"parlo:\/\/send","reference":"r","type":"t"}})";

const QByteArray wholeInit =
    R"({"result":{"alternativeValidation":"otp","alternativeValidationDescription":"a",)"
    R"("appPackageList":[{"package":"p"}],"countryCode":"RO","description":"d",)"
    R"("list":[{"app":"a","appPackage":"p","bgColour":"b","icon":"i","name":"n","text":"t",)"
    R"("textColour":"c"}],"localizationList":[{"key":"k","value":"v"}],"validation":"call"}})";

const QByteArray wholeCheck = R"({"result":{"sessionId":"s","validationStatus":true}})";

TEST(Decoding, ReadsStrictlyAndNamesTheFieldAtFault)
{
    // Nothing needs to be there.
    for (const char *bare : { R"({"meta":{},"result":{}})", R"({"result":{"list":[{}]}})",
             R"({"result":{"appPackageList":[{}],"localizationList":[{}]}})",
             R"({"result":{"countryList":[{}]}})" }) {
        for (const Read read : { init, start, check, checkOtp, sendOtp, country })
            EXPECT_TRUE(read(bare).startsWith('{')) << bare << read(bare).constData();
    }
    const struct {
        Read read;
        QByteArray body, expected;
    } rows[] = {
        { init, wholeInit, wholeInit },
        { start, wholeStart, wholeStart },
        { checkOtp, wholeCheck, wholeCheck },
        { sendOtp, R"({"x":[1,{"y":2.5}],"result":{"Reference":1,"reference":"r"}})",
            R"({"result":{"reference":"r"}})" },
        { sendOtp, R"({"result":{"\u0072eference":"r"}})", R"({"result":{"reference":"r"}})" },
        { sendOtp, R"({"result":{"reference":5,"reference":"b"}})",
            R"({"result":{"reference":"b"}})" },
        { check, R"({"result":{"sessionId":"a"},"result":{"validationStatus":true}})",
            R"({"result":{"validationStatus":true}})" },
        { check, " \n\t{ } \r\n", "{}" },
        { init, R"({"meta":null,"result":{"list":[{"icon":null}],"countryCode":null}})",
            R"({"result":{"list":[{}]}})" },
        { check, R"({"result":{"sessionId":"\ufeffa"}})",
            "{\"result\":{\"sessionId\":\"\xEF\xBB\xBF"
            "a\"}}" },
        { sendOtp,
            R"({"x":[1e400,-340282366920938463463374607431768211456],"\"":0.1E+999,"result":{}})",
            R"({"result":{}})" },
        { outcome<CountryRequestModel>, R"({"countryCode":""})", R"({"countryCode":""})" },
        { init, R"({"meta":{"httpStatusCode":"200"}})", "meta.httpStatusCode: expected integer" },
        { init, R"({"meta":{"httpStatusCode":4294967496}})",
            "meta.httpStatusCode: unknown value 4294967496" },
        { init, R"({"meta":{"httpStatusCode":18446744073709551615}})",
            "meta.httpStatusCode: unknown value 18446744073709551615" },
        { check, R"({"meta":{"errorCode":")" + QByteArray(65, '4') + R"("}})",
            R"(meta.errorCode: unknown value ")" + QByteArray(64, '4') + '"' },
        { check, R"({"meta":{"errorCode":"403004"}})",
            R"(meta.errorCode: unknown value "403004")" },
        { check, R"({"result":{},"result":1})", "result: expected object" },
        { init, R"({"result":{"list":{}}})", "result.list: expected array" },
        { init, R"({"result":{"list":[{},null]}})", "result.list[1]: expected object" },
        { check, R"({"result":{"validationStatus":1}})",
            "result.validationStatus: expected boolean" },
        { country, R"({"result":{"list":[{"title":"a"},{"title":1.5}]}})",
            "result.list[1].title: expected string" },
        { outcome<CountryRequestModel>, "{}", "countryCode: missing" },
        { check, "[]", "body: expected object" },
    };
    for (const auto &[read, body, expected] : rows)
        EXPECT_EQ(read(body), expected) << body.left(200).constData();
    const QByteArray method = R"({"result":{"validation":"@"}})";
    const QByteArray code = R"({"meta":{"errorCode":"@"}})";
    for (const auto &[body, words] :
        { std::pair(method, "accountkit otp call 3rdparty whatsapp telegram viber"),
            { code, "403001 403002 403003 403026" } }) {
        for (const QByteArray &word : QByteArray(words).split(' ')) {
            const QByteArray said = QByteArray(body).replace('@', word);
            EXPECT_EQ(init(said), said);
        }
    }
    const QByteArray others[] = { "<html></html>", "\xEF\xBB\xBF{}", "{} {}", R"({"meta":null,})",
        R"({"x":[1,]})", R"({"result":{"sessionId":"\ud800"}})",
        "{\"result\":{\"sessionId\":\"\xff\"}}", "{\"result\":{\"sessionId\":\"\x01\"}}",
        R"({"x":1e400,"y":012345})", R"({"x":3-2623})", R"({"x":32623-26})",
        R"({"x":)" + QByteArray(100000, '[') + QByteArray(100000, ']') + '}' };
    for (const QByteArray &body : others)
        EXPECT_TRUE(check(body).startsWith("body: no JSON")) << body.left(200).constData();
    for (qsizetype size = 0; size < wholeStart.size(); ++size) {
        ASSERT_TRUE(start(wholeStart.first(size)).startsWith("body: no JSON")) << size;
        const QByteArray text = QByteArray(size, 'a') + "\xC3\xA9" + QByteArray(size % 17, 'a');
        const QByteArray late = R"({"result":{"sessionId":")" + text + R"("}})";
        ASSERT_EQ(check(late), late);
    }
}

TEST(RawValue, IsExactlyOneOfItsTable)
{
    for (int status = 0; status < 1000; ++status) {
        const bool isKnown = QList { 200, 201, 400, 403, 404, 429, 500 }.contains(status);
        const auto value = fromRaw<HttpStatusCode>(status);
        EXPECT_EQ(value ? rawValue(*value) : -1, isKnown ? status : -1) << status;
    }
}

TEST(Encoding, LeavesOutWhatIsEmptyAndKeepsWhatIsRequired)
{
    const std::pair<ApiRouter, const char *> rows[] = {
        { ApiRouter::start({ QString(), {}, {} }), R"({"countryCode":""})" },
        { ApiRouter::start({ QStringLiteral("tr"), QString(), QStringLiteral("{}") }),
            R"({"app":"","countryCode":"tr","installedApps":"{}"})" },
        { ApiRouter::check({}), "{}" },
        { ApiRouter::sendOTP({ QStringLiteral("1"), {} }), R"({"phoneNumber":"1"})" },
        { ApiRouter::check({ QString(QChar(0xD83D)) }), R"({"reference":"?"})" },
        { ApiRouter::check({ QStringLiteral("\"\\/\b\f\n\r\t\x01\x1f\x7f\u2028") }),
            "{\"reference\":\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\u2028\"}" },
    };
    for (const auto &[route, text] : rows)
        EXPECT_EQ(jsonText(route.parameters()), text);
}

TEST(Dump, ShowsEveryFieldOfEveryLevel)
{
    const auto shown = [](const auto &model) {
        QString text;
        Dump(model).write([&text](QStringView piece) { text += piece; });
        return text.toStdString();
    };
    const auto model = decode<BaseResponseModel<InitResponseModel>>(
        R"({"meta":{"httpStatusCode":200,"errorCode":"403001"},"result":{"appPackageList":[{},{"package":"a"}]}})");
    EXPECT_EQ(shown(*model),
        "- meta:\n  - requestId: nil\n  - httpStatusCode: 200\n  - errorCode: \"403001\"\n"
        "  - errorMessage: nil\n- result:\n  - validation: nil\n  - countryCode: nil\n"
        "  - description: nil\n  - list: nil\n  - alternativeValidation: nil\n"
        "  - alternativeValidationDescription: nil\n  - appPackageList: 2 elements\n    - [0]:\n"
        "      - package: nil\n    - [1]:\n      - package: \"a\"\n  - localizationList: nil");
    EXPECT_EQ(
        shown(CheckResponseModel { {}, false }), "- sessionId: nil\n- validationStatus: false");
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
