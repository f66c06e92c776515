#include "support/ByName.h"
#include "support/PropertyLists.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <functional>

namespace {

struct ListRow {
    const char *name;
    QByteArray bytes; // of the file
    const char *value; // under "key"
    const char *fault = ""; // part of what stands on standard error; empty for a silent one
    const char *then = ":"; // what a shell does to the file, $0
};

// The list lies beside the program, so the program gets a place of its own.
class ProgramWithList : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(::link(DEVICE_PROBE, QFile::encodeName(program).constData()), 0);
    }

    const QTemporaryDir folder { QCoreApplication::applicationDirPath()
        + QStringLiteral("/list-XXXXXX") };
    const QString program = folder.filePath(QStringLiteral("probe"));
    const QString path = folder.filePath(QStringLiteral("Info.plist"));

    void write(const QByteArray &bytes) const
    {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    }
};

TEST_F(ProgramWithList, ReadsItAnewWhenItHasChanged)
{
    const auto put = [this](const char *value) {
        write(dictionary(QByteArray("<key>key</key><string>") + value
            + "</string><key>ParloquinSecret</key><string>" + QByteArray(64, *value)
            + "</string>"));
    };
    const QString key = QStringLiteral("key");
    const QString pause = QStringLiteral("pause");
    const QString encrypted = QStringLiteral("encrypted");
    put("a");
    QProcess process;
    process.start(program, { key, key, encrypted, pause, key, encrypted, pause, key });
    QByteArray said;
    for (const auto &change : { std::function<void()>([&] { put("b"); }),
             std::function<void()>([&] { QFile::remove(path); }) }) {
        const qsizetype lines = said.count('\n') + 1;
        while (said.count('\n') < lines && process.waitForReadyRead(10000))
            said += process.readAllStandardOutput();
        change();
        process.write("\n");
    }
    ASSERT_TRUE(process.waitForFinished(10000));
    auto lines = (said + process.readAllStandardOutput()).split('\n');
    ASSERT_EQ(lines.size(), 7);
    EXPECT_NE(lines.at(2), lines.at(4)) << "by another secret";
    lines.remove(4);
    lines.remove(2);
    EXPECT_EQ(lines.join(' '), "a a b (absent) ");
}

class PropertyList : public ProgramWithList, public testing::WithParamInterface<ListRow> { };

TEST_P(PropertyList, GivesTheTextOrNamesTheFault)
{
    write(GetParam().bytes);
    if (QProcess::execute(
            QStringLiteral("sh"), { QStringLiteral("-c"), QLatin1String(GetParam().then), path })
        != 0)
        GTEST_SKIP() << "only root gives files away";
    QProcess process;
    // Root reads whatever the mode forbids.
    if (GetParam().fault == std::string_view("cannot be read"))
        process.setChildProcessModifier([] {
            for (const int capability : { CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH })
                static_cast<void>(::prctl(PR_CAPBSET_DROP, capability));
        });
    process.start(program, { QStringLiteral("key"), QStringLiteral("key") });
    ASSERT_TRUE(process.waitForFinished(10000)) << "it waits for ever";
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    EXPECT_EQ(process.readAllStandardOutput(),
        QByteArray(GetParam().value) + "\n" + GetParam().value + "\n");
    const QByteArray said = process.readAllStandardError();
    const QByteArray fault = GetParam().fault;
    EXPECT_EQ(said.count('\n'), fault.isEmpty() ? 0 : 1) << said.constData(); // once
    EXPECT_TRUE(
        fault.isEmpty() ? said.isEmpty() : said.contains(path.toUtf8()) && said.contains(fault))
        << said.constData();
}

constexpr char absent[] = "(absent)";
constexpr char noList[] = "is no property list";
constexpr char broken[] = "broken binary";
constexpr char noFile[] = "no regular file";
const QByteArray good = dictionary("<key>key</key><string>x</string>");
const QByteArray key = "\x53key";
/// What there are more than fifteen of is counted apart, in as many bytes as its writer likes.
QByteArray inLongList(const QByteArray &last)
{
    return binary({ "\xD2\x01\x03\x02\x04", key, "\x51x", "\x51l",
        QByteArray("\xAF\x12\0\0\0\x10", 6) + QByteArray("\x02").repeated(15) + last });
}
const ListRow listRows[] = {
    { "NoFile", {}, absent, "", "rm $0" },
    { "Xml", dictionary("<key>key</key><string>a &amp; \xC3\xA9</string>"), "a & \xC3\xA9" },
    { "XmlWithMarkAndNoHead", "\xEF\xBB\xBF" + good.mid(good.indexOf("<plist")), "x" },
    { "BinaryUtf16", binary({ "\xD1\x01\x02", key, QByteArray("\x61\x20\xAC", 3) }),
        "\xE2\x82\xAC" },
    { "BinaryWithAListOfAllKinds",
        binary({ "\xD2\x01\x03\x02\x04", key, "\x51x", "\x51l", "\xA6\x05\x06\x07\x08\x09\x0A",
            "\x09", "\x11zz", "\x22zzzz", "\x33@zzzzzzz", "\x4F\x10\x96" + QByteArray(150, 'z'),
            "\x80\x01" }),
        "x" },
    { "BinaryWithALongList", inLongList("\x02"), "x" },
    { "EmptyText", dictionary("<key>key</key><string></string>"), "" },
    { "OtherKeys", dictionary("<key>k</key><string>x</string>"), absent },
    { "NoText", dictionary("<key>key</key><integer>7</integer>"), absent },
    { "Empty", "", absent, noList },
    { "Garbage", "key = value\n", absent, noList },
    { "XmlCut", good.left(90), absent, noList },
    { "NoDictionary", xml("<array><string>key</string></array>"), absent, "holds no dictionary" },
    { "DeepXml", xml(QByteArray("<array>").repeated(4000) + QByteArray("</array>").repeated(4000)),
        absent, "holds no dictionary" },
    { "DeepestXml", "<plist>" + QByteArray("<array>").repeated(9300), absent, noList },
    { "Oversized", good.leftJustified(64 * 1024 + 1), absent, "over 64 KiB" },
    { "AsLongAsMayBe", good.leftJustified(64 * 1024), "x" },
    { "Huge", QByteArray(64 << 20, ' '), absent, "over 64 KiB" },
    { "Unreadable", good, absent, "cannot be read", "chmod 0 $0" },
    { "OfAnotherUser", good, absent, "belongs to another user", "chown 1234 $0" },
    { "OfTheProgramsOwner", good, "x", "",
        "cd ${0%/*}; cp probe own; mv own probe; chown 1234 probe $0" },
    { "BinaryCut", binary({ "\xD1\x01\x02", key, "\x55value" }).chopped(1), absent, broken },
    { "BinaryHeaderOnly", "bplist00", absent, broken },
    { "Cyclic", binary({ "\xD1\x01\x02", key, QByteArray("\xA1\x00", 2) }), absent, broken },
    { "CyclicAfterFifteen", inLongList("\x04"), absent, broken },
    { "CountOfNoNumber", binary({ "\xD1\x01\x02", key, "\x5F\x50\x01x" }), absent, broken },
    { "Pipe", {}, absent, noFile, "rm $0; mkfifo $0" },
    { "Folder", {}, absent, noFile, "rm $0; mkdir $0" },
    { "Device", {}, absent, noFile, "ln -sf /dev/zero $0" },
    { "LinkToItself", {}, absent, "cannot be read", "rm $0; ln -s $0 $0" },
};
INSTANTIATE_TEST_SUITE_P(Files, PropertyList, testing::ValuesIn(listRows), byName);

} // namespace
