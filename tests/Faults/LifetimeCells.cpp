// Containers, delegates and applications that go while an answer is still to come.
#include "Faults/Calls.h"
#include "Faults/FaultTest.h"

#include <QtWidgets/QApplication>

using namespace std::chrono_literals;
using nlohmann::json;

namespace {

/// What the host does while the call is out, and what it then hears and shows of it.
struct Leaving {
    const char *name;
    void (*leave)(FaultTest &test);
    bool hearsUsual, hearsFailure;
    const char *scene; // null: as the answer has it
};

const Leaving leavings[] = {
    { "container deleted", [](FaultTest &test) { test.container.reset(); }, false, true, "closed" },
    { "container closed", [](FaultTest &test) { test.container->close(); }, true, true, "closed" },
    { "delegate taken away", [](FaultTest &test) { test.container->setKitDelegate(nullptr); },
        false, false, nullptr },
    { "delegate replaced",
        [](FaultTest &test) {
            test.delegate = std::make_shared<RecordingDelegate>(); // the first may go
            test.container->setKitDelegate(test.delegate);
        },
        true, true, nullptr },
    { "delegate deletes the container",
        [](FaultTest &test) {
            test.delegate->whenTold = [&test] {
                QMetaObject::invokeMethod(qApp, [&test] { test.container.reset(); });
            };
        },
        true, true, "closed" },
    { "second container",
        [](FaultTest &test) {
            test.other = std::move(test.container);
            test.make("init");
        },
        true, true, "apps 2 icon" },
};

struct Answer {
    const char *name;
    json outcome;
    Kind kind;
};

const Answer answers[] = {
    { "answered", { { "delayMs", 250 } }, usual },
    { "reset", { { "delayMs", 250 }, { "fault", "reset@before" } }, failed },
    { "unanswered", { { "fault", "stall@before" } }, failed },
};

/// Outlives the application object, as the peer does; the system ends it with the process.
class Quitting : public FaultTest {
public:
    void begin() { SetUp(); }
    void TestBody() override { }
};

// Runs within a process of its own, started by the cells below.
TEST(QuitCell, DISABLED_Child)
{
    const auto words = qgetenv("PARLOQUIN_QUIT").split(' ');
    static auto *const quitting = new Quitting;
    quitting->begin();
    ASSERT_NO_FATAL_FAILURE(quitting->goTo(words.first()));
    quitting->setFault(words.first(), words.last());
    quitting->make(words.first());
    quitting->waitForRequest();
    quitting->container.reset();
    quitting->say("quits");
}

void quitAt(FaultTest &test, const QByteArray &call, const QByteArray &fault)
{
    qputenv("PARLOQUIN_QUIT", call + ' ' + fault);
    const auto pause = test.pause();
    Process child({ "/proc/self/exe", "--gtest_filter=QuitCell.DISABLED_Child",
        "--gtest_also_run_disabled_tests" });
    child.waitForOutput("quits");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(child.waitForEnd(), 0) << child.output();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s + Yardstick::slack(1s));
    EXPECT_EQ(child.output().find("Sanitizer"), std::string::npos) << child.output();
}

} // namespace

std::vector<Cell> lifetimeCells()
{
    std::vector<Cell> cells;
    size_t turn = 0;
    for (const Call &call : calls()) {
        if (call.name == "icon")
            continue;
        for (const Leaving &leaving : leavings) {
            for (const Answer &answer : answers) {
                const auto act = [&](FaultTest &test) {
                    ASSERT_NO_FATAL_FAILURE(test.goTo(call.name));
                    test.setOutcome(call.name, { answer.outcome, "success" });
                    if (answer.name == QByteArray("unanswered"))
                        test.setDeadline(FaultTest::shortDeadline);
                    test.make(call.name);
                    test.waitForRequest();
                    test.setDeadline(10s); // of what comes later
                    leaving.leave(test);
                    test.waitForAnswers();
                    test.other.reset();
                    test.setOutcome(call.name, "success");
                };
                const Effect &effect = call.effects[answer.kind];
                const bool hears = answer.kind == usual ? leaving.hearsUsual : leaving.hearsFailure;
                QByteArray scene = leaving.scene ? QByteArray(leaving.scene) : effect.scene;
                if (leaving.name == QByteArray("second container") && effect.scene.contains("link"))
                    scene += " link";
                if (leaving.name == QByteArray("delegate deletes the container")
                    && effect.outcomes.isEmpty())
                    scene = effect.scene;
                cells.push_back({ leaving.name, call.name + ' ' + answer.name, {}, act,
                    hears ? effect.outcomes : QStringList(), scene, turn++ % 7 == 0 });
            }
        }
        for (const char *fault : { "stall@before", "drip@body", "endless@body", "close@before" }) {
            cells.push_back({ "application quits", call.name + ' ' + fault, {},
                [&call, fault](FaultTest &test) { quitAt(test, call.name, fault); }, {}, "closed",
                turn++ % 7 == 0 });
        }
    }
    return cells;
}
