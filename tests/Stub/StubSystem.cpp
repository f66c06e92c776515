#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Parloquin/Parloquin.h"
#include "Parloquin/Platform/Crypto.h"
#include "Parloquin/Platform/Device.h"
#include "Parloquin/Toolkit/TableView.h"
#include "support/RawServer.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <memory>

// As built for a real service it hears nothing of the environment but the proxy.
TEST(StubSystem, CarriesTheWholeKitToWhereItWasBuiltToGo)
{
    const QByteArray built = PARLOQUIN_SERVICE_HOST;
    const bool isReal = !built.startsWith("127.");
    RawServer server;
    RawServer elsewhere;
    server.answer(isReal ? "http://" + built + "/v1.0/init" : "/v1.0/init",
        RawServer::http(200, R"({"meta":{"httpStatusCode":200},"result":{"list":[{"app":"a"}]}})"));
    qputenv("http_proxy", server.url({}).toUtf8());
    qputenv("PARLOQUIN_SERVICE_HOST", (isReal ? elsewhere : server).hostAndPort().toUtf8());
    qputenv("PARLOQUIN_ROUTE", isReal ? "none" : "default");
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
    EXPECT_EQ(elsewhere.connections(), 0);
    const std::vector<RawRequest> requests = server.requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].header("X-TRZ-Client-Key"), "stub");
    EXPECT_EQ(requests[0].header("X-TRZ-Client-Device-Id"),
        parloquin::Device::identifierForVendor().toUtf8());
    const auto data = QJsonDocument::fromJson(requests[0].body)[u"data"].toString().toLatin1();
    using namespace parloquin::Crypto;
    EXPECT_TRUE(aesDecrypt(*fromBase64(data), QByteArray(32, 0))) << "with the stub's secret";
    EXPECT_EQ(parloquin::serviceTimeout().count(), 60000) << "ms, which a slow network needs";
}
