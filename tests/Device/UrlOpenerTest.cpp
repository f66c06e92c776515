#include "Parloquin/Platform/UrlOpener.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

/// A desktop of its own, with handlers that write their arguments down.
class UrlOpening : public testing::Test {
protected:
    // Once for the process: the desktop's library keeps the folders it has seen first.
    static void SetUpTestSuite()
    {
        const QString folder = desktop().path();
        for (const char *name :
            { "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS" })
            qputenv(name, QFile::encodeName(folder));
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // starts no bus of its own
        ASSERT_TRUE(QDir(folder).mkpath(QStringLiteral("applications")));

        const QString recorder = folder + QStringLiteral("/recorder");
        write(recorder,
            "#!/bin/sh\nprintf '%s\\0' \"$@\" >\"" + QFile::encodeName(folder) + "/new\" && mv \""
                + QFile::encodeName(folder) + "/new\" \"" + QFile::encodeName(folder)
                + "/arguments\"\n");
        QFile::setPermissions(recorder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QByteArray defaults = "[Default Applications]\n";
        const auto add = [&](const QByteArray &scheme, const QByteArray &command) {
            write(folder
                    + QStringLiteral("/applications/%1.desktop").arg(QString::fromLatin1(scheme)),
                "[Desktop Entry]\nType=Application\nName=" + scheme + "\nExec=" + command
                    + "\nMimeType=x-scheme-handler/" + scheme + ";\n");
            defaults += "x-scheme-handler/" + scheme + '=' + scheme + ".desktop\n";
        };
        const QByteArray command = QFile::encodeName(recorder);
        add("parlo", command + " --link %u end");
        add("several", command + " %U");
        add("gone", "/nonexistent/messenger %u");
        add("deaf", command);
        add("file", command + " %u");
        write(folder + QStringLiteral("/mimeapps.list"), defaults);
    }

    static QTemporaryDir &desktop()
    {
        static QTemporaryDir folder;
        return folder;
    }

    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }

    /// What the handler was started with.
    static QList<QByteArray> arguments()
    {
        QFile in(desktop().filePath(QStringLiteral("arguments")));
        if (!QTest::qWaitFor([&] { return in.exists(); }, 10000) || !in.open(QIODevice::ReadOnly))
            return {};
        auto list = in.readAll().split('\0');
        list.removeLast();
        return list;
    }
};

struct LinkRow {
    const char *name;
    QByteArray link;
};

class UrlOpeningLinks : public UrlOpening, public testing::WithParamInterface<LinkRow> { };

TEST_P(UrlOpeningLinks, ArriveAsOneArgument)
{
    const QUrl link = UrlOpener::parse(QString::fromUtf8(GetParam().link));
    ASSERT_TRUE(UrlOpener::canOpen(link));
    QFile::remove(desktop().filePath(QStringLiteral("arguments")));
    UrlOpener::open(link);
    const bool isPlain = GetParam().link.startsWith("several");
    const QList<QByteArray> expected = isPlain
        ? QList<QByteArray> { GetParam().link }
        : QList<QByteArray> { "--link", GetParam().link, "end" };
    EXPECT_EQ(arguments(), expected);
    EXPECT_FALSE(QFile::exists(desktop().filePath(QStringLiteral("hacked"))));
}

const LinkRow linkRows[] = {
    { "Plain", "parlo://send?app=parlo&to=Verification%20service&text=a%2Fb%26c" },
    { "SchemeOnly", "parlo:" },
    { "List", "several://x?a=b%20c" },
    { "SingleQuotes", "parlo://send?text='a'%20'b'" },
    { "DoubleQuotes", "parlo://send?text=%22a%22" },
    { "Command", "parlo://send?text=$(touch$IFS()hacked);touch%20hacked" },
    { "FieldCodes", "parlo://send?text=%25u%25f%25i" },
    { "LineFeed", "parlo://send?text=a%0Ab%0D" },
    { "LeadingDash", "parlo:--version" },
    { "Unicode", "parlo://send?text=%C3%A9%E2%82%AC" },
    { "Long", "parlo://send?text=" + QByteArray(64 * 1024, 'x') },
};
INSTANTIATE_TEST_SUITE_P(Links, UrlOpeningLinks, testing::ValuesIn(linkRows),
    [](const auto &row) { return row.param.name; });

struct RefusedRow {
    const char *name;
    const char *link;
};

class UrlOpeningRefused : public UrlOpening, public testing::WithParamInterface<RefusedRow> { };

TEST_P(UrlOpeningRefused, AreNotOpenedButLogged)
{
    const QUrl link = UrlOpener::parse(QString::fromUtf8(GetParam().link));
    EXPECT_FALSE(UrlOpener::canOpen(link));
    testing::internal::CaptureStdout();
    UrlOpener::open(link);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("\xE2\x9A\xA0"), std::string::npos);
    EXPECT_FALSE(QFile::exists(desktop().filePath(QStringLiteral("arguments"))));
}

const RefusedRow refusedRows[] = {
    { "Empty", "" },
    { "NoScheme", "parlo" },
    { "Blank", "parlo://a b" },
    { "LineFeed", "parlo://a\nb" },
    { "DashFirst", "-parlo://x" },
    { "NoHandler", "unknown://x" },
    { "HandlerWithoutProgram", "gone://x" },
    { "HandlerThatTakesNoLink", "deaf://x" },
    { "File", "file:///etc/passwd" },
    { "FileInCapitals", "FILE:///etc/passwd" },
};
INSTANTIATE_TEST_SUITE_P(Links, UrlOpeningRefused, testing::ValuesIn(refusedRows),
    [](const auto &row) { return row.param.name; });

} // namespace
