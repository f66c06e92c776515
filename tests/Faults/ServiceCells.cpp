// What the service may do to each call, and what must come of it.
//
// Each fault of the wire and of HTTP meets each call, since each has its own way from the answer to
// the screen and the host; those of the cipher and of JSON all but the picture, which has neither.
// What code treats that knows no calls (odd lengths, most statuses, the fields of `meta`, a
// deadline of 60 seconds) meets one. Two faults at once are for the soak; no screen makes the
// result call.
#include "Faults/FaultTest.h"

static const QStringList succeeded { u"succeeded"_s }, unauthorised { u"failed 0"_s },
    serverError { u"failed 1"_s };

// clang-format off
const std::vector<Call> calls {
    { "init", { { {}, "apps 2 icon" }, { {}, "apps 0" }, { serverError, "apps 0" } } },
    { "start", { { {}, "apps 2 icon link" }, { {}, "apps 2 icon" }, { serverError, "apps 2 icon" } } },
    { "check", { { succeeded, "apps 2 icon link" }, { unauthorised, "apps 2 icon link" }, { serverError, "apps 2 icon link" } } },
    { "country", { { {}, "countries 16" }, { {}, "countries 0" }, { {}, "countries 0" } } },
    { "send-otp", { { {}, "code" }, { {}, "phone" }, { {}, "phone" } } },
    { "check-otp", { { succeeded, "code" }, { unauthorised, "code" }, { serverError, "code" } } },
    { "icon", { { {}, "apps 2 icon" }, { {}, "apps 2" }, { {}, "apps 2" } } },
};
// clang-format on

namespace {

/// Texts of the sandbox's language in a line; OTHER stands for another host.
struct Faults {
    Kind kind;
    const char *texts;
};
/// Of the wire and of HTTP: every call meets them.
const Faults wireFaults[] = {
    { usual, "none" },
    { failed,
        "close@accept reset@accept half-close@accept stall@accept garbage@accept endless@accept "
        "close@request reset@request half-close@request stall@request garbage@request "
        "endless@request close@before reset@before half-close@before stall@before drip@before "
        "garbage@before endless@before close@head reset@head half-close@head stall@head drip@head "
        "garbage@head endless@head close@body close@body+0 reset@body half-close@body stall@body "
        "stall@body+0 drip@body cut@body cut@body+16 garbage@body endless@body" },
    { usual,
        "close@after reset@after half-close@after stall@after garbage@after endless@after "
        "redirect:301:http://OTHER/ redirect:307:http://OTHER/" },
    { failed, "length:+7 length:-7" },
    { usual, "length:none" },
    { failed, "length:twice chunks:broken chunks:endless gzip:67108864" },
    { usual, "cookie" },
    { failed, "body:0 body:1 body:17 body:67108864 status:204" },
    { usual, "status:404 status:500" },
};
/// Of the cipher and of JSON: every call but the icon has these. What cannot be decrypted is read
/// as it came: an envelope that holds nothing known.
const Faults answerFaults[] = {
    { empty, "key:wrong blocks:cut" },
    { failed, "blocks:swapped" },
    { empty, "padding:bad flag:off" },
    { usual, "flag:on json:depth:100" },
    { failed, "json:depth:1100 json:depth:1000000" },
    { usual, "json:duplicate" },
    { failed, "json:surrogate json:2^53+1 json:1e400 json:bom" },
    { empty, "json:result=null clock:7200" },
};
/// Told apart by code that knows no calls: one call meets them.
const Faults otherFaults[] = {
    { usual,
        "redirect:302:http://OTHER/ redirect:303:http://OTHER/ redirect:308:http://OTHER/ "
        "redirect:302:/v1.0/check json:nul" },
    { failed, "body:15 body:16 status:100 status:101 status:199 status:304" },
    { usual,
        "status:201 status:202 status:206 status:300 status:305 status:399 status:400 status:401 "
        "status:403 status:407 status:408 status:410 status:418 status:429 status:501 status:502 "
        "status:503 status:504 status:599" },
};

/// Every field of every answer, by the values that it must not have.
struct Fields {
    const char *call;
    const char *wrong;
    const char *paths;
};
const char *const noObject = R"(7 "x" [])";
const char *const noList = R"(7 "x" {} [7])";
const char *const noText = "7 true [] {}";
const char *const noBoolean = R"(1 "true" {})";
const char *const noWord = R"(7 "200" 200.5 [])"; ///< one of some words, or a number
const Fields fields[] = {
    { "init", noObject, "result result.list[0]" },
    { "init", noWord, "result.validation result.alternativeValidation" },
    { "init", noList, "result.list result.appPackageList result.localizationList" },
    { "init", noText,
        "result.countryCode result.description result.alternativeValidationDescription "
        "result.list[0].app result.list[0].appPackage result.list[0].name result.list[1].text "
        "result.list[1].icon result.list[1].bgColour result.list[1].textColour "
        "result.appPackageList[0].package result.localizationList[0].key "
        "result.localizationList[0].value" },
    { "start", noObject, "result" },
    { "start", noList, "result.countryList" },
    { "start", noText,
        "result.deeplink result.reference result.type result.countryList[0].title "
        "result.countryList[0].countryCode result.countryList[0].phoneCode" },
    { "check", noObject, "result" },
    { "check", noText, "result.sessionId" },
    { "check", noBoolean, "result.validationStatus" },
    { "country", noObject, "result" },
    { "country", noList, "result.list" },
    { "country", noText,
        "result.list[0].title result.list[99].countryCode result.list[241].phoneCode" },
    { "send-otp", noObject, "result" },
    { "send-otp", noText, "result.reference" },
    { "check-otp", noObject, "result meta" },
    { "check-otp", noText, "result.sessionId meta.requestId meta.errorMessage" },
    { "check-otp", noBoolean, "result.validationStatus" },
    { "check-otp", noWord, "meta.httpStatusCode meta.errorCode" },
};
/// Texts that show: they may be as long as the service likes.
struct ShownTexts {
    const char *call;
    const char *paths;
    QByteArray scene;
};
const ShownTexts shownTexts[] = {
    { "init", "result.description result.alternativeValidationDescription result.list[0].text",
        "apps 2 icon" },
    { "country", "result.list[0].title", "countries 15" },
    { "country", "result.list[0].phoneCode", "countries 16" },
};

QList<QByteArray> words(const char *line) { return QByteArray(line).split(' '); }

const Call &callNamed(const QByteArray &name)
{
    return *std::find_if(
        calls.begin(), calls.end(), [&](const Call &call) { return call.name == name; });
}

bool takesTheDeadline(const QByteArray &fault)
{
    return fault.startsWith("stall") || fault.startsWith("drip") || fault.contains("endless")
        || fault.startsWith("half-close@re");
}

Cell cellOf(const Call &call, const QByteArray &text, Kind kind, bool inSample = false,
    std::chrono::milliseconds deadline = FaultTest::shortDeadline)
{
    const auto act = [=, name = call.name](FaultTest &test) {
        ASSERT_NO_FATAL_FAILURE(test.goTo(name));
        test.setFault(name, text);
        if (kind == failed && takesTheDeadline(text))
            test.setDeadline(deadline);
        test.makeAndWait(name);
        if (name == "icon" && kind != usual) { // nothing tells when a picture does not come
            EXPECT_FALSE(test.waitForScene("apps 2 icon", FaultTest::shortDeadline * 2));
        }
        // One request, whatever becomes of it; a connection that breaks at once has none.
        EXPECT_LE(test.posts(name), 1) << "sent again";
        EXPECT_TRUE(test.posts(name) == 1 || text.contains("@accept") || name == "icon");
        test.setFault(name, {});
    };
    return { text, call.name, act, call.effects[kind].outcomes, call.effects[kind].scene,
        inSample };
}

/// The same for a value of one field, under the name of all such.
Cell cellOf(const char *fault, const QByteArray &call, const QByteArray &path,
    const QByteArray &value, const QByteArray &valueName, Kind kind, bool inSample = false)
{
    Cell cell = cellOf(callNamed(call), "json:" + path + '=' + value, kind, inSample);
    cell.fault = fault;
    cell.at += ' ' + path + valueName;
    return cell;
}

} // namespace

