#include "Parloquin/Platform/Linux/MachineInfo.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSysInfo>
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
    for (const char *name : { "LC_ALL", "LANG", "LC_MESSAGES", "LANGUAGE", "TZ" })
        variables.remove(QString::fromLatin1(name));
    for (const QString &entry : environment)
        variables.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    process.setProcessEnvironment(variables);
    const QStringList command = runner + QStringList(QStringLiteral(DEVICE_PROBE)) + names;
    process.start(command.first(), command.mid(1));
    if (!process.waitForFinished() || process.exitCode() != 0)
        return { QString::fromUtf8(process.readAllStandardError()) };
    return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n');
}

TEST(Device, GivesCodesOfTheLocaleOrNothing)
{
    const char *const rows[][3] = {
        { "X=", "", "" },
        { "LANG=POSIX", "", "" },
        { "LANG=pt_BR.UTF-8", "pt", "BR" },
        { "LC_ALL=sr_RS.UTF-8@latin", "sr", "RS" },
        { "LC_ALL=fil_PH.UTF-8", "fil", "PH" },
    };
    for (const auto &[environment, language, region] : rows) {
        const auto lines = probe({ u"language"_s, u"region"_s }, { QLatin1String(environment) });
        EXPECT_EQ(lines.value(0).toStdString(), language) << environment;
        EXPECT_EQ(lines.value(1).toStdString(), region) << environment;
    }
}

TEST(Device, NamesTheTimeZoneAndTheSystem)
{
    for (const auto &zone : { u"Europe/Vienna"_s, u"America/Argentina/Ushuaia"_s })
        EXPECT_EQ(probe({ u"zone"_s }, { u"TZ="_s + zone }).value(0), zone);
    const auto lines = probe({ u"version"_s, u"name"_s });
    EXPECT_TRUE(!lines.value(0).isEmpty() && lines.value(0).front().isDigit());
    EXPECT_FALSE(lines.value(1).isEmpty());
}

TEST(Device, IdentifierBelongsToTheOrganisationAndHidesTheMachine)
{
    const auto of = [](const QString &domain) {
        return probe({ u"identifier"_s }, { u"PROBE_DOMAIN="_s + domain }).value(0);
    };
    if (QSysInfo::machineUniqueId().isEmpty())
        GTEST_SKIP() << "this machine has no identity";
    const QString first = of(u"shop.example"_s);
    static const QRegularExpression uuid(
        u"^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"_s);
    EXPECT_TRUE(uuid.match(first).hasMatch()) << first.toStdString();
    EXPECT_EQ(of(u"shop.example"_s), first);
    EXPECT_NE(of(u"bank.example"_s), first);
    QString bare = first;
    EXPECT_NE(bare.remove(u'-').toLower().toLatin1(), QSysInfo::machineUniqueId());
}

TEST(DeviceMachineId, MakesTheIdentifier)
{
    // A mount of its own lays the file of the test over the machine's.
    const QStringList own { u"unshare"_s, u"-rm"_s, u"sh"_s, u"-c"_s };
    const QStringList trial { u"mount --bind /dev/null /etc/machine-id"_s };
    if (!QFile::exists(u"/etc/machine-id"_s) || QProcess::execute(own[0], own.mid(1) + trial) != 0)
        GTEST_SKIP() << "the system allows no mounts of one's own";
    const std::pair<QByteArray, QString> rows[] = {
        // printf shop.example | openssl dgst -sha256 -hmac 0123..., cut to 16 bytes, version bits
        // set
        { "0123456789abcdef0123456789abcdef\n", u"0B37B271-5797-48C0-AFD0-269AAEB54737"_s },
        { "", u""_s },
        { "uninitialized\n", u""_s },
        { "00000000000000000000000000000000\n", u""_s },
        { "0123456789abcdef\n", u""_s },
    };
    for (const auto &[id, identifier] : rows) {
        QTemporaryFile file;
        ASSERT_TRUE(file.open() && file.write(id) == id.size() && file.flush());
        const QString script =
            u"mount --bind %1 /etc/machine-id && "
            "{ [ ! -f /var/lib/dbus/machine-id ] || mount --bind %1 /var/lib/dbus/machine-id; } && "
            "exec \"$0\" \"$@\""_s.arg(file.fileName());
        const auto lines = probe(
            { u"identifier"_s }, { u"PROBE_DOMAIN=shop.example"_s }, own + QStringList(script));
        EXPECT_EQ(lines.value(0), identifier) << id.constData();
    }
}

TEST(MachineInfo, ReadsTheNameAsAShellDoes)
{
    const char *const rows[][2] = {
        { "CHASSIS=handset\nPRETTY_HOSTNAME=\"Ada's phone\"\n", "Ada's phone" },
        { "PRETTY_HOSTNAME=phone", "phone" },
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
