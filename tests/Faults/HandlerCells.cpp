// What a link and the app that it names may do.
#include "Faults/FaultTest.h"

#include <QtCore/QCoreApplication>

namespace {

struct Link {
    const char *fault;
    QByteArray link;
    bool isOpened = true;
    bool inSample = false;
};
const Link links[] = {
    { "scheme only", "parlo:" },
    { "list of links", "several://x?a=b%20c" },
    { "single quotes", "parlo://send?text='a'%20'b'", true, true },
    { "double quotes", "parlo://send?text=%22a%22" },
    { "command", "parlo://send?text=$(touch$IFS()hacked);touch%20hacked", true, true },
    { "field codes", "parlo://send?text=%25u%25f%25i" },
    { "line feed", "parlo://send?text=a%0Ab%0D" },
    { "leading dash", "options:--version" },
    { "other script", "parlo://send?text=%C3%A9%E2%82%AC" },
    { "64 KiB", "parlo://send?text=" + QByteArray(64 * 1024, 'x'), true, true },
    { "empty link", "", false },
    { "no scheme", "parlo", false },
    { "blank", "parlo://a b", false },
    { "blank in the path", "parlo://a/b c", false, true },
    { "bare line feed", "parlo://a\nb", false, true },
    { "dash first", "-parlo://x", false },
    { "no handler", "unknown://x", false },
    { "missing binary", "gone://x", false, true },
    { "exit 1", "exits://x", false },
    { "handler without links", "deaf://x", false, true },
    { "file", "file:///etc/passwd", false, true },
    { "file in capitals", "FILE:///etc/passwd", false },
};

Cell opened(const Link &row)
{
    const auto act = [row](FaultTest &test) {
        const auto text = json(row.link.toStdString()).dump();
        // A second, usual start is opened behind the first.
        (void)FaultTest::takeHandlerStarts();
        test.setOutcome("start", { { { "fault", "json:result.deeplink=" + text } }, "success" });
        QCoreApplication::processEvents(); // the heartbeat: that was the test's own time
        test.goTo("start");
        test.makeAndWait("start");
        if (row.isOpened) {
            (void)FaultTest::waitForLink();
            QStringList arguments(QString::fromUtf8(row.link));
            if (row.link.startsWith("options"))
                arguments = QStringList(u"--link"_s) + arguments + QStringList(u"end"_s);
            EXPECT_EQ(FaultTest::handlerArguments(), arguments);
            FaultTest::forgetHandlerArguments();
        }
        test.makeAndWait("start");
        EXPECT_TRUE(FaultTest::waitForLink());
        EXPECT_EQ(FaultTest::takeHandlerStarts(), row.isOpened ? 2 : 1);
    };
    return { row.fault, "start", act, {}, {}, row.inSample };
}

/// An app of the list whose handler is like this: its row does nothing.
Cell ignored(const char *fault, const char *package)
{
    const auto act = [package](FaultTest &test) {
        const std::string path = "json:result.list[0].appPackage=";
        test.setOutcome("init", { { "fault", path + json(package).dump() } });
        test.goTo("start");
        const auto before = Yardstick::requests();
        test.tapRow(0);
        test.makeAndWait("init"); // behind what the tap did
        EXPECT_EQ(Yardstick::requests() - before, 1);
    };
    return { fault, "app", act, {}, {} };
}

} // namespace

std::vector<Cell> handlerCells()
{
    std::vector<Cell> cells {
        ignored("no handler", "unknown://"),
        ignored("missing binary", "gone://"),
        ignored("no URL", "not a url"),
        ignored("file", "file://"),
    };
    for (const Link &row : links)
        cells.push_back(opened(row));
    return cells;
}
