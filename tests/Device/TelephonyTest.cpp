#include "Parloquin/Platform/Linux/MobileCountryCodes.h"
#include "Parloquin/Platform/Telephony.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QLocalServer>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

using namespace parloquin;

namespace {

constexpr int patience = 20000; // ms
const QString service = QStringLiteral("org.freedesktop.ModemManager1");
const QString root = QStringLiteral("/org/freedesktop/ModemManager1");
const QString silentMethod = QStringLiteral("import time; time.sleep(60)");

/// A system bus of the test's own, with a modem service made of mock objects.
class TelephonyBus : public testing::Test {
protected:
    void startBus()
    {
        m_bus.start(QStringLiteral("dbus-daemon"),
            { QStringLiteral("--session"), QStringLiteral("--nofork"),
                QStringLiteral("--print-address"),
                QStringLiteral("--address=unix:path=%1")
                    .arg(m_folder.filePath(QStringLiteral("bus"))) });
        ASSERT_TRUE(m_bus.waitForReadyRead(patience));
        useAddress(m_bus.readLine().trimmed());
    }

    static void useAddress(const QByteArray &address)
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
    }

    /// \param managed whether it knows its objects; else GetManagedObjects has still to be added
    void startService(bool managed = true)
    {
        QStringList command { QStringLiteral("-m"), QStringLiteral("dbusmock"),
            QStringLiteral("--system") };
        if (managed)
            command << QStringLiteral("--is-object-manager");
        m_service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_service.start(QStringLiteral("/usr/bin/python3"),
            command + QStringList { service, root, QStringLiteral("org.example.Root") });
        ASSERT_TRUE(m_service.waitForStarted(patience));
        ASSERT_TRUE(gdbus({ QStringLiteral("wait"), QStringLiteral("--system"),
            QStringLiteral("--timeout=20"), service }));
    }

    void stopService()
    {
        m_service.kill();
        ASSERT_TRUE(m_service.waitForFinished(patience));
    }

    void mock(const QString &path, const QString &method, const QStringList &arguments)
    {
        ASSERT_TRUE(gdbus(QStringList { QStringLiteral("call"), QStringLiteral("--system"),
                              QStringLiteral("--dest"), service, QStringLiteral("--object-path"),
                              path, QStringLiteral("--method"), method }
            + arguments));
    }

    void add(const QString &path, const QString &interface, const QString &properties)
    {
        mock(root, QStringLiteral("org.freedesktop.DBus.Mock.AddObject"),
            { path, service + interface, properties, QStringLiteral("@a(ssss) []") });
    }

    void addModem(int number, const QString &sim)
    {
        add(modem(number), QStringLiteral(".Modem"),
            QStringLiteral("{'Sim': <objectpath '%1'>}").arg(sim));
    }

    void addSim(int number, const QString &identifier)
    {
        add(sim(number), QStringLiteral(".Sim"),
            QStringLiteral("{'OperatorIdentifier': <'%1'>, 'Imsi': <'%1123456789'>}")
                .arg(identifier));
    }

    void tellOf(const QString &path)
    {
        mock(root, QStringLiteral("org.freedesktop.DBus.Mock.EmitSignal"),
            { QStringLiteral("org.freedesktop.DBus.ObjectManager"),
                QStringLiteral("InterfacesAdded"), QStringLiteral("oa{sa{sv}}"),
                QStringLiteral("[<objectpath '%1'>, <@a{sa{sv}} {}>]").arg(path) });
    }

    void change(
        const QString &path, const QString &interface, const QString &name, const QString &value)
    {
        mock(path, QStringLiteral("org.freedesktop.DBus.Properties.Set"),
            { service + interface, name, value });
    }

    void putIn(int modemNumber, const QString &simPath)
    {
        change(modem(modemNumber), QStringLiteral(".Modem"), QStringLiteral("Sim"),
            QStringLiteral("<objectpath '%1'>").arg(simPath));
    }

    static QString modem(int number) { return root + QStringLiteral("/Modem/%1").arg(number); }
    static QString sim(int number) { return root + QStringLiteral("/SIM/%1").arg(number); }

    static void ask()
    {
        QElapsedTimer timer;
        timer.start();
        Telephony::shared().ask();
        EXPECT_LT(timer.elapsed(), 500) << "the screen was held up";
    }

    /// \return whether the country becomes that, or nothing for an empty one
    static bool becomes(const QString &country)
    {
        return QTest::qWaitFor(
            [&] { return Telephony::shared().isoCountryCode().value_or(QString()) == country; },
            patience);
    }

    static bool gdbus(const QStringList &arguments)
    {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral("gdbus"), arguments);
        return process.waitForFinished(patience) && process.exitCode() == 0;
    }

    void TearDown() override
    {
        for (QProcess *process : { &m_service, &m_bus }) {
            process->kill();
            process->waitForFinished(patience);
        }
    }

    QTemporaryDir m_folder;
    QProcess m_bus;
    QProcess m_service;
};

