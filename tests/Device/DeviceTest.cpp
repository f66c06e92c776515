#include "Parloquin/Platform/Linux/MachineInfo.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

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
TEST(Device, SaysWhatTheFilesOfTheSystemSay)
{
    // A mount of its own lays the files of the test over the machine's.
    const QStringList own { u"unshare"_s, u"-rm"_s, u"sh"_s, u"-c"_s };
    if (QProcess::execute(own[0], own.mid(1) + QStringList(u"mount -t tmpfs none /etc"_s)) != 0)
        GTEST_SKIP() << "the system allows no mounts of one's own";
    const QByteArray known = "0123456789abcdef0123456789abcdef\n";
    struct {
        QByteArray id;
        QString domain, identifier;
        QByteArray release;
        QString version = QSysInfo::kernelVersion(); // of a system without a number
    } const rows[] = {
        // printf shop.example | openssl dgst -sha256 -hmac 0123..., cut to 16 bytes, version bits
        // set
        { known, u"shop.example"_s, u"0B37B271-5797-48C0-AFD0-269AAEB54737"_s, "VERSION_ID=12\n",
            u"12"_s },
        { known, {}, u"796CD307-8AF1-4636-B53D-26B3B5555422"_s, "ID=rolling\n" },
        { "", {}, u""_s, "ID=rolling\n" },
        { "uninitialized\n", u"shop.example"_s, u""_s, "VERSION_ID=unknown\n" },
        { "00000000000000000000000000000000\n", u"shop.example"_s, u""_s, "ID=rolling\n" },
        { "0123456789abcdef\n", u"shop.example"_s, u""_s, "ID=rolling\n" },
    };
    for (const auto &[id, domain, identifier, release, version] : rows) {
        const QTemporaryDir etc;
        for (const auto &[name, bytes] :
            { std::pair(u"machine-id"_s, id), { u"os-release"_s, release },
                { u"machine-info"_s,
                    QByteArray("CHASSIS=handset\n").repeated(99) + " PRETTY_HOSTNAME='"
                        + domain.toUtf8() + "'\r\n" } }) {
            QFile file(etc.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        }
        const QString script =
            u"{ [ ! -f /var/lib/dbus/machine-id ] || mount --bind %1/machine-id "
            "/var/lib/dbus/machine-id; } && mount --bind %1 /etc && exec \"$0\" \"$@\""_s.arg(
                etc.path());
        EXPECT_EQ(probe({ u"identifier"_s, u"version"_s, u"name"_s },
                      { u"PROBE_DOMAIN="_s + domain }, own + QStringList(script)),
            QStringList({ identifier, version,
                domain.isEmpty() ? QSysInfo::machineHostName() : domain, QString() }))
            << id.constData();
    }
}

TEST(MachineInfo, ReadsTheNameAsAShellDoes)
{
    const char *const rows[][2] = {
        { "CHASSIS=handset\nPRETTY_HOSTNAME=\"Ada's phone\"\n", "Ada's phone" },
        { "PRETTY_HOSTNAME=phone", "phone" },
        { "PRETTY_HOSTNAME=\" a b \"", "a b" },
        { "PRETTY_HOSTNAME='a \\ b'", "a \\ b" },
        { "PRETTY_HOSTNAME=\"\\\"x\\\" \\$y \\z\"", "\"x\" $y \\z" },
        { "PRETTY_HOSTNAME=\"\xC3\x89toile\"", "\xC3\x89toile" },
        { "PRETTY_HOSTNAME=a\nPRETTY_HOSTNAME=b\n", "b" },
        { "PRETTY_HOSTNAME=a\nPRETTY_HOSTNAME=b\\", "a" },
        { "PRETTY_HOSTNAME=a'b'\"c\"\\ d", "abc d" },
        { "XPRETTY_HOSTNAME=a\n# PRETTY_HOSTNAME=b\n", "" },
        { "PRETTY_HOSTNAME=\"a", "" },
        { "", "" },
    };
    for (const auto &[file, value] : rows)
        EXPECT_EQ(machineInfoValue(file, "PRETTY_HOSTNAME").toStdString(), value) << file;
}

} // namespace
