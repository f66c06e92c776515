// Containers that come and go while calls are out.
#include "Parloquin/Controller/ParloquinMainViewController.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Screens/Container.h"
#include "support/ByName.h"
#include "support/Hands.h"

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

class Lifetime : public ContainerTest {
protected:
    void SetUp() override
    {
        ContainerTest::SetUp();
        answer("/v1.0/init", threeApps);
        answer("/v1.0/start", R"({"result":{"reference":"R"}})");
        answer("/v1.0/check", R"({"result":{"sessionId":"S"}})");
    }

    /// A screen that is up and waits for the answer to its last call.
    void presentWaiting(const QByteArray &path)
    {
        if (path == "/v1.0/init") {
            server.pause();
            present();
        } else {
            presentLoaded();
            if (path == "/v1.0/start")
                server.pause();
            tapRow(0);
            if (path == "/v1.0/check") {
                ASSERT_TRUE(settle(2));
                server.pause();
                comeBack();
            }
        }
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return !paths().isEmpty() && paths().constLast() == path && overlayIsUp(); }));
    }

    /// What a host does from a delegate call: to the main thread, unless it is there already.
    void deleteWhenTold()
    {
        delegate->whenTold = [this] {
            QMetaObject::invokeMethod(qApp, [this] { container.reset(); });
        };
    }

    bool waitForDeletion() const
    {
        return QTest::qWaitFor([this] { return container == nullptr; });
    }
};

struct GoneRow {
    const char *name;
    const char *path;
    QByteArray answer;
    int failures = 0;
};

class GoneContainer : public Lifetime, public testing::WithParamInterface<GoneRow> { };

TEST_P(GoneContainer, LeavesOnlyFailuresToTell)
{
    presentWaiting(GetParam().path);
    answer(GetParam().path, GetParam().answer);
    const QPointer<QWidget> veil = find("container");
    container.reset();
    EXPECT_EQ(veil, nullptr);
    server.proceed();

    // A second container's call is answered after the first one's.
    present();
    ASSERT_TRUE(settle(server.requests().size() + 1));
    ASSERT_TRUE(waitForOutcomes(GetParam().failures));
    EXPECT_EQ(delegate->outcomes(), QStringList(GetParam().failures, u"failed 1"_s));
    EXPECT_TRUE(handlerArguments().isEmpty());
}

const GoneRow goneRows[] = {
    { "InitAnswered", "/v1.0/init", threeApps },
    { "InitFailed", "/v1.0/init", "no envelope", 2 },
    { "StartAnswered", "/v1.0/start", R"({"result":{"deeplink":"parlo://x"}})" },
    { "StartFailed", "/v1.0/start", "no envelope", 1 },
    { "CheckAnswered", "/v1.0/check", R"({"result":{"sessionId":"S"}})" },
    { "CheckFailed", "/v1.0/check", "no envelope", 1 },
};
INSTANTIATE_TEST_SUITE_P(Rows, GoneContainer, testing::ValuesIn(goneRows), byName);

TEST_F(Lifetime, DeletesItselfInAnyOutcome)
{
    deleteWhenTold();
    presentWaiting("/v1.0/check");
    server.proceed();
    EXPECT_TRUE(waitForDeletion());

    answer("/v1.0/init", "no envelope");
    present();
    EXPECT_TRUE(waitForDeletion());

    // These fail at once, within the event that made the call.
    answer("/v1.0/init", threeApps);
    auto &isReachable = ApiSessionHelper::shared().isNetworkReachable;
    for (const bool isStarted : { false, true }) {
        isReachable = true;
        const auto before = server.requests().size();
        present();
        ASSERT_TRUE(settle(before + 1));
        if (isStarted) {
            tapRow(0);
            ASSERT_TRUE(settle(before + 2));
        }
        isReachable = false;
        isStarted ? comeBack() : tapRow(0);
        EXPECT_TRUE(waitForDeletion());
        comeBack(); // nobody is left to ask
    }
    present();
    EXPECT_NE(container, nullptr); // show() has returned to a container that is still there
    EXPECT_TRUE(waitForDeletion());
    EXPECT_EQ(delegate->outcomes().join(u','), u"succeeded S,failed 1,failed 1,failed 1,failed 1");
}

TEST_F(Lifetime, FreesScreensAndDelegate)
{
    presentLoaded();
    const QPointer<QWidget> screen = container->findChild<ParloquinMainViewController *>();
    ASSERT_NE(screen, nullptr);
    container.reset();
    EXPECT_EQ(screen, nullptr);

    const std::weak_ptr<RecordingDelegate> watched = delegate;
    delegate.reset();
    EXPECT_FALSE(watched.expired()); // the process keeps the last one
    present(); // with none
    EXPECT_TRUE(watched.expired());
}

TEST_F(Lifetime, ClosesByItsButtonAndOpensAgainAsItWas)
{
    presentLoaded();
    tap(find<BarButtonItem>("btnClose"));
    EXPECT_FALSE(container->isVisible());
    container->show();
    QCoreApplication::processEvents();
    EXPECT_EQ(find<TableView>("tblKits")->visibleCells().size(), 3);
    EXPECT_EQ(container->findChildren<BarButtonItem *>(u"btnClose"_s).size(), 1);
    EXPECT_FALSE(overlayIsUp());
    tap(find<BarButtonItem>("btnClose"));
    EXPECT_FALSE(container->isVisible());
    EXPECT_EQ(delegate->outcomes(), QStringList());
    EXPECT_EQ(paths(), QList<QByteArray>({ "/v1.0/init" }));
}

TEST_F(Lifetime, LoadsWhenFirstShown)
{
    Parloquin kit;
    container.reset(kit.viewControllerForLogin());
    QCoreApplication::processEvents();
    EXPECT_EQ(server.connections(), 0);
    QWidget host;
    container->setParent(&host);
    host.show();
    container->show(); // once more changes nothing
    EXPECT_TRUE(settle(1));
    container.reset();
}

TEST_F(Lifetime, KeepsTwoContainersApart)
{
    server.pause();
    present();
    ASSERT_TRUE(waitForOverlay(true));
    const auto first = std::move(container);
    present();
    ASSERT_TRUE(waitForOverlay(true));
    EXPECT_EQ(first->findChild<QWidget *>(u"container"_s), nullptr); // moved
    server.proceed();
    const auto rows = [](const auto &of) {
        return of->template findChild<TableView *>()->visibleCells().size();
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows(first) == 3 && rows(container) == 3; }));
    ASSERT_TRUE(waitForOverlay(false));

    // The overlay was last on the second: it goes with it, and the first gets a new one.
    const QPointer<QWidget> veil = find("container");
    ASSERT_NE(veil, nullptr);
    container.reset();
    EXPECT_EQ(veil, nullptr);
    const auto *cell = first->findChild<TableView *>()->cellForRow({ 0, 0 });
    hands::click(cell);
    EXPECT_TRUE(QTest::qWaitFor([&] { return paths().constLast() == "/v1.0/start"; }));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto *again = first->findChild<QWidget *>(u"container"_s);
        return again && !again->isVisible();
    }));
}

} // namespace
