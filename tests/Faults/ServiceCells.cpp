// What the service may do to each call, and what must come of it.
#include "Faults/FaultTest.h"

namespace {

struct Call {
    QByteArray name;
    QStringList success; ///< what the delegate hears of a usual answer
    QByteArray after; ///< what then shows
};

const Call calls[] = {
    { "init", {}, "apps 2" },
    { "icon", {}, "apps 2" },
    { "start", {}, "apps 2 link" },
    { "check", { QStringLiteral("succeeded") }, "apps 2 link" },
    { "country", {}, "countries 16" },
    { "send-otp", {}, "code" },
    { "check-otp", { QStringLiteral("succeeded") }, "code" },
};

} // namespace

std::vector<Cell> serviceCells()
{
    std::vector<Cell> cells;
    for (const Call &call : calls) {
        const auto act = [name = call.name](FaultTest &test) {
            test.goTo(name);
            test.make(name);
            test.waitForAnswers();
        };
        cells.push_back({ "none", call.name, {}, act, call.success, call.after, true });
    }
    return cells;
}
