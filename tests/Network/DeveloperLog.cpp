// What the kit tells the host's developer, and when; never a key, number, code or session id.
#include "Network/Network.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "support/DeveloperWords.h"

namespace {

/// Each with all that is nobody's business.
void makeEveryCall()
{
    const QString secret = u"5550123487"_s;
    std::atomic<int> outcomes = 0;
    const auto heard = [&outcomes](const auto &) { ++outcomes; };
    ApiRequest::initializer(heard);
    ApiRequest::start({ .countryCode = secret, .app = secret, .installedApps = secret }, heard);
    ApiRequest::check({ .reference = secret }, heard);
    ApiRequest::sendOTP({ .phoneNumber = secret, .countryCode = secret }, heard);
    ApiRequest::checkOTP(
        { .phoneNumber = secret, .countryCode = secret, .code = secret, .reference = secret },
        heard);
    ApiRequest::country(heard);
    ASSERT_TRUE(QTest::qWaitFor([&outcomes] { return outcomes == 6; }, 20'000));
}

const QStringList calls = u"check-otp check country init send-otp start"_s.split(u' '); // sorted

/// The same of every call.
QStringList ofEveryCall(const QString &words)
{
    return QStringList(calls).replaceInStrings(QRegularExpression(u"$"_s), words);
}

TEST(DeveloperLog, HasItsLineBeforeTheAppCrashes)
{
    EXPECT_DEATH((::dup2(STDERR_FILENO, STDOUT_FILENO), print(u"said"_s), std::abort()), "said");
}

TEST(DeveloperLog, TellsWhatThePersonIsNotTold)
{
    RawServer server;
    setServiceHost(server.hostAndPort());
    for (const QString &call : calls)
        server.answer("/v1.0/" + call.toLatin1(),
            RawServer::http(200,
                R"({"meta":{"httpStatusCode":403,"errorCode":"403003","errorMessage":"for 5550123487"},
                    "result":{"sessionId":"S-5550123487"}})"));
    const std::pair<std::function<void()>, QStringList> rows[] = {
        { makeEveryCall, ofEveryCall(u": refused by the service, status 403, code 403003"_s) },
        { [] {
             auto &isReachable = ApiSessionHelper::shared().isNetworkReachable;
             isReachable = false;
             makeEveryCall();
             isReachable = true;
         },
            ofEveryCall(u": not sent, as the device has no default route"_s) },
        { [] { EXPECT_FALSE(URLSchemeManager().checkIfAppIsInstalled(u"nobodys://"_s)); },
            { u"nobodys://: no handler for its links, so its app counts as not installed"_s } },
    };
    for (const auto &row : rows) {
        const DeveloperWords on;
        row.first();
        QStringList heard = on.heard();
        heard.sort(); // they were under way at once
        EXPECT_EQ(heard, row.second);
    }
    const DeveloperWords off { QString() };
    for (const auto &row : rows)
        row.first();
    EXPECT_EQ(off.heard(), QStringList()) << "not turned on";
}

} // namespace
