#include "Parloquin/Platform/Linux/MobileCountryCodes.h"
#include "Parloquin/Platform/Linux/ModemService.h"
#include "Parloquin/Platform/Telephony.h"
#include "support/ModemBus.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QLocalServer>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

using namespace parloquin;

namespace {

constexpr int patience = 20000; // ms

TEST(TelephonyEnding, DoesNotHoldUpTheEndOfTheProgram)
{
    const QByteArray ending = qgetenv("PARLOQUIN_TEST_ENDING");
    if (!ending.isEmpty()) {
        Telephony::shared().ask();
        std::getchar(); // until it waits for the bus
        if (ending == "exit")
            std::exit(0); // without returning from main()
        return;
    }
    const QTemporaryDir folder;
    for (const char *way : { "return", "exit" }) {
        QLocalServer server;
        ASSERT_TRUE(server.listen(folder.filePath(QLatin1String(way))));
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + server.fullServerName().toUtf8());
        qputenv("PARLOQUIN_TEST_ENDING", way);
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QCoreApplication::applicationFilePath(),
            { QStringLiteral("--gtest_filter=TelephonyEnding.DoesNotHoldUpTheEndOfTheProgram") });
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.hasPendingConnections(); }, patience));
        process.write("\n");
        EXPECT_TRUE(process.waitForFinished(patience)) << way;
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << way;
        EXPECT_EQ(process.exitCode(), 0) << way;
    }
}

TEST(ModemService, TellsOfWhatMayBringAnotherSimAndOfNothingElse)
{
    const struct {
        QByteArray before;
        QByteArray change;
        std::optional<QString> identifier;
        bool isTold = true;
    } rows[] = {
        { "modem 0 23201; sim 1 26201", "put 0 1", QStringLiteral("26201") },
        { "modem 0 locked", "unlock 0 26201", QStringLiteral("26201") },
        { "modem 0 23201", "end service", {} },
        { "modem 0 23201", "end bus; start bus; start service; modem 0 26201",
            QStringLiteral("26201"), false },
        { "bare 0", "modem 1 26201", {} }, // the first is asked, also without a SIM
        { "modem 0 23201", "strength 0 40", QStringLiteral("23201"), false },
    };
    for (const auto &[before, change, identifier, isTold] : rows) {
        ModemBus bus;
        bus.play("start bus; start service; await; " + before);
        std::atomic<bool> isHeard = false;
        ModemService service([&] { isHeard = true; });
        ASSERT_TRUE(service.connect(nullptr));
        (void)service.operatorIdentifier(nullptr); // by then the bus knows what is listened for
        bus.play(change);
        EXPECT_TRUE(service.connect(nullptr)); // anew, where the bus is another
        ASSERT_EQ(service.operatorIdentifier(nullptr), identifier) << change.constData();
        ASSERT_EQ(QTest::qWaitFor([&] { return isHeard.load(); }, isTold ? patience : 0), isTold)
            << change.constData();
        if (change.startsWith("end bus")) {
            bus.play("end service");
            ASSERT_TRUE(QTest::qWaitFor([&] { return isHeard.load(); }, patience)) << "deaf since";
        }
    }
}

TEST(Telephony, HearsOfASimThatIsPutInWhileItAsks)
{
    ModemBus bus;
    bus.play("start bus; start plain-service; putWhileAsked 23201 26201; ask");
    const auto country = [] { return Telephony::shared().isoCountryCode().value_or(QString()); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return country() == QStringLiteral("de"); }, patience))
        << country().toStdString() << ", not de";
    bus.play("end plain-service");
    EXPECT_TRUE(QTest::qWaitFor([&] { return country().isEmpty(); }, patience)) << "it stays";
}

TEST(OperatorCountry, IsFoundByItsCodes)
{
    const char *const rows[][2] = {
        { "23201", "at" },
        { "310410", "us" }, // a network of three digits
        { "26299", "de" }, // an unknown one of a known country
        { "23455", "gg" }, // of a shared code, by the network
        { "25098", "ru" }, // by most networks
        { "99901", "" },
    };
    for (const auto &[identifier, country] : rows)
        EXPECT_EQ(
            countryOfOperator(QLatin1String(identifier)).value_or(QString()).toStdString(), country)
            << identifier;
    for (const char *none :
        { "", "232", "2320112", "232ab", "\xD9\xA2\xD9\xA3\xD9\xA2\xD9\xA0\xD9\xA1" })
        EXPECT_EQ(countryOfOperator(QString::fromUtf8(none)), std::nullopt) << none;
}

} // namespace
