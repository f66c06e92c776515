// The demo's own pages, with a hand on them.
#include "BackEnd.h"
#include "OutcomePage.h"
#include "StartPage.h"
#include "support/Hands.h"
#include "support/RawServer.h"

#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QWidget *partOf(const QWidget &page, const char *name)
{
    return page.findChild<QWidget *>(QLatin1String(name));
}

TEST(DemoStart, LetsOneVerifyOnlyWhileTheSandboxRuns)
{
    RawServer server;
    server.answer("/sandbox/health", RawServer::http(200, R"({"status":"running"})"));
    demo::BackEnd backEnd;
    demo::StartPage page(backEnd);
    const QSignalSpy taps(&page, &demo::StartPage::verifyTapped);
    const QWidget *status = partOf(page, "lblStatus");
    page.show();
    const std::pair<QString, QString> rows[] = {
        { RawServer::refusingHostAndPort(), u"Sandbox is not running, start it with ./demo"_s },
        { server.hostAndPort(), u"Sandbox is running"_s },
    };
    for (int running = 0; running < 2; ++running) {
        const auto &[host, said] = rows[running];
        qputenv("PARLOQUIN_SERVICE_HOST", host.toLatin1());
        EXPECT_TRUE(QTest::qWaitFor([&] { return status->property("text") == said; }))
            << status->property("text").toString().toStdString() << " is not " << qPrintable(said);
        hands::click(partOf(page, "btnVerify"));
        EXPECT_EQ(taps.size(), running) << "taps that count";
    }
}

TEST(DemoOutcome, GivesTheWholeSessionIdAndTwoWaysOn)
{
    demo::OutcomePage page;
    const QSignalSpy done(&page, &demo::OutcomePage::doneTapped);
    const QSignalSpy again(&page, &demo::OutcomePage::againTapped);
    page.resize(390, 844);
    page.QWidget::show();
    const QString id = u"6f9619ff-8b86-d011-b42d-00c04fc964ff"_s;
    page.showVerified(id, 61s);
    QCoreApplication::processEvents(); // the card finds its place
    hands::click(partOf(page, "btnCopy"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), id);
    const auto tap = [&](const char *button) {
        hands::click(partOf(page, button));
        return std::pair(int(done.size()), int(again.size()));
    };
    EXPECT_EQ(tap("btnDone"), std::pair(1, 0));
    EXPECT_EQ(tap("btnAgain"), std::pair(1, 1));
    page.showFailed(ParloquinSignals::UrlSchemeError, 61s);
    EXPECT_EQ(tap("btnDone"), std::pair(1, 2)) << "Try again";
    EXPECT_EQ(tap("btnAgain"), std::pair(2, 2)) << "Not now";
}

} // namespace
