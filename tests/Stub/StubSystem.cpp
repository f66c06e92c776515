#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Parloquin/Parloquin.h"
#include "Parloquin/Platform/Device.h"
#include "Parloquin/Toolkit/TableView.h"
#include "support/RawServer.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <memory>

TEST(StubSystem, CarriesTheWholeKit)
{
    RawServer server;
    server.answer("/v1.0/init",
        RawServer::http(200, R"({"meta":{"httpStatusCode":200},"result":{"list":[{"app":"a"}]}})"));
    qputenv("PARLOQUIN_SERVICE_HOST", server.hostAndPort().toUtf8());
    const ParloquinOptions options(ParloquinEnvironment::debug, false,
        { QColor(Qt::blue), ParloquinStatusBarStyle::lightContent });
    const std::unique_ptr<ParloquinViewController> container(
        Parloquin(options).viewControllerForLogin());
    container->show();

    const auto rows = [&container] {
        const auto *table = container->findChild<parloquin::TableView *>();
        return table ? table->visibleCells().size() : 0;
    };
    ASSERT_TRUE(QTest::qWaitFor([&rows] { return rows() == 1; }));
    const std::vector<RawRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].header("X-TRZ-Client-Key"), "stub");
    EXPECT_EQ(requests[0].header("X-TRZ-Client-Device-Id"),
        parloquin::Device::identifierForVendor().toUtf8());
    EXPECT_EQ(parloquin::serviceTimeout().count(), 60000) << "ms, which a slow network needs";
}
