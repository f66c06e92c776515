#include "Parloquin/Platform/Linux/LinkPortal.h"
#include "support/ByName.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString portalName = u"org.freedesktop.portal.Desktop"_s;
constexpr int startPatience = 20000; // ms

struct PortalRow {
    const char *name;
    const char *code; // of its answer, in Python; null: too old to be asked
    bool handles; // a scheme that it knows
    bool isSilent = false;
};

/// A session's bus with a portal on it.
class PortalBus {
public:
    explicit PortalBus(const PortalRow &row)
    {
        m_bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
        EXPECT_TRUE(m_bus.waitForReadyRead(startPatience));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
        const QString interface = u"org.freedesktop.portal.OpenURI"_s;
        const QString path = u"/org/freedesktop/portal/desktop"_s;
        m_portal.start(
            u"/usr/bin/python3"_s, { u"-m"_s, u"dbusmock"_s, portalName, path, interface });
        gdbus({ u"wait"_s, u"--session"_s, u"--timeout=20"_s, portalName });
        if (row.code)
            gdbus({ u"call"_s, u"--session"_s, u"--dest"_s, portalName, u"--object-path"_s, path,
                u"--method"_s, u"org.freedesktop.DBus.Mock.AddMethod"_s, interface,
                u"SchemeSupported"_s, u"sa{sv}"_s, u"b"_s, QString::fromLatin1(row.code) });
    }
    ~PortalBus()
    {
        for (QProcess *each : { &m_portal, &m_bus }) {
            each->kill();
            each->waitForFinished();
        }
    }
    Q_DISABLE_COPY_MOVE(PortalBus)

private:
    static void gdbus(const QStringList &words)
    {
        EXPECT_EQ(QProcess::execute(u"gdbus"_s, words), 0);
    }

    QProcess m_bus;
    QProcess m_portal;
};

class LinkPortalAnswer : public testing::TestWithParam<PortalRow> { };

TEST_P(LinkPortalAnswer, IsHeardOrNotWaitedForTwice)
{
    const PortalRow &row = GetParam();
    const PortalBus bus(row);
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
