#include "Parloquin/Platform/Linux/MobileCountryCodes.h"
#include "Parloquin/Platform/Telephony.h"

#include <QtCore/QCoreApplication>
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
