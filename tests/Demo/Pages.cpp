// The demo's own pages, with a hand on them.
#include "BackEnd.h"
#include "DemoWindow.h"
#include "Look.h"
#include "OutcomePage.h"
#include "Readers/Heard.h"
#include "Recorder.h"
#include "support/Hands.h"
#include "support/RawServer.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QWidget *partOf(const QWidget &page, const char *name)
{
    return page.findChild<QWidget *>(QLatin1String(name));
}

TEST(DemoWindow, GivesTheKitAllItsRoomAndTellsOfTheLatestTryAlone)
{
    RawServer server;
    server.answer("/sandbox/health", RawServer::http(200, R"({"status":"running"})"));
    qputenv("PARLOQUIN_SERVICE_HOST", server.hostAndPort().toLatin1());
    demo::DemoWindow window;
    window.show();
    QWidget *const verify = partOf(window, "btnVerify");
    EXPECT_TRUE(QTest::qWaitFor([&] { return verify->isEnabled(); }));
    const QDeadlineTimer twoSeconds(2000);
    hands::click(verify);
    hands::click(verify); // by a hasty finger
    EXPECT_EQ(window.findChildren<ParloquinViewController *>().size(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !verify->isVisible() && window.isAtRest(); }));
    EXPECT_LT(server.requests().size(), 10U) << "the page asks the service once a second";
    window.resize(window.size() - QSize(40, 80));
    const auto *const kit = window.findChild<ParloquinViewController *>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return kit->geometry() == window.rect(); }));
    hands::click(partOf(window, "btnClose"));
    const auto isBack = [&] { return !window.findChild<ParloquinViewController *>(); };
    EXPECT_TRUE(QTest::qWaitFor(isBack));

    QElapsedTimer latest;
    qint64 took = 0; // s
    server.pause(); // what the back end says of the first try comes after the second
    for (const bool isFirst : { true, false }) {
        latest.start();
        window.verify();
        auto *const heard = window.findChild<ParloquinSignals *>();
        isFirst ? Q_EMIT heard->succeeded(u"s-1"_s)
                : Q_EMIT heard->failed(ParloquinSignals::ServerError);
        took = latest.elapsed() / 1000;
        EXPECT_TRUE(QTest::qWaitFor([&] { return isBack() && twoSeconds.hasExpired(); }));
    }
    server.proceed();
    bool isOver = false;
    window.backEnd().confirm(u"s-2"_s, [&](const QString &) { isOver = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isOver; }));
    EXPECT_EQ(partOf(window, "lblOutcome")->property("text").toString(), u"No answer"_s);
    for (const QWidget *part : window.findChildren<QWidget *>()) {
        const QString text = part->property("text").toString();
        EXPECT_TRUE(!text.contains(u" second"_s) || text.section(u' ', 0, 0).toInt() <= took + 1)
            << text.toStdString() << ", counted from an earlier try";
    }
}

TEST(DemoOutcome, GivesTheWholeSessionIdAndTwoWaysOn)
{
    demo::OutcomePage page;
    const QSignalSpy done(&page, &demo::OutcomePage::doneTapped);
    const QSignalSpy again(&page, &demo::OutcomePage::againTapped);
    page.resize(320, 480);
    page.QWidget::show();
    page.showVerified(u"6f9619ff-8b86-d011-b42d-00c04fc964ff"_s, 61s);
    const auto *const bar = page.findChild<QScrollArea *>()->verticalScrollBar();
    EXPECT_TRUE(QTest::qWaitFor([=] { return bar->maximum() > 0; })) << "more than the page shows";
    hands::Finger finger;
    finger.down(partOf(page, "lblOutcomeWords"), {});
    finger.drag({ 0, -200 });
    finger.up();
    EXPECT_TRUE(QTest::qWaitFor([=] { return bar->value() == bar->maximum(); }));
    auto *const filled = page.findChild<QAbstractButton *>(u"btnDone"_s);
    const auto colour = [=] { return filled->grab().toImage().pixelColor(20, 20).name(); };
    QString released;
    QObject::connect(filled, &QAbstractButton::released, [=, at = &released] { *at = colour(); });
    const auto tap = [&](const char *button) {
        const QString title = partOf(page, button)->property("text").toString();
        hands::click(partOf(page, button));
        return std::tuple(title, int(done.size()), int(again.size()));
    };
    EXPECT_EQ(tap("btnDone"), std::tuple(u"Done"_s, 1, 0));
    EXPECT_EQ(released, demo::Look::pressedBlue.name()) << "it fades";
    EXPECT_TRUE(QTest::qWaitFor([&] { return colour() == demo::Look::blue.name(); }));
    EXPECT_EQ(tap("btnAgain"), std::tuple(u"Verify again"_s, 1, 1));
    page.showFailed(ParloquinSignals::UrlSchemeError, 61s);
    EXPECT_EQ(tap("btnDone"), std::tuple(u"Try again"_s, 1, 2));
    EXPECT_EQ(tap("btnAgain"), std::tuple(u"Not now"_s, 2, 2));
}

