#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Helper/Reachability.h"
#include "Parloquin/Platform/NotificationCenter.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>

using namespace parloquin;

namespace {

/// What the test does to a target and sees of it; outlives it.
struct Script {
    std::optional<ReachabilityFlags> flags = reachable;
    bool setsCallback = true;
    bool setsQueue = true;
    std::shared_ptr<ReachabilityContext> context;
    SerialQueue *queue = nullptr;
    int attached = 0;

    void change(ReachabilityFlags now) const
    {
        queue->async([now, told = context] { told->changed(now); });
    }
};

class ScriptedTarget final : public ReachabilityTarget {
public:
    explicit ScriptedTarget(Script &script)
        : m_script(script)
    {
    }

    bool setCallback(std::shared_ptr<ReachabilityContext> context) override
    {
        setLastError(context ? 71 : 1); // clearing leaves another code behind
        m_script.context = std::move(context);
        return !m_script.context || m_script.setsCallback;
    }

    bool setDispatchQueue(SerialQueue *queue) override
    {
        setLastError(queue ? 72 : 2);
        m_script.queue = queue;
        m_script.attached += queue ? 1 : 0;
        return !queue || m_script.setsQueue;
    }

    std::optional<ReachabilityFlags> flags() override
    {
        setLastError(73);
        return m_script.flags;
    }

private:
    Script &m_script;
};

std::shared_ptr<Reachability> watch(
    Script &script, std::shared_ptr<DispatchQueue> notificationQueue = DispatchQueue::main())
{
    return Reachability::create(std::make_unique<ScriptedTarget>(script), QualityOfService::utility,
        nullptr, std::move(notificationQueue));
}

TEST(Reachability, MakesTheConnectionOfItsFlags)
{
    constexpr ReachabilityFlags everyFlag = transientConnection | reachable | connectionRequired
        | connectionOnTraffic | interventionRequired | connectionOnDemand | isLocalAddress
        | isDirect | isWWAN;
    const struct {
        std::optional<ReachabilityFlags> flags;
        std::string connection;
        const char *description;
        bool allowsCellular = true;
    } rows[] = {
        { {}, "No Connection", "unavailable flags" },
        { 0, "No Connection", "-- -------" },
        { reachable, "WiFi", "-R -------" },
        { reachable | isWWAN, "Cellular", "WR -------" },
        { reachable | isWWAN, "No Connection", "WR -------", false },
        { isWWAN, "No Connection", "W- -------" },
        { reachable | isWWAN | connectionRequired, "Cellular", "WR c------" },
        { reachable | connectionRequired, "No Connection", "-R c------" },
        { reachable | connectionRequired | connectionOnTraffic, "WiFi", "-R c--C---" },
        { reachable | connectionRequired | connectionOnDemand, "WiFi", "-R c---D--" },
        { reachable | connectionRequired | connectionOnTraffic | interventionRequired,
            "No Connection", "-R c-iC---" },
        { reachable | interventionRequired | transientConnection, "WiFi", "-R -ti----" },
        { reachable | isLocalAddress | isDirect, "WiFi", "-R -----ld" },
        { everyFlag, "Cellular", "WR ctiCDld" },
    };
    for (const auto &[flags, connection, description, allowsCellular] : rows) {
        SCOPED_TRACE(description);
        Script script;
        script.flags = flags;
        const auto reachability = watch(script);
        reachability->allowsCellularConnection = allowsCellular;
        QString told;
        reachability->whenReachable = [&](Reachability &) { told = QStringLiteral("reachable"); };
        reachability->whenUnreachable = [&](Reachability &) { told = QStringLiteral("none"); };

        EXPECT_EQ(reachability->currentReachabilityString().toStdString(), connection);
        EXPECT_EQ(reachability->isReachable(), connection != "No Connection");
        EXPECT_EQ(reachability->isReachableViaWWAN(), connection == "Cellular");
        EXPECT_EQ(reachability->isReachableViaWiFi(), connection == "WiFi");
        EXPECT_EQ(reachability->description().toStdString(), description);
        if (!flags)
            continue;
        // The read is the first the object knows, so it is a change, told later on the main queue.
        EXPECT_EQ(told, QString());
        EXPECT_TRUE(QTest::qWaitFor([&] { return !told.isEmpty(); }));
        EXPECT_EQ(told == QStringLiteral("reachable"), connection != "No Connection");
    }
}

TEST(Reachability, TellsEachChangeOnce)
{
    Script script;
    const auto reachability = watch(script);
    QStringList told;
    NotificationCenter center;
    reachability->notificationCenter = &center;
    QObject::connect(&center, &NotificationCenter::posted, &center,
        [told = &told, expected = reachability.get()](const QString &name, const void *sender) {
            EXPECT_EQ(sender, expected);
            *told << name;
        });
    const QString up = QStringLiteral("up"), down = QStringLiteral("down");
    reachability->whenReachable = [&](Reachability &) { told << up; };
    reachability->whenUnreachable = [&](Reachability &) { told << down; };

    ASSERT_FALSE(reachability->startNotifier());
    ASSERT_FALSE(reachability->startNotifier());
    EXPECT_EQ(script.attached, 1);
    for (const ReachabilityFlags flags : { reachable + 0U, 0U, 0U, 0U, reachable + 0U, 0U })
        script.change(flags);
    const QString posted = QStringLiteral("reachabilityChanged");
    // Delivery looks at the flags of its own moment: queued changes may have run ahead of it.
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.size() == 8; }));
    EXPECT_EQ(told.filter(posted).size(), 4);
    EXPECT_EQ(told.at(6), down);

    reachability->stopNotifier();
    EXPECT_EQ(script.context, nullptr);
    EXPECT_EQ(script.queue, nullptr);
    ASSERT_FALSE(reachability->startNotifier()); // can be started again
    EXPECT_EQ(script.attached, 2);
}