TEST_F(TelephonyBus, KnowsTheCountryAndFollowsTheSim)
{
    startBus();
    startService();
    addModem(0, sim(0));
    addSim(0, QStringLiteral("23201"));
    EXPECT_FALSE(Telephony::shared().isoCountryCode()); // not asked yet
    ask();
    EXPECT_TRUE(becomes(QStringLiteral("at")));
    putIn(0, QStringLiteral("/")); // removed
    EXPECT_TRUE(becomes(QString()));
    addSim(1, QString()); // put in, but locked by its PIN
    putIn(0, sim(1));
    change(sim(1), QStringLiteral(".Sim"), QStringLiteral("OperatorIdentifier"),
        QStringLiteral("<'26201'>")); // unlocked
    EXPECT_TRUE(becomes(QStringLiteral("de")));
    stopService();
    EXPECT_TRUE(becomes(QString()));
}

TEST_F(TelephonyBus, WaitsForAModem)
{
    startBus();
    ask(); // nobody there yet
    startService();
    addSim(0, QStringLiteral("23410"));
    addModem(0, sim(0));
    tellOf(modem(0));
    EXPECT_TRUE(becomes(QStringLiteral("gb")));
}

TEST_F(TelephonyBus, OfTwoModemsTheFirstCounts)
{
    startBus();
    startService();
    addSim(0, QStringLiteral("20801"));
    addSim(1, QStringLiteral("26201"));
    addModem(0, sim(0));
    addModem(1, sim(1));
    ask();
    EXPECT_TRUE(becomes(QStringLiteral("fr")));
    putIn(0, QStringLiteral("/"));
    EXPECT_TRUE(becomes(QString())); // not the second one's
}

TEST_F(TelephonyBus, GivesUpOnASilentServiceAndAsksTheNext)
{
    startBus();
    startService(false);
    mock(root, QStringLiteral("org.freedesktop.DBus.Mock.AddMethod"),
        { QStringLiteral("org.freedesktop.DBus.ObjectManager"), QStringLiteral("GetManagedObjects"),
            QString(), QStringLiteral("a{oa{sa{sv}}}"), silentMethod });
    ask();
    stopService();
    startService();
    addSim(0, QStringLiteral("26201"));
    addModem(0, sim(0));
    tellOf(modem(0));
    EXPECT_TRUE(becomes(QStringLiteral("de")));
}

TEST_F(TelephonyBus, GivesUpOnASilentOrMissingBus)
{
    useAddress("unix:path=/nonexistent");
    ask();
    QLocalServer server; // takes connections and says nothing
    ASSERT_TRUE(server.listen(m_folder.filePath(QStringLiteral("silent"))));
    useAddress("unix:path=" + server.fullServerName().toUtf8());
    ask();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, patience));
    startBus();
    startService();
    addSim(0, QStringLiteral("26201"));
    addModem(0, sim(0));
    ask(); // waits for the time limit of the silent one
    EXPECT_TRUE(becomes(QStringLiteral("de")));
}

TEST_F(TelephonyBus, DoesNotHoldUpTheEndOfTheProgram)
{
    const QByteArray ending = qgetenv("PARLOQUIN_TEST_ENDING");
    if (!ending.isEmpty()) {
        ask();
        std::getchar(); // until it waits for the bus
        m_folder.remove();
        if (ending == "exit")
            std::exit(0); // without returning from main()
        return;
    }
    for (const char *way : { "return", "exit" }) {
        QLocalServer server;
        ASSERT_TRUE(server.listen(m_folder.filePath(QLatin1String(way))));
        useAddress("unix:path=" + server.fullServerName().toUtf8());
        qputenv("PARLOQUIN_TEST_ENDING", way);
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QCoreApplication::applicationFilePath(),
            { QStringLiteral("--gtest_filter=TelephonyBus.DoesNotHoldUpTheEndOfTheProgram") });
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, patience));
        process.write("\n");
        EXPECT_TRUE(process.waitForFinished(patience)) << way;
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << way;
        EXPECT_EQ(process.exitCode(), 0) << way;
    }
}

struct CodeRow {
    const char *name;
    const char *identifier;
    const char *country;
};

class OperatorCountry : public testing::TestWithParam<CodeRow> { };

TEST_P(OperatorCountry, IsFoundByItsCodes)
{
    const auto country = countryOfOperator(QString::fromUtf8(GetParam().identifier));
    EXPECT_EQ(country.value_or(QString()).toStdString(), GetParam().country);
}

const CodeRow codeRows[] = {
    { "Known", "23201", "at" },
    { "ThreeDigitNetwork", "310410", "us" },
    { "UnknownNetworkOfAKnownCountry", "26299", "de" },
    { "SharedCodeByItsNetwork", "23455", "gg" },
    { "SharedCodeByMostNetworks", "25098", "ru" },
    { "UnknownCountry", "99901", "" },
    { "Empty", "", "" },
    { "CountryOnly", "232", "" },
    { "TooLong", "2320112", "" },
    { "Letters", "232ab", "" },
    { "OtherDigits", "\xD9\xA2\xD9\xA3\xD9\xA2\xD9\xA0\xD9\xA1", "" },
};
INSTANTIATE_TEST_SUITE_P(Codes, OperatorCountry, testing::ValuesIn(codeRows),
    [](const auto &row) { return row.param.name; });

} // namespace
