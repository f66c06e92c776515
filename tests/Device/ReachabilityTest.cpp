#include "Parloquin/Networking/Helper/Reachability.h"
#include "Parloquin/Platform/NotificationCenter.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <future>
#include <thread>

using namespace parloquin;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What the test does to a target and sees of it; outlives it.
struct Script {
    std::optional<ReachabilityFlags> flags = reachable;
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
        m_script.context = std::move(context);
        return true;
    }

    bool setDispatchQueue(SerialQueue *queue) override
    {
        m_script.queue = queue;
        m_script.attached += queue ? 1 : 0;
        return true;
    }

    std::optional<ReachabilityFlags> flags() override { return m_script.flags; }

private:
    Script &m_script;
};

std::shared_ptr<Reachability> watch(Script &script)
{
    return Reachability::create(std::make_unique<ScriptedTarget>(script), QualityOfService::utility,
        nullptr, DispatchQueue::main());
}

TEST(Reachability, TellsEachChangeOnce)
{
    Script script;
    const auto reachability = watch(script);
    QStringList told;
    const QString up = QStringLiteral("up"), down = QStringLiteral("down");
    reachability->whenReachable = [&](Reachability &) { told << up; };
    reachability->whenUnreachable = [&](Reachability &) { told << down; };
    std::thread([&] { // whose centre is everybody's
        QObject::connect(NotificationCenter::defaultCenter(), &NotificationCenter::posted, qApp,
            [&](const QString &name, const void *sender) {
                told << (sender == reachability.get() ? name : QString());
            });
    })
        .join();

    ASSERT_FALSE(reachability->startNotifier());
    ASSERT_FALSE(reachability->startNotifier());
    EXPECT_EQ(script.attached, 1);
    for (const ReachabilityFlags flags : { reachable + 0U, 0U, 0U, 0U, reachable + 0U, 0U })
        script.change(flags);
    // Delivery looks at the flags of its own moment: queued changes may have run ahead of it.
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.size() == 8; }));
    EXPECT_EQ(told.last(2), QStringList({ down, reachabilityChanged }));
    EXPECT_EQ(told.count(reachabilityChanged), 4);

    reachability->stopNotifier();
    EXPECT_EQ(script.context, nullptr);
    EXPECT_EQ(script.queue, nullptr);
    ASSERT_FALSE(reachability->startNotifier()); // can be started again
    EXPECT_EQ(script.attached, 2);
}

TEST(Reachability, SaysWhatTheFlagsMean)
{
    const std::pair<ReachabilityFlags, std::string> rows[] = {
        { 0, "No Connection -- -------" },
        { reachable, "WiFi -R -------" },
        { isWWAN, "No Connection W- -------" },
        { reachable | isWWAN | isDirect, "Cellular WR ------d" },
        { reachable | connectionRequired, "No Connection -R c------" },
        { reachable | connectionRequired | connectionOnTraffic, "WiFi -R c--C---" },
        { reachable | connectionRequired | connectionOnDemand | interventionRequired,
            "No Connection -R c-i-D--" },
        { reachable | transientConnection | isLocalAddress, "WiFi -R -t---l-" },
    };
    for (const auto &[flags, words] : rows) {
        Script script;
        script.flags = flags;
        const auto watched = watch(script);
        EXPECT_EQ(watched->description(), QStringLiteral("unavailable flags"));
        const std::string connection = watched->currentReachabilityString().toStdString();
        EXPECT_EQ(connection + ' ' + watched->description().toStdString(), words);
        EXPECT_EQ(watched->isReachableViaWiFi(), words.front() == 'W');
        EXPECT_EQ(watched->isReachableViaWWAN(), words.front() == 'C');
        watched->allowsCellularConnection = false;
        EXPECT_EQ(watched->isReachable(), words.front() == 'W');
    }
}

TEST(Reachability, WatchesAHostByItsNameAlone)
{
    const QString longest(253, u'a');
    for (const QString &host :
        { longest, QString(), u"a b"_s, u"a/b"_s, QString(1, QChar::Null), longest + u'a' }) {
        const auto made = Reachability::create(host, QualityOfService::utility, nullptr, nullptr);
        EXPECT_EQ(made.index(), host == longest ? 0U : 1U) << host.toStdString();
    }
    for (const auto &[address, error] : { std::pair(ReachabilityAddress { .address = 1 }, EINVAL),
             std::pair(ReachabilityAddress { .family = 10 }, EAFNOSUPPORT) }) {
        EXPECT_EQ(ReachabilityTarget::createWithAddress(address), nullptr);
        EXPECT_EQ(ReachabilityTarget::lastError(), error);
    }
}

TEST(SerialQueue, RunsInOrderOnItsOwnThread)
{
    std::vector<int> order;
    const auto target = // whose thread outlives the queue
        std::make_shared<SerialQueue>(u"the queue of this test"_s, QualityOfService::background);
    {
        SerialQueue queue({}, QualityOfService::background, target);
        EXPECT_FALSE(queue.isCurrent());
        queue.asyncAfter(std::chrono::hours(1), [&] { order.push_back(1000); });
        const auto begun = std::chrono::steady_clock::now();
        const auto passed = [&] { return (std::chrono::steady_clock::now() - begun) / 1ms; };
        const std::clock_t worked = std::clock();
        std::promise<std::int64_t> ran;
        queue.asyncAfter(10ms, [] {});
        queue.asyncAfter(210ms, [&] { ran.set_value(passed()); });
        auto waited = ran.get_future();
        ASSERT_EQ(waited.wait_for(20s), std::future_status::ready);
        EXPECT_GE(waited.get(), 210);
        EXPECT_LT(std::clock() - worked, CLOCKS_PER_SEC / 50) << "it rests until something is due";
        char name[16] = {};
        for (int i = 0; i < 5; ++i)
            queue.sync([&] {
                pthread_getname_np(pthread_self(), name, sizeof name);
                EXPECT_GE(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())), 10);
            });
        EXPECT_STREQ(name, "ue of this test");
        EXPECT_LT(passed(), 3000) << "each is due at once";
        for (int i = 0; i < 100; ++i)
            queue.async([&order, i] { order.push_back(i); });
        queue.sync([&] { queue.sync([&] { order.push_back(100); }); });
        ASSERT_EQ(order.size(), 101U);
        // What has not begun when the queue ends is dropped, what has is waited for.
        std::promise<void> works;
        queue.async([&] {
            works.set_value();
            std::this_thread::sleep_for(50ms); // as work takes
            order.push_back(101);
        });
        queue.async([&] { order.push_back(102); });
        works.get_future().wait();
    }
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    target->sync([&] { EXPECT_EQ(order.size(), 102U); }); // behind what was not dropped
}

} // namespace
