#include "Parloquin/Platform/Linux/BinaryPropertyList.h"
#include "support/ByName.h"
#include "support/PropertyLists.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

namespace {

using Place = std::function<void(const QByteArray &path)>;

Place file(const QByteArray &bytes, mode_t mode = 0600, uid_t owner = ::geteuid())
{
    return [=](const QByteArray &path) {
        QFile out(QFile::decodeName(path));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        out.close();
        if (::chown(path.constData(), owner, static_cast<gid_t>(-1)) != 0)
            GTEST_SKIP() << "only root gives files away";
        ASSERT_EQ(::chmod(path.constData(), mode), 0);
    };
}

struct ListRow {
    const char *name;
    Place place;
    const char *value; // under "key"
    const char *fault = ""; // part of what stands on standard error; empty for a silent one
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
    const QByteArray path = QFile::encodeName(folder.filePath(QStringLiteral("Info.plist")));
};

TEST_F(ProgramWithList, ReadsItAnewWhenItHasChanged)
{
    const auto put = [this](const char *value) {
        file(dictionary(QByteArray("<key>key</key><string>") + value + "</string>"))(path);
    };
    const QString key = QStringLiteral("key");
    const QString pause = QStringLiteral("pause");
    put("one");
    QProcess process;
    process.start(program, { key, key, pause, key, pause, key });
    QByteArray said;
    for (const auto &change : { std::function<void()>([&] { put("two"); }),
             std::function<void()>([&] { QFile::remove(QFile::decodeName(path)); }) }) {
        const qsizetype lines = said.count('\n') + 1;
        while (said.count('\n') < lines && process.waitForReadyRead(10000))
            said += process.readAllStandardOutput();
        change();
        process.write("\n");
    }
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(said + process.readAllStandardOutput(), "one\none\ntwo\n(absent)\n");
}

class PropertyList : public ProgramWithList, public testing::WithParamInterface<ListRow> { };

TEST_P(PropertyList, GivesTheTextOrNamesTheFault)
{
    GetParam().place(path);
    if (IsSkipped())
        return;

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
    EXPECT_TRUE(fault.isEmpty() ? said.isEmpty() : said.contains(path) && said.contains(fault))
        << said.constData();
}

constexpr char absent[] = "(absent)";
constexpr char noList[] = "is no property list";
constexpr char broken[] = "broken binary";
constexpr char noFile[] = "no regular file";
const QByteArray good = dictionary("<key>key</key><string>x</string>");
const QByteArray key = "\x53key";
const ListRow listRows[] = {
    { "NoFile", [](const QByteArray &) {}, absent },
    { "Xml", file(dictionary("<key>key</key><string>a &amp; \xC3\xA9</string>")), "a & \xC3\xA9" },
    { "XmlWithMark", file("\xEF\xBB\xBF" + good), "x" },
    { "Binary", file(binary({ "\xD1\x01\x02", key, "\x55value" })), "value" },
    { "BinaryUtf16", file(binary({ "\xD1\x01\x02", key, QByteArray("\x61\x20\xAC", 3) })),
        "\xE2\x82\xAC" },
    { "EmptyText", file(dictionary("<key>key</key><string></string>")), "" },
    { "OtherKeys", file(dictionary("<key>k</key><string>x</string>")), absent },
    { "NoText", file(dictionary("<key>key</key><integer>7</integer>")), absent },
    { "Empty", file(""), absent, noList },
    { "Garbage", file("key = value\n"), absent, noList },
    { "XmlCut", file(good.left(90)), absent, noList },
    { "NoDictionary", file(xml("<array><string>key</string></array>")), absent,
        "holds no dictionary" },
    { "DeepXml",
        file(xml(QByteArray("<array>").repeated(4000) + QByteArray("</array>").repeated(4000))),
        absent, "holds no dictionary" },
    { "DeepestXml", file("<plist>" + QByteArray("<array>").repeated(9300)), absent, noList },
    { "Oversized",
        file(dictionary("<key>key</key><string>" + QByteArray(64 * 1024, 'x') + "</string>")),
        absent, "over 64 KiB" },
    { "Huge", file(QByteArray(64 << 20, ' ')), absent, "over 64 KiB" },
    { "Unreadable", file(good, 0), absent, "cannot be read" },
    { "OfAnotherUser", file(good, 0644, 1234), absent, "belongs to another user" },
    { "BinaryCut", file(binary({ "\xD1\x01\x02", key, "\x55value" }).chopped(1)), absent, broken },
    { "BinaryHeaderOnly", file("bplist00"), absent, broken },
    { "Cyclic", file(binary({ "\xD1\x01\x02", key, QByteArray("\xA1\x00", 2) })), absent, broken },
    { "Pipe", [](const QByteArray &path) { ASSERT_EQ(::mkfifo(path.constData(), 0600), 0); },
        absent, noFile },
    { "Folder", [](const QByteArray &path) { ASSERT_EQ(::mkdir(path.constData(), 0700), 0); },
        absent, noFile },
    { "Device",
        [](const QByteArray &path) { ASSERT_EQ(::symlink("/dev/zero", path.constData()), 0); },
        absent, noFile },
    { "LinkToItself",
        [](const QByteArray &path) { ASSERT_EQ(::symlink(path.constData(), path.constData()), 0); },
        absent, "cannot be read" },
};
INSTANTIATE_TEST_SUITE_P(Files, PropertyList, testing::ValuesIn(listRows), byName);

// Few bytes that unfold to more nodes than any memory holds.
TEST(BinaryPropertyList, RefusesToUnfoldWithoutEnd)
{
    QList<QByteArray> doubling { "\xD1\x01\x02", key };
    for (char next = 3; next < 40; ++next)
        doubling << QByteArray("\xA2") + next + next;
    doubling << "\x51x";
    EXPECT_FALSE(parloquin::isPlainBinaryPropertyList(binary(doubling)));
    doubling.remove(8, doubling.size() - 9);
    doubling[7] = "\x51x";
    EXPECT_TRUE(parloquin::isPlainBinaryPropertyList(binary(doubling)));
}

// Every byte of a list set to every value: never a read beyond its end (the sanitizer watches).
TEST(BinaryPropertyList, SurvivesAnyByte)
{
    const QByteArray whole = binary(
        { "\xD1\x01\x02", key, "\xA1\x03", QByteArray("\x5F\x10\x10", 3) + QByteArray(16, 'v') });
    ASSERT_TRUE(parloquin::isPlainBinaryPropertyList(whole));
    for (qsizetype i = 0; i < whole.size(); ++i) {
        for (int value = 0; value < 256; ++value) {
            QByteArray damaged = whole;
            damaged[i] = static_cast<char>(value);
            damaged.detach();
            static_cast<void>(parloquin::isPlainBinaryPropertyList(damaged));
        }
        EXPECT_FALSE(parloquin::isPlainBinaryPropertyList(whole.left(i)));
    }
}

} // namespace