std::vector<Cell> serviceCells()
{
    std::vector<Cell> cells;
    size_t turn = 0; // each fault is in the sample once, with one call after another
    const auto addAll = [&](const auto &table, size_t callCount) {
        for (const auto &[kind, texts] : table) {
            for (const QByteArray &text : words(texts)) {
                const size_t sampled = turn++ % callCount;
                // A picture is shown or not, whatever the reason.
                const bool isNoPicture = text.contains("status") || text.contains("redirect");
                for (size_t i = 0; i < callCount; ++i)
                    cells.push_back(cellOf(calls[i], text,
                        isNoPicture && calls[i].name == "icon" ? failed : kind, i == sampled));
            }
        }
    };
    addAll(wireFaults, 7);
    addAll(answerFaults, 6);
    const Call check = callNamed("check");
    for (const auto &[kind, texts] : otherFaults) {
        for (const QByteArray &text : words(texts))
            cells.push_back(cellOf(check, text, kind));
    }
    for (const char *text : { "stall@before", "drip@body", "endless@body" }) {
        cells.push_back(cellOf(check, text, failed, false, 60s));
        cells.back().fault += " for 60 s";
    }
    for (const auto &[call, wrong, paths] : fields) {
        for (const QByteArray &path : words(paths)) {
            for (const QByteArray &value : words(wrong))
                cells.push_back(cellOf("json:FIELD=VALUE of a wrong type", call, path, value,
                    '=' + value, failed, wrong == noObject && value == "7"));
        }
    }
    const QByteArray longText = '"' + QByteArray("a ").repeated(500000) + '"';
    for (const auto &[call, paths, scene] : shownTexts) {
        for (const QByteArray &path : words(paths))
            cells.emplace_back(cellOf("a million characters", call, path, longText, {}, usual))
                .scene = scene;
    }
    return cells;
}
