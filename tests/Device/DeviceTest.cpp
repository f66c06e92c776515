#include "Parloquin/Platform/Linux/MachineInfo.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryFile>

#include <gtest/gtest.h>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

/// What the probe prints under an environment, as lines.
QStringList probe(
    const QStringList &names, const QStringList &environment = {}, const QStringList &runner = {})
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString &entry : environment)
        variables.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    process.setProcessEnvironment(variables);
    const QStringList command = runner + QStringList(QStringLiteral(DEVICE_PROBE)) + names;
    process.start(command.first(), command.mid(1));
    if (!process.waitForFinished() || process.exitCode() != 0)
        return { QString::fromUtf8(process.readAllStandardError()) };
    return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n');
}

// The time zone and the codes of the locale are held on the wire, among the answers.
TEST(Device, NamesTheSystem)
{
    const auto lines = probe({ u"version"_s, u"name"_s });
    EXPECT_TRUE(!lines.value(0).isEmpty() && lines.value(0).front().isDigit());
    EXPECT_FALSE(lines.value(1).isEmpty());
}

TEST(DeviceMachineId, MakesTheIdentifierOfAnOrganisation)
{
    // A mount of its own lays the file of the test over the machine's.
    const QStringList own { u"unshare"_s, u"-rm"_s, u"sh"_s, u"-c"_s };
    const QStringList trial { u"mount --bind /dev/null /etc/machine-id"_s };
    if (!QFile::exists(u"/etc/machine-id"_s) || QProcess::execute(own[0], own.mid(1) + trial) != 0)
        GTEST_SKIP() << "the system allows no mounts of one's own";
    const QByteArray known = "0123456789abcdef0123456789abcdef\n";
    const std::tuple<QByteArray, QString, QString> rows[] = {
        // printf shop.example | openssl dgst -sha256 -hmac 0123..., cut to 16 bytes, version bits
        // set
        { known, u"shop.example"_s, u"0B37B271-5797-48C0-AFD0-269AAEB54737"_s },
        { known, u"bank.example"_s, u"91257EB6-5C1F-41CC-B4D1-EA2A66E0149C"_s },
        { "", u"shop.example"_s, u""_s },
        { "uninitialized\n", u"shop.example"_s, u""_s },
        { "00000000000000000000000000000000\n", u"shop.example"_s, u""_s },
        { "0123456789abcdef\n", u"shop.example"_s, u""_s },
    };
    for (const auto &[id, domain, identifier] : rows) {
        QTemporaryFile file;
        ASSERT_TRUE(file.open() && file.write(id) == id.size() && file.flush());
        const QString script =
            u"mount --bind %1 /etc/machine-id && mount --bind %1 /etc/os-release && "
            "{ [ ! -f /var/lib/dbus/machine-id ] || mount --bind %1 /var/lib/dbus/machine-id; } && "
            "exec \"$0\" \"$@\""_s.arg(file.fileName());
        const auto lines = probe({ u"identifier"_s, u"version"_s }, { u"PROBE_DOMAIN="_s + domain },
            own + QStringList(script));
        EXPECT_EQ(lines.value(0), identifier) << id.constData();
        // An empty file is passed over; a system without a number has its kernel's.
        EXPECT_TRUE(id.isEmpty() || lines.value(1) == QSysInfo::kernelVersion())
            << lines.value(1).toStdString();
    }
}

TEST(MachineInfo, ReadsTheNameAsAShellDoes)
{
    const char *const rows[][2] = {
        { "CHASSIS=handset\nPRETTY_HOSTNAME=\"Ada's phone\"\n", "Ada's phone" },
        { "PRETTY_HOSTNAME=phone", "phone" },
        { "PRETTY_HOSTNAME=\" a b \"", "a b" },
        { "PRETTY_HOSTNAME='a \\ b'", "a \\ b" },
        { "PRETTY_HOSTNAME=\"\\\"x\\\" \\$y\"", "\"x\" $y" },
        { "PRETTY_HOSTNAME=\"\xC3\x89toile\"", "\xC3\x89toile" },
        { "PRETTY_HOSTNAME=a\nPRETTY_HOSTNAME=b\n", "b" },
        { "XPRETTY_HOSTNAME=a\n# PRETTY_HOSTNAME=b\n", "" },
        { "PRETTY_HOSTNAME=\"a", "" },
        { "", "" },
    };
    for (const auto &[file, value] : rows)
        EXPECT_EQ(machineInfoValue(file, "PRETTY_HOSTNAME").toStdString(), value) << file;
}

} // namespace
