#include "Parloquin/Controller/CountryListViewController.h"
#include "Parloquin/Controller/OtpCheckViewController.h"
#include "Parloquin/Controller/OtpMainViewController.h"
#include "Parloquin/Networking/Model/Request/StartRequestModel.h"
#include "Parloquin/Networking/Model/Response/StartResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Sms/SmsRoad.h"
#include "support/DeveloperWords.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include <atomic>
#include <memory>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

class Road : public SmsRoad { };

TEST_F(Road, LeadsFromTheNumberToTheSession)
{
    const DeveloperWords developer;
    on("check-otp", ok(R"({"sessionId":"s-9"})"));
    openPicker();
    choose(u"Norway"_s);
    enterNumber(u"41234567"_s);
    tap("btnContinue");
    ASSERT_TRUE(arrivesAt<OtpCheckViewController>());
    // The keyboard opens on the first box by itself; the rest is typing.
    ASSERT_TRUE(QTest::qWaitFor([this] { return part("txtCode0")->hasFocus(); }));
    hands::keys(u"471"_s);
    tap("btnCheck");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !outcomes->all().isEmpty(); }));
    EXPECT_EQ(outcomes->all(), QStringList { u"success:s-9"_s });
    EXPECT_EQ(bodies("send-otp"),
        (QList { QJsonObject {
            { u"phoneNumber"_s, u"+4741234567"_s }, { u"countryCode"_s, u"NO"_s } } }));
    EXPECT_EQ(bodies("check-otp").at(0)[u"code"], u"471"_s);
    EXPECT_EQ(developer.heard(), QStringList()) << "nothing was kept from the person";
}

struct Closing {
    const char *name;
    const char *call; // still out when the container goes
    QByteArray answer; // that comes then
    const char *told; // to the host
};

class ClosedWhile : public SmsRoad, public testing::WithParamInterface<Closing> { };

TEST_P(ClosedWhile, AnAnswerIsOutHarmsNothing)
{
    const std::string call = GetParam().call;
    if (call == "check-otp") {
        goToCodeEntry();
        server.pause();
        type(u"1"_s);
        tap("btnCheck");
    } else {
        if (call == "country")
            server.pause();
        openPicker();
    }
    if (call == "send-otp") {
        choose(u"Norway"_s);
        enterNumber(u"1"_s);
        server.pause();
        tap("btnContinue");
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return !bodies(call).isEmpty(); }));
    container.reset();
    release(call, GetParam().answer);

    // A later call goes all the way: the one before it has been dealt with.
    const auto later = std::make_shared<std::atomic<bool>>(false);
    ApiRequest::start({}, [later](const auto &) { *later = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return later->load(); }));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return outcomes->all().join(u",") == QLatin1String(GetParam().told);
    })) << outcomes->all().join(u",").toStdString();
}

const Closing closings[] = {
    { "Countries", "country", ok("{}"), "" },
    { "CountriesDropped", "country", dropped, "" },
    { "Send", "send-otp", ok(R"({"reference":"r"})"), "" },
    { "SendDropped", "send-otp", dropped, "" },
    { "Check", "check-otp", ok(R"({"sessionId":"s"})"), "" },
    // A call that failed is told even so.
    { "CheckDropped", "check-otp", dropped, "serverError" },
};

INSTANTIATE_TEST_SUITE_P(Calls, ClosedWhile, testing::ValuesIn(closings), named);

} // namespace
