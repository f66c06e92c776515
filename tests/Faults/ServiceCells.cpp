// What the service may do to each call, and what must come of it.
//
// Worth a cell: each fault of the wire and of HTTP with each call, since each call has its own way
// from the answer to the screen and the host; each fault of the cipher and of JSON with each call
// but the picture, which has neither; a wrong type at each field of each answer, by one value of
// each other type. Not worth one: statuses beyond a few, the odd lengths and NUL in texts with
// every call (one piece of code, which knows no calls, treats them: they meet one call); each byte
// of a moment (the beginning and the middle differ, what lies between does not); two faults at once
// (the soak draws those); the fields of `meta` with every call (one model); the result call (no
// screen makes it); real 60 seconds but for three ways to never answer, as the deadline is one
// timer.
#include "Faults/Calls.h"
#include "Faults/FaultTest.h"

using namespace std::chrono_literals;

namespace {

const QStringList succeeded { QStringLiteral("succeeded") };
const QStringList unauthorised { QStringLiteral("failed 0") };
const QStringList serverError { QStringLiteral("failed 1") };

const std::vector<Call> allCalls {
    { "init", { { {}, "apps 2 icon" }, { {}, "apps 0" }, { serverError, "apps 0" } } },
    { "start",
        { { {}, "apps 2 icon link" }, { {}, "apps 2 icon" }, { serverError, "apps 2 icon" } } },
    { "check",
        { { succeeded, "apps 2 icon link" }, { unauthorised, "apps 2 icon link" },
            { serverError, "apps 2 icon link" } } },
    { "country", { { {}, "countries 16" }, { {}, "countries 0" }, { {}, "countries 0" } } },
    { "send-otp", { { {}, "code" }, { {}, "phone" }, { {}, "phone" } } },
    { "check-otp", { { succeeded, "code" }, { unauthorised, "code" }, { serverError, "code" } } },
    { "icon", { { {}, "apps 2 icon" }, { {}, "apps 2" }, { {}, "apps 2" } } },
};

struct Fault {
    const char *text; // of the sandbox's language; OTHER stands for another host
    Kind kind;
};

// clang-format off
/// Of the wire and of HTTP: every call meets them.
const Fault wireFaults[] = {
    { "none", usual },
    { "close@accept", failed }, { "reset@accept", failed }, { "half-close@accept", failed },
    { "stall@accept", failed }, { "garbage@accept", failed }, { "endless@accept", failed },
    { "close@request", failed }, { "reset@request", failed }, { "half-close@request", failed },
    { "stall@request", failed }, { "garbage@request", failed }, { "endless@request", failed },
    { "close@before", failed }, { "reset@before", failed }, { "half-close@before", failed },
    { "stall@before", failed }, { "drip@before", failed }, { "garbage@before", failed },
    { "endless@before", failed },
    { "close@head", failed }, { "reset@head", failed }, { "half-close@head", failed },
    { "stall@head", failed }, { "drip@head", failed }, { "garbage@head", failed },
    { "endless@head", failed },
    { "close@body", failed }, { "close@body+0", failed }, { "reset@body", failed },
    { "half-close@body", failed }, { "stall@body", failed }, { "stall@body+0", failed },
    { "drip@body", failed }, { "cut@body", failed }, { "cut@body+16", failed },
    { "garbage@body", failed }, { "endless@body", failed },
    { "close@after", usual }, { "reset@after", usual }, { "half-close@after", usual },
    { "stall@after", usual }, { "garbage@after", usual }, { "endless@after", usual },
    { "redirect:301:http://OTHER/", usual }, { "redirect:307:http://OTHER/", usual },
    { "length:+7", failed }, { "length:-7", failed }, { "length:none", usual },
    { "length:twice", failed }, { "chunks:broken", failed }, { "chunks:endless", failed },
    { "gzip:67108864", failed }, { "cookie", usual },
    { "body:0", failed }, { "body:1", failed }, { "body:17", failed }, { "body:67108864", failed },
    { "status:204", failed }, { "status:404", usual }, { "status:500", usual },
};
/// Of the cipher and of JSON: every call but the icon has these. What cannot be decrypted is read as it came: an envelope that holds nothing known.
const Fault answerFaults[] = {
    { "key:wrong", empty }, { "blocks:cut", empty }, { "blocks:swapped", failed },
    { "padding:bad", empty }, { "flag:off", empty }, { "flag:on", usual },
    { "json:depth:100", usual }, { "json:depth:1100", failed }, { "json:depth:1000000", failed },
    { "json:duplicate", usual }, { "json:surrogate", failed },
    { "json:2^53+1", failed }, { "json:1e400", failed }, { "json:bom", failed },
    { "json:result=null", empty }, { "clock:7200", empty },
};
/// Told apart by code that knows no calls: one call meets them.
const Fault otherFaults[] = {
    { "redirect:302:http://OTHER/", usual }, { "redirect:303:http://OTHER/", usual },
    { "redirect:308:http://OTHER/", usual }, { "redirect:302:/v1.0/check", usual },
    { "body:15", failed }, { "body:16", failed }, { "json:nul", usual },
    { "status:100", failed }, { "status:101", failed }, { "status:199", failed },
    { "status:201", usual }, { "status:202", usual }, { "status:206", usual },
    { "status:300", usual }, { "status:304", failed }, { "status:305", usual },
    { "status:399", usual }, { "status:400", usual }, { "status:401", usual },
    { "status:403", usual }, { "status:407", usual }, { "status:408", usual },
    { "status:410", usual }, { "status:418", usual }, { "status:429", usual },
    { "status:501", usual }, { "status:502", usual }, { "status:503", usual },
    { "status:504", usual }, { "status:599", usual },
};
/// Every field of every answer, by the type it has: text, list, object, boolean, one of some words.
struct Field { const char *call; const char *path; char type; };
const Field fields[] = {
    { "init", "result", 'o' }, { "init", "result.validation", 'w' },
    { "init", "result.countryCode", 't' }, { "init", "result.description", 't' },
    { "init", "result.alternativeValidation", 'w' },
    { "init", "result.alternativeValidationDescription", 't' },
    { "init", "result.list", 'l' }, { "init", "result.list[0]", 'o' },
    { "init", "result.list[0].app", 't' }, { "init", "result.list[0].appPackage", 't' },
    { "init", "result.list[0].name", 't' }, { "init", "result.list[1].text", 't' },
    { "init", "result.list[1].icon", 't' }, { "init", "result.list[1].bgColour", 't' },
    { "init", "result.list[1].textColour", 't' }, { "init", "result.appPackageList", 'l' },
    { "init", "result.appPackageList[0].package", 't' },
    { "init", "result.localizationList", 'l' }, { "init", "result.localizationList[0].key", 't' },
    { "init", "result.localizationList[0].value", 't' },
    { "start", "result", 'o' }, { "start", "result.deeplink", 't' },
    { "start", "result.reference", 't' }, { "start", "result.type", 't' },
    { "start", "result.countryList", 'l' }, { "start", "result.countryList[0].title", 't' },
    { "start", "result.countryList[0].countryCode", 't' },
    { "start", "result.countryList[0].phoneCode", 't' },
    { "check", "result", 'o' }, { "check", "result.sessionId", 't' },
    { "check", "result.validationStatus", 'b' },
    { "country", "result", 'o' }, { "country", "result.list", 'l' },
    { "country", "result.list[0].title", 't' }, { "country", "result.list[99].countryCode", 't' },
    { "country", "result.list[241].phoneCode", 't' },
    { "send-otp", "result", 'o' }, { "send-otp", "result.reference", 't' },
    { "check-otp", "result", 'o' }, { "check-otp", "result.sessionId", 't' },
    { "check-otp", "result.validationStatus", 'b' },
    { "check-otp", "meta", 'o' }, { "check-otp", "meta.requestId", 't' },
    { "check-otp", "meta.httpStatusCode", 'w' }, { "check-otp", "meta.errorCode", 'w' },
    { "check-otp", "meta.errorMessage", 't' },
};
// clang-format on

QList<QByteArray> wrongValuesFor(char type)
{
    switch (type) {
    case 't':
        return { "7", "true", "[]", "{}" };
    case 'l':
        return { "7", "\"x\"", "{}", "[7]" };
    case 'b':
        return { "1", "\"true\"", "{}" };
    case 'w':
        return { "7", "\"200\"", "200.5", "[]" };
    default:
        return { "7", "\"x\"", "[]" };
    }
}

bool takesTheDeadline(const QByteArray &fault)
{
    return fault.startsWith("stall") || fault.startsWith("drip") || fault.contains("endless")
        || fault.startsWith("half-close@re");
}

/// The stack reads a head byte by byte until it ends, and chunks as long as there are more, and
/// does nothing else meanwhile. Where they never end the call fails in time, but the stack's thread
/// and its socket are left behind until the peer stops. Such cells stand in the list as they are,
/// not in the sample.
bool isKnownToFail(const QByteArray &fault)
{
    return fault == "chunks:endless" || fault == "endless@head";
}

Cell cellOf(const Call &call, const QByteArray &text, Kind kind, bool inSample,
    std::chrono::milliseconds deadline = FaultTest::shortDeadline)
{
    const auto act = [=, name = call.name](FaultTest &test) {
        ASSERT_NO_FATAL_FAILURE(test.goTo(name));
        test.setFault(name, text);
        if (kind == failed && takesTheDeadline(text))
            test.setDeadline(deadline);
        test.make(name);
        test.waitForAnswers();
        if (name == "icon" && kind != usual) { // nothing tells when a picture does not come
            EXPECT_FALSE(test.waitForScene("apps 2 icon", FaultTest::shortDeadline * 2));
        }
        // One request, whatever becomes of it; a connection that breaks at once has none.
        EXPECT_LE(test.posts(name), 1) << "sent again";
        EXPECT_TRUE(test.posts(name) == 1 || text.contains("@accept") || name == "icon");
        test.setFault(name, {});
    };
    return { text, call.name, {}, act, call.effects[kind].outcomes, call.effects[kind].scene,
        inSample };
}

} // namespace

