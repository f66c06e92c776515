#include "Sms/SmsRoad.h"

#include "Parloquin/Controller/Base/ParloquinNavigationController.h"
#include "Parloquin/Controller/OtpMainViewController.h"

QByteArray ok(const QByteArray &result)
{
    return RawServer::http(200, R"({"meta":{"httpStatusCode":200},"result":)" + result + "}");
}

void SmsRoad::SetUp()
{
    ContainerTest::SetUp();
    QApplication::setStyle(new ParloquinTest::PacedStyle(0));
    on("country", ok(R"({"list":[{"title":"Norway","countryCode":"NO","phoneCode":"+47"},
        {"title":"Nauru","countryCode":"NR","phoneCode":"+674"},
        {"title":"Chad","countryCode":"TD","phoneCode":"+235"},
        {"title":"Nowhere","countryCode":"XN"}]})"));
    on("send-otp", ok(R"({"reference":"ref-1"})"));

    container = std::make_unique<ParloquinNavigationController>(new Screen);
    container->setKitDelegate(delegate);
    container->setContentsMargins(0, 44, 0, 0);
    container->resize(390, 844);
    container->show();
    container->findChild<NavigationController *>()->pushViewController(
        new OtpMainViewController, false);
    EXPECT_TRUE(comesToFront(*container));
}

Screen *SmsRoad::page() const
{
    return container->findChild<NavigationController *>()->topViewController();
}

void SmsRoad::on(const std::string &call, const QByteArray &answer)
{
    server.answer(("/v1.0/" + call).c_str(), answer);
}

QList<QJsonObject> SmsRoad::bodies(const std::string &call) const
{
    QList<QJsonObject> all;
    for (const RawRequest &request : server.requests()) {
        if (request.path() == QByteArray(("/v1.0/" + call).c_str()))
            all.append(request.parameters());
    }
    return all;
}

void SmsRoad::goBack()
{
    tap("btnBack");
    ASSERT_TRUE(seen("btnContinue"));
}

QString SmsRoad::boxes() const
{
    QStringList texts;
    for (const auto *box : part("stackTextFields")->findChildren<QLineEdit *>())
        texts.append(box->hasFocus() ? u"["_s + box->text() + u"]"_s : box->text());
    return texts.join(u'|');
}
