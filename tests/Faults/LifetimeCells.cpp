// Containers and delegates that go while an answer is still to come.
#include "Faults/FaultTest.h"

namespace {

/// What the host does while the call is out, and what it then hears and shows of it.
struct Leaving {
    QByteArray name;
    Step leave;
    bool hearsUsual, hearsFailure;
    QByteArray scene; ///< empty: as the answer has it
};
const Leaving leavings[] = {
    { "container deleted", [](auto &test) { test.container.reset(); }, false, true, "closed" },
    { "container closed", [](auto &test) { test.container->close(); }, true, true, "closed" },
    { "delegate taken away", [](auto &test) { test.container->setKitDelegate(nullptr); }, false,
        false, {} },
    { "delegate replaced",
        [](auto &test) {
            test.delegate = std::make_shared<RecordingDelegate>(); // the first may go
            test.container->setKitDelegate(test.delegate);
        },
        true, true, {} },
    { "delegate deletes the container",
        [](auto &test) {
            test.delegate->whenTold = [&test] {
                QMetaObject::invokeMethod(qApp, [&test] { test.container.reset(); });
            };
        },
        true, true, "closed" },
    { "second container",
        [](auto &test) {
            test.other = std::move(test.container);
            test.make("init");
        },
        true, true, "apps 2 icon" },
};

struct Answer {
    QByteArray name;
    json outcome;
    Kind kind;
    std::chrono::milliseconds deadline = 10s;
};
const Answer answers[] = {
    { "answered", { { "delayMs", 250 } }, usual },
    { "reset", { { "delayMs", 250 }, { "fault", "reset@before" } }, failed },
    { "unanswered", { { "fault", "stall@before" } }, failed, FaultTest::shortDeadline },
};

Cell left(const Call &call, const Leaving &leaving, const Answer &answer, bool inSample)
{
    const auto act = [&](FaultTest &test) {
        ASSERT_NO_FATAL_FAILURE(test.goTo(call.name));
        test.setOutcome(call.name, { answer.outcome, "success" });
        test.setDeadline(answer.deadline);
        test.make(call.name);
        test.waitForRequest();
        if (leaving.name == "second container") { // whose request must not overtake this one
            EXPECT_TRUE(QTest::qWaitFor([&] { return test.posts(call.name) == 1; }));
        }
        test.setDeadline(10s); // of what comes later
        leaving.leave(test);
        test.waitForAnswers();
        const bool opens = call.effects[answer.kind].scene.contains("link") && call.name == "start";
        if (leaving.name == "container closed" && opens) { // late, it would be the next round's
            EXPECT_TRUE(test.waitForLink());
        }
        test.other.reset();
        test.setOutcome(call.name, "success");
    };
    const auto &[outcomes, sceneOfAnswer] = call.effects[answer.kind];
    QByteArray scene = leaving.scene;
    if (scene.isEmpty() || (leaving.name.startsWith("delegate deletes") && outcomes.isEmpty()))
        scene = sceneOfAnswer;
    else if (leaving.name == "second container" && sceneOfAnswer.contains("link"))
        scene += " link";
    const bool hears = answer.kind == usual ? leaving.hearsUsual : leaving.hearsFailure;
    return { leaving.name, call.name + ' ' + answer.name, act, hears ? outcomes : QStringList(),
        scene, inSample };
}

} // namespace

std::vector<Cell> lifetimeCells()
{
    std::vector<Cell> cells;
    for (const Call &call : calls) {
        for (const Leaving &leaving : leavings) {
            for (const Answer &answer : answers) {
                const bool inSample = cells.size() % 7 == 0
                    || (leaving.name == "container deleted" && answer.name == "reset")
                    || (leaving.name.contains("delete") && answer.kind == usual);
                if (call.name != "icon")
                    cells.push_back(left(call, leaving, answer, inSample));
            }
        }
    }
    return cells;
}
