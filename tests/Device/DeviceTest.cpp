#include "Parloquin/Platform/Linux/MachineInfo.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSysInfo>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

using namespace parloquin;

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

struct LocaleRow {
    const char *name;
    const char *environment;
    const char *language;
    const char *region;
};

class DeviceLocale : public testing::TestWithParam<LocaleRow> { };

TEST_P(DeviceLocale, GivesCodesOrNothing)
{
    const auto lines = probe({ QStringLiteral("language"), QStringLiteral("region") },
        QString::fromLatin1(GetParam().environment).split(u' '));
    EXPECT_EQ(lines.value(0).toStdString(), GetParam().language);
    EXPECT_EQ(lines.value(1).toStdString(), GetParam().region);
}

const LocaleRow localeRows[] = {
    { "None", "X=", "", "" },
    { "C", "LC_ALL=C", "", "" },
    { "CUtf8", "LC_ALL=C.UTF-8", "", "" },
    { "Posix", "LANG=POSIX", "", "" },
    { "Austria", "LC_ALL=de_AT.UTF-8", "de", "AT" },
    { "Brazil", "LANG=pt_BR.UTF-8", "pt", "BR" },
    { "Modifier", "LC_ALL=sr_RS.UTF-8@latin", "sr", "RS" },
    { "Filipino", "LC_ALL=fil_PH.UTF-8", "fil", "PH" },
};
INSTANTIATE_TEST_SUITE_P(Locales, DeviceLocale, testing::ValuesIn(localeRows),
    [](const auto &row) { return row.param.name; });

TEST(Device, NamesTheTimeZoneAndTheSystem)
{
    for (const char *zone : { "Europe/Vienna", "America/Argentina/Ushuaia" }) {
        EXPECT_EQ(
            probe({ QStringLiteral("zone") }, { QStringLiteral("TZ=") + QString::fromLatin1(zone) })
                .value(0)
                .toStdString(),
            zone);
    }
    const auto lines = probe({ QStringLiteral("version"), QStringLiteral("name") });
    EXPECT_TRUE(!lines.value(0).isEmpty() && lines.value(0).front().isDigit());
    EXPECT_FALSE(lines.value(1).isEmpty());
}

TEST(Device, IdentifierBelongsToTheOrganisationAndHidesTheMachine)
{
    const auto of = [](const char *domain) {
        return probe({ QStringLiteral("identifier") },
            { QStringLiteral("PROBE_DOMAIN=") + QString::fromLatin1(domain) })
            .value(0);
    };
    if (QSysInfo::machineUniqueId().isEmpty())
        GTEST_SKIP() << "this machine has no identity";
    const QString first = of("shop.example");
    static const QRegularExpression uuid(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    EXPECT_TRUE(uuid.match(first).hasMatch()) << first.toStdString();
    EXPECT_EQ(of("shop.example"), first);
    EXPECT_NE(of("bank.example"), first);
    QString bare = first;
    EXPECT_NE(bare.remove(u'-').toLower().toLatin1(), QSysInfo::machineUniqueId());
}

struct MachineRow {
    const char *name;
    QByteArray id;
    const char *identifier;
};

class DeviceMachineId : public testing::TestWithParam<MachineRow> { };

TEST_P(DeviceMachineId, MakesTheIdentifier)
{
    // A mount of its own lays the file of the test over the machine's.
    const QString shell = QStringLiteral("sh");
    const QStringList own { QStringLiteral("-rm"), shell, QStringLiteral("-c") };
    if (!QFile::exists(QStringLiteral("/etc/machine-id"))
        || QProcess::execute(QStringLiteral("unshare"),
               own + QStringList(QStringLiteral("mount --bind /dev/null /etc/machine-id")))
            != 0)
        GTEST_SKIP() << "the system allows no mounts of one's own";
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("id")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(GetParam().id);
    file.close();
    const QString script = QStringLiteral(
        "mount --bind %1 /etc/machine-id && "
        "{ [ ! -f /var/lib/dbus/machine-id ] || mount --bind %1 /var/lib/dbus/machine-id; } && "
        "exec \"$0\" \"$@\"")
                               .arg(file.fileName());
    const auto lines =
        probe({ QStringLiteral("identifier") }, { QStringLiteral("PROBE_DOMAIN=shop.example") },
            QStringList(QStringLiteral("unshare")) + own + QStringList(script));
    EXPECT_EQ(lines.value(0).toStdString(), GetParam().identifier);
}

const MachineRow machineRows[] = {
    // printf shop.example | openssl dgst -sha256 -hmac 0123..., cut to 16 bytes, version bits set
    { "Known", "0123456789abcdef0123456789abcdef\n", "0B37B271-5797-48C0-AFD0-269AAEB54737" },
    { "Missing", "", "" },
    { "NotBootedYet", "uninitialized\n", "" },
    { "Zero", "00000000000000000000000000000000\n", "" },
    { "CutShort", "0123456789abcdef\n", "" },
};
INSTANTIATE_TEST_SUITE_P(Machine, DeviceMachineId, testing::ValuesIn(machineRows),
    [](const auto &row) { return row.param.name; });

struct NameRow {
    const char *name;
    QByteArray file;
    const char *value;
};

class MachineInfo : public testing::TestWithParam<NameRow> { };

TEST_P(MachineInfo, ReadsTheNameAsAShellDoes)
{
    EXPECT_EQ(machineInfoValue(GetParam().file, "PRETTY_HOSTNAME").toStdString(), GetParam().value);
}

const NameRow nameRows[] = {
    { "Quoted", "CHASSIS=handset\nPRETTY_HOSTNAME=\"Ada's phone\"\n", "Ada's phone" },
    { "Bare", "PRETTY_HOSTNAME=phone", "phone" },
    { "SingleQuotes", "PRETTY_HOSTNAME='a \\ b'", "a \\ b" },
    { "Escaped", "PRETTY_HOSTNAME=\"\\\"x\\\" \\$y\"", "\"x\" $y" },
    { "Unicode", "PRETTY_HOSTNAME=\"\xC3\x89toile\"", "\xC3\x89toile" },
    { "LastHolds", "PRETTY_HOSTNAME=a\nPRETTY_HOSTNAME=b\n", "b" },
    { "OtherNames", "XPRETTY_HOSTNAME=a\n# PRETTY_HOSTNAME=b\n", "" },
    { "Unclosed", "PRETTY_HOSTNAME=\"a", "" },
    { "Empty", "", "" },
};
INSTANTIATE_TEST_SUITE_P(Names, MachineInfo, testing::ValuesIn(nameRows),
    [](const auto &row) { return row.param.name; });

} // namespace
