// Containers that come and go. What they leave behind while calls are out: tests/Faults.
#include "Parloquin/Controller/ParloquinMainViewController.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Screens/Container.h"
#include "support/Widgets.h"

namespace {

class Lifetime : public ContainerTest {
protected:
    void SetUp() override
    {
        ContainerTest::SetUp();
        answerBothRoads();
    }
};

// Such a call fails at once, within the event that made it; that of the first screen after show().
TEST_F(Lifetime, DeletesItselfOverAMissingNetwork)
{
    bool mayGo = true;
    delegate->whenTold = [&] {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        EXPECT_TRUE(mayGo) << "told within show()";
        if (mayGo)
            container.reset();
    };
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
        EXPECT_SOON(!container);
        comeBack(); // nobody is left to ask
    }
    const int connections = server.connections();
    mayGo = false;
    present();
    mayGo = true;
    EXPECT_SOON(!container);
    EXPECT_EQ(server.connections(), connections);
    EXPECT_EQ(delegate->outcomes().join(u','), u"failed 1,failed 1,failed 1");
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
    tap("btnClose");
    EXPECT_FALSE(container->isVisible());
    container->show();
    QCoreApplication::processEvents();
    EXPECT_EQ(find<TableView>("tblKits")->visibleCells().size(), 3);
    EXPECT_EQ(container->findChildren<BarButtonItem *>(u"btnClose"_s).size(), 1);
    EXPECT_FALSE(overlayIsUp());
    tap("btnClose");
    EXPECT_FALSE(container->isVisible());
    EXPECT_EQ(delegate->outcomes(), QStringList());
    EXPECT_EQ(paths(), QList<QByteArray>({ "/v1.0/init" }));
}

TEST_F(Lifetime, LoadsWhenFirstShown)
{
    container.reset(Parloquin().viewControllerForLogin());
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
    EXPECT_SOON(rows(first) == 3 && rows(container) == 3);
    ASSERT_TRUE(waitForOverlay(false));

    // The overlay was last on the second: it goes with it, and the first gets a new one.
    const QPointer<QWidget> veil = find("container");
    ASSERT_NE(veil, nullptr);
    container.reset();
    EXPECT_EQ(veil, nullptr);
    tap(first->findChild<TableView *>()->cellForRow({ 0, 0 }));
    EXPECT_SOON(paths().constLast() == "/v1.0/start");
    EXPECT_SOON(first->findChild<QWidget *>(u"container"_s)
        && !first->findChild<QWidget *>(u"container"_s)->isVisible());
}

} // namespace