const std::vector<Call> &calls() { return allCalls; }

std::vector<Cell> serviceCells()
{
    std::vector<Cell> cells;
    size_t turn = 0; // each fault is in the sample once, with one call after another
    const auto addAll = [&](const auto &faults, size_t callCount) {
        for (const Fault &fault : faults) {
            const size_t sampled = turn++ % callCount;
            for (size_t i = 0; i < callCount; ++i) {
                const bool isIcon = calls()[i].name == "icon";
                // What comes before the request makes the stack connect again, and the picture
                // come.
                if (isIcon && QByteArray(fault.text) == "endless@accept")
                    continue;
                const bool isPicture = fault.kind == usual
                    && !QByteArray(fault.text).contains("status")
                    && !QByteArray(fault.text).contains("redirect");
                cells.push_back(
                    cellOf(calls()[i], fault.text, isIcon && !isPicture ? failed : fault.kind,
                        i == sampled && !isKnownToFail(fault.text)));
            }
        }
    };
    addAll(wireFaults, 7);
    addAll(answerFaults, 6);
    for (const Fault &fault : otherFaults)
        cells.push_back(cellOf(calls()[2], fault.text, fault.kind, false));
    for (const char *text : { "stall@before", "drip@body", "endless@body" }) {
        Cell cell = cellOf(calls()[2], text, failed, false, 60s);
        cell.fault += " for 60 s";
        cells.push_back(cell);
    }
    for (const Field &field : fields) {
        const auto call = std::find_if(calls().begin(), calls().end(),
            [&](const Call &one) { return one.name == field.call; });
        for (const QByteArray &value : wrongValuesFor(field.type)) {
            Cell cell = cellOf(*call, QByteArray("json:") + field.path + '=' + value, failed,
                value == "7" && field.type == 'o');
            cell.at += " " + cell.fault.mid(5);
            cell.fault = "json:FIELD=VALUE of a wrong type";
            cells.push_back(cell);
        }
    }
    return cells;
}