TEST(Reachability, IsStoppedByAFaultAndLeavesTheGateOpen)
{
    const struct {
        void (*breakIt)(Script &);
        size_t error; // index of the error's case
        qint32 code;
    } rows[] = {
        { [](Script &script) { script.setsCallback = false; }, 2, 71 },
        { [](Script &script) { script.setsQueue = false; }, 3, 72 },
        { [](Script &script) { script.flags.reset(); }, 4, 73 },
    };
    for (const auto &row : rows) {
        Script script;
        row.breakIt(script);
        const auto reachability = watch(script);
        const auto error = reachability->startNotifier();
        ASSERT_TRUE(error);
        EXPECT_EQ(error->index(), row.error);
        EXPECT_EQ(std::visit([](const auto &fault) { return fault.code; }, *error), row.code);
        EXPECT_EQ(script.context, nullptr);
        EXPECT_EQ(script.queue, nullptr);

        testing::internal::CaptureStdout();
        const ApiSessionHelper helper(reachability);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\n\n[Parloquin]\nUnable to start network reachability notifier.\n[Parloquin]\n\n\n");
        QCoreApplication::processEvents();
        EXPECT_TRUE(helper.isNetworkReachable);
    }
}

TEST(Reachability, RefusesAHostNameThatIsNone)
{
    for (const QString &host : { QString(), QStringLiteral("two words") }) {
        const auto created =
            Reachability::create(host, QualityOfService::standard, nullptr, nullptr);
        ASSERT_TRUE(std::holds_alternative<ReachabilityError>(created));
        const auto &error = std::get<ReachabilityErrorCase::failedToCreateWithHostname>(
            std::get<ReachabilityError>(created));
        EXPECT_EQ(error.hostname, host);
        EXPECT_EQ(error.code, EINVAL);
    }
}

TEST(Reachability, TheTargetDoesNotKeepItAlive)
{
    Script script;
    auto reachability = watch(script);
    ASSERT_FALSE(reachability->startNotifier());
    const auto context = script.context;
    EXPECT_EQ(context->description(), QStringLiteral("-R -------"));
    reachability.reset(); // with its first notice still on the main queue
    EXPECT_EQ(script.queue, nullptr);
    EXPECT_EQ(context->description(), QStringLiteral("nil"));
    context->changed(0);
    QCoreApplication::processEvents();
}

// Without a notification queue callbacks run on the serial queue; the last owner may let go there.
TEST(Reachability, MayEndInItsOwnCallback)
{
    Script script;
    std::atomic<bool> isGone = false;
    auto reachability = watch(script, nullptr);
    std::weak_ptr<Reachability> weak = reachability;
    ASSERT_FALSE(reachability->startNotifier());
    QThread *const caller = QThread::currentThread();
    reachability->whenUnreachable = [&, last = std::shared_ptr<Reachability>()](
                                        Reachability &) mutable {
        EXPECT_NE(QThread::currentThread(), caller);
        last.swap(reachability);
        last.reset();
        isGone = true;
    };
    script.change(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isGone && weak.expired(); }));
    // Its thread is waited for by the main queue.
    QCoreApplication::processEvents();
}

TEST(SerialQueue, RunsInOrderOnItsOwnOrItsTargetsThread)
{
    const auto target = std::make_shared<SerialQueue>(QStringLiteral("target"));
    target->asyncAfter(std::chrono::hours(1), [] {}); // goes with it alone
    for (const auto &given : { std::shared_ptr<SerialQueue>(), target }) {
        std::vector<int> order;
        {
            SerialQueue queue(QStringLiteral("queue"), QualityOfService::background, given);
            target->sync([&] { EXPECT_EQ(queue.isCurrent(), given != nullptr); });
            queue.asyncAfter(std::chrono::hours(1), [&] { order.push_back(1000); });
            const auto begun = std::chrono::steady_clock::now();
            std::promise<std::chrono::steady_clock::duration> ran;
            queue.asyncAfter(std::chrono::milliseconds(50),
                [&] { ran.set_value(std::chrono::steady_clock::now() - begun); });
            EXPECT_GE(ran.get_future().get() / std::chrono::milliseconds(1), 50);
            for (int i = 0; i < 100; ++i)
                queue.async([&order, i] { order.push_back(i); });
            queue.sync([&] { queue.sync([&] { order.push_back(100); }); });
            ASSERT_EQ(order.size(), 101U);
            // What has not begun when the queue ends is dropped, what has is waited for.
            queue.async([&] {
                std::this_thread::yield();
                order.push_back(101);
            });
        }
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
        EXPECT_LE(order.size(), 102U);
    }
}

} // namespace
