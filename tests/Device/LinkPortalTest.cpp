#include "Parloquin/Platform/LinkHandlers.h"
#include "support/ByName.h"
#include "support/ModemBus.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QUrl>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <atomic>

using namespace Qt::StringLiterals;
namespace LinkHandlers = parloquin::LinkHandlers;

extern "C" bool __real__ZN5QFile6existsERK7QString(const QString &name); // NOLINT
extern "C" bool __wrap__ZN5QFile6existsERK7QString(const QString &name) // NOLINT
{
    return name == u"/.flatpak-info" || __real__ZN5QFile6existsERK7QString(name);
}

namespace {

constexpr int startPatience = 20000; // ms

struct PortalRow {
    const char *name;
    const char *code; // of its answer, in Python; null: too old to be asked
    bool handles; // a scheme that it knows
    bool isSilent = false;
};

class LinkPortalAnswer : public testing::TestWithParam<PortalRow> { };

TEST_P(LinkPortalAnswer, IsHeardOrNotWaitedForTwice)
{
    const PortalRow &row = GetParam();
    ModemBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", qgetenv("DBUS_SYSTEM_BUS_ADDRESS"));
    EXPECT_FALSE(LinkHandlers::handles(u"parlo"_s)) << "without a bus";
    bus.play("start bus; start portal");
    bus.tell({ u"answers"_s, QString::fromLatin1(row.code) });
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(LinkHandlers::handles(u"parlo"_s), row.handles);
    constexpr int patience = 1500; // ms
    EXPECT_EQ(time.elapsed() >= patience, row.isSilent) << time.elapsed() << " ms";
    time.start();
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(LinkHandlers::handles(u"kite"_s));
    EXPECT_LT(time.elapsed(), patience);
    if (row.isSilent) {
        EXPECT_TRUE(
            QTest::qWaitFor([] { return LinkHandlers::handles(u"parlo"_s); }, startPatience))
            << "a portal that was slow once is never asked again";
    }
}

const PortalRow portalRows[] = {
    { "Knows", "ret = args[0] == 'parlo'", true },
    { "KnowsNone", "ret = False", false },
    { "IsOld", nullptr, false },
    { "IsSilentAtFirst",
        "import time; time.sleep(0 if hasattr(self, 'woke') else 3); self.woke = ret = True", false,
        true },
};
INSTANTIATE_TEST_SUITE_P(Device, LinkPortalAnswer, testing::ValuesIn(portalRows), byName);

TEST(LinkHandlers, LeaveALinkToTheDesktopOfAConfinedAppAndTellItsRefusal)
{
    std::atomic told = false;
    ASSERT_TRUE(LinkHandlers::launch(QUrl(u"none-has-this:x"_s), [&](auto &) { told = true; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.load(); }));
}

} // namespace
