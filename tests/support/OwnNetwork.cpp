#include "support/OwnNetwork.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QProcess>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

bool run(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QStringLiteral("unshare"), arguments);
    return process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

} // namespace

bool isInOwnNetwork()
{
    if (qEnvironmentVariableIsSet("PARLOQUIN_TEST_NETWORK"))
        return true;
    const auto *const info = testing::UnitTest::GetInstance()->current_test_info();
    const QString filter =
        QStringLiteral("--gtest_filter=%1.%2")
            .arg(QLatin1String(info->test_suite_name()), QLatin1String(info->name()));
    for (const QString &how : { QStringLiteral("-mn"), QStringLiteral("-rmn") }) {
        const QStringList shell { how, QStringLiteral("sh"), QStringLiteral("-c"),
            QStringLiteral("ip link set lo up && names=$(mktemp) "
                           "&& echo nameserver 127.0.0.1 >$names "
                           "&& mount --bind $names /etc/resolv.conf && rm $names "
                           "&& exec \"$0\" \"$@\"") };
        if (!run(shell + QStringList(QStringLiteral("true"))))
            continue;
        qputenv("PARLOQUIN_TEST_NETWORK", "1");
        EXPECT_TRUE(run(shell + QStringList { QCoreApplication::applicationFilePath(), filter }));
        qunsetenv("PARLOQUIN_TEST_NETWORK");
        return false;
    }
    [] { GTEST_SKIP() << "the system allows no network namespaces"; }();
    return false;
}

bool ip(const QByteArray &lines)
{
    // Not by QProcess: its way to fork confuses the thread checker about the threads to come.
    std::FILE *const tool = ::popen("ip -batch -", "w");
    const bool isWritten = tool && std::fputs(lines.constData(), tool) >= 0;
    return tool && ::pclose(tool) == 0 && isWritten;
}
