#include "Parloquin/Platform/Linux/LinkPortal.h"
#include "support/ByName.h"
#include "support/ModemBus.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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
    EXPECT_FALSE(parloquin::LinkPortal::handles(u"parlo"_s)) << "without a bus";
    bus.play("start bus; start portal");
    bus.tell({ u"answers"_s, QString::fromLatin1(row.code) });
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(parloquin::LinkPortal::handles(u"parlo"_s), row.handles);
    constexpr int patience = 1500; // ms
    EXPECT_EQ(time.elapsed() >= patience, row.isSilent) << time.elapsed() << " ms";
    time.start();
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(parloquin::LinkPortal::handles(u"kite"_s));
    EXPECT_LT(time.elapsed(), patience);
    if (row.isSilent) {
        EXPECT_TRUE(QTest::qWaitFor(
            [] { return parloquin::LinkPortal::handles(u"parlo"_s); }, startPatience))
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

} // namespace
