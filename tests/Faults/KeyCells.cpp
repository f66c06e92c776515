// What may lie beside the program in place of the file with the host's keys.
//
// Without a usable secret the service refuses a request, and the host is told what to mend by a
// program that stops: at once, whatever the file is. Without a client key it is refused only.
#include "Faults/FaultTest.h"
#include "support/PropertyLists.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// So that the file beside the program counts. Outside of namespaces, as the macro has it.
static void forgetCompiledInKeys() { Q_CLEANUP_RESOURCE(HostKeys); }

namespace {

using Place = std::function<void(const QByteArray &path)>;

Place file(const QByteArray &bytes, mode_t mode = 0600)
{
    return [=](const QByteArray &path) {
        QFile file(QFile::decodeName(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        EXPECT_EQ(::fchmod(file.handle(), mode), 0);
    };
}
const auto pipe = [](const QByteArray &path) { EXPECT_EQ(::mkfifo(path, 0600), 0); };

const QByteArray &goodKeys()
{
    static const QByteArray keys = [] {
        QFile compiledIn(u":/Info.plist"_s);
        return compiledIn.open(QIODevice::ReadOnly) ? compiledIn.readAll() : QByteArray();
    }();
    return keys;
}

struct KeyFile {
    const char *fault;
    Place place;
    bool stops = true;
    bool meetsEachCall = false; ///< or the first one only
};
const std::vector<KeyFile> &keyFiles()
{
    static const QByteArray numericKey =
        QByteArray(goodKeys()).replace("<string>parloquin-demo</string>", "<integer>7</integer>");
    static const std::vector<KeyFile> files {
        { "key file missing", [](const QByteArray &) {}, true, true },
        { "key file empty", file({}) },
        { "key file of garbage", file(QByteArray("\xFF\x00\x80\n", 4).repeated(64)) },
        { "key file with a list on top", file(xml("<array><string>x</string></array>")) },
        { "key file with a numeric secret",
            file(dictionary("<key>ParloquinSecret</key><integer>7</integer>")) },
        { "key file with a numeric client key", file(numericKey), false, true },
        { "key file that holds itself",
            file(binary({ "\xD1\x01\x02", "\x5CParloquinKey", QByteArray("\xA1\x00", 2) })) },
        { "key file of deep lists",
            file(xml(
                QByteArray("<array>").repeated(4000) + QByteArray("</array>").repeated(4000))) },
        { "key file of 64 MiB", file(goodKeys() + QByteArray(64 << 20, ' ')) },
        { "key file unreadable", file(goodKeys(), 0) },
        { "key file a pipe", pipe },
    };
    return files;
}

/// Whether this program lies in a folder of its own; as isInOwnNetwork().
/// \param stops how the other one ends
bool isInOwnFolder(bool stops)
{
    if (qEnvironmentVariableIsSet("PARLOQUIN_TEST_FOLDER"))
        return true;
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() + u"/keys-XXXXXX"_s);
    const std::string program = folder.path().toStdString() + "/host";
    EXPECT_EQ(::link(QCoreApplication::applicationFilePath().toUtf8(), program.c_str()), 0);
    std::vector<std::string> command { program };
    if (::geteuid() == 0) // who else reads whatever the mode forbids
        command = { "/usr/bin/env", "setpriv", "--bounding-set", "-dac_override,-dac_read_search",
            program };
    const auto *const info = testing::UnitTest::GetInstance()->current_test_info();
    command.push_back(
        std::string("--gtest_filter=") + info->test_suite_name() + '.' + info->name());
    qputenv("PARLOQUIN_TEST_FOLDER", "1");
    Process other(command);
    other.waitForOutput("calls without");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(other.waitForEnd(), stops ? -SIGABRT : 0) << other.output();
    if (stops) {
        EXPECT_LT(std::chrono::steady_clock::now() - start, 1s + Yardstick::slack(1s));
        for (const char *part : { "Encrypt Error: 'Encrypt key null'", "usable ParloquinSecret" })
            EXPECT_NE(other.output().find(part), std::string::npos) << other.output();
    }
    qunsetenv("PARLOQUIN_TEST_FOLDER");
    return false;
}

/// Good keys up to the call, these for it, good ones again where the program goes on.
Cell refused(const KeyFile &row, const Call &call)
{
    const auto act = [&](FaultTest &test) {
        const auto put = [&test](const Place &place) {
            const auto pause = test.yardstick.pause();
            const QByteArray path =
                QFile::encodeName(QCoreApplication::applicationDirPath() + u"/Info.plist"_s);
            ::unlink(path);
            place(path);
        };
        forgetCompiledInKeys();
        put(file(goodKeys()));
        test.goTo(call.name);
        put(row.place);
        Yardstick::say("calls without");
        test.makeAndWait(call.name);
        EXPECT_FALSE(row.stops);
        EXPECT_TRUE(test.waitForScene(call.effects[empty].scene)) << test.scene().constData();
        const std::string said = test.service.process().waitForOutput("Client-Key");
        EXPECT_NE(said.find("refused 403"), std::string::npos) << said;
        test.service.process().takeOutput();
        put(file(goodKeys()));
        test.makeAndWait("init");
    };
    const bool isOpen = call.effects[empty].scene.contains("link");
    return { row.fault, call.name, act, call.effects[empty].outcomes,
        isOpen ? "apps 2 icon link" : "apps 2 icon", call.name == "check",
        [&row] { return isInOwnFolder(row.stops); } };
}

} // namespace

std::vector<Cell> keyCells()
{
    std::vector<Cell> cells;
    for (const KeyFile &row : keyFiles()) {
        for (const Call &call : calls) {
            if (call.name == "init" || (row.meetsEachCall && call.name != "icon"))
                cells.push_back(refused(row, call));
        }
    }
    return cells;
}