TEST(DemoCopy, TicksAWhileAndTellsAReaderOfItAndOfItsEnd)
{
    demo::OutcomePage page;
    page.resize(390, 844);
    const QString id = u"s-1"_s;
    page.showVerified(id, 61s);
    ASSERT_TRUE(comesToFront(page));
    const QWidget *const shown = partOf(page, "lblSessionId");
    const int room = shown->width();
    std::optional<Heard> reader;
    if (qEnvironmentVariableIsSet("READERS_DESKTOP"))
        reader.emplace();
    QElapsedTimer stands; // the tick
    for (int tap = 0; tap < 2; ++tap) {
        hands::click(partOf(page, "btnCopy"));
        stands.start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return stands.hasExpired(400); }));
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), id);
    EXPECT_EQ(std::pair(shown->width(), shown->property("text").toString()), std::pair(room, id));
    EXPECT_FALSE(Heard::events.contains(u"name Copy"_s)) << "before it is another";
    Heard::events.clear();
    const auto said = [button = partOf(page, "btnCopy")] { return button->accessibleName(); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return said() == u"Copy"_s; }));
    EXPECT_TRUE(stands.hasExpired(1750)) << "it ends with the first tap's"; // timers are coarse
    EXPECT_FALSE(Heard::events.contains(u"name Copied"_s)) << "once more";
    EXPECT_EQ(Heard::events.contains(u"name Copy"_s), reader.has_value());
}

TEST(DemoRecorder, KeepsEachFrameByHowLongItStood)
{
    const QTemporaryDir folder;
    const auto kept = [&] { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); };
    QWidget window;
    window.show();
    QElapsedTimer all;
    all.start();
    {
        const demo::Recorder recorder(window, folder.path());
        EXPECT_FALSE(QTest::qWaitFor([&] { return !kept().isEmpty(); }, 600)) << "it stands still";
        EXPECT_TRUE(QTest::qWaitFor([&, tint = 0]() mutable {
            if (kept().size() < 4)
                window.setPalette(QColor(++tint % 256, 0, 0));
            return kept().size() == 4;
        }));
        EXPECT_FALSE(QTest::qWaitFor([&] { return kept().size() > 4; }, 400)) << "again";
    }
    ASSERT_EQ(kept().size(), 5) << qPrintable(kept().join(u' '));
    const auto frame = [&](int at) { return QImage(folder.filePath(kept().at(at))); };
    EXPECT_NE(frame(0), frame(1)) << "each is named by its own time";
    const auto stood = [&](int at) { return kept().at(at).mid(6).chopped(4).toInt(); };
    EXPECT_TRUE(kept().at(0).startsWith(u"00001-"_s) && stood(0) >= 250 && stood(1) >= 80);
    EXPECT_TRUE(kept().at(4).startsWith(u"00005-"_s) && stood(4) >= 300);
    EXPECT_LE(stood(0) + stood(1) + stood(2) + stood(3) + stood(4), all.elapsed());
    EXPECT_EQ(frame(1).width(), 260);
}

} // namespace
