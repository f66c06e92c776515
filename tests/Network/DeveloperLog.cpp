// What the kit tells the host's developer, and when; never a key, number, code or session id.
#include "Network/Awaited.h"
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "support/DeveloperWords.h"
#include "support/RawServer.h"
#include "support/ServiceEndpoint.h"

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

template <class Answer> void outcomeOf(void (*call)(Completion<Answer>))
{
    AwaitedResult<Answer> outcome;
    call(outcome.handler());
    (void)outcome.wait();
}
template <class Model, class Answer>
void outcomeOf(void (*call)(const Model &, Completion<Answer>), const Model &says)
{
    AwaitedResult<Answer> outcome;
    call(says, outcome.handler());
    (void)outcome.wait();
}

/// Each with all that is nobody's business.
void makeEveryCall()
{
    const QString secret = QStringLiteral("5550123487");
    outcomeOf(ApiRequest::initializer);
    outcomeOf(ApiRequest::start, { .countryCode = secret, .app = secret, .installedApps = secret });
    outcomeOf(ApiRequest::check, { .reference = secret });
    outcomeOf(ApiRequest::sendOTP, { .phoneNumber = secret, .countryCode = secret });
    outcomeOf(ApiRequest::checkOTP,
        { .phoneNumber = secret, .countryCode = secret, .code = secret, .reference = secret });
    outcomeOf(ApiRequest::country);
}

/// The same of every call.
QStringList ofEveryCall(const char *words)
{
    QStringList lines;
    for (const char *call : { "init", "start", "check", "send-otp", "check-otp", "country" })
        lines += QString::fromLatin1(call) + QString::fromLatin1(words);
    return lines;
}

TEST(DeveloperLog, TellsWhatThePersonIsNotTold)
{
    RawServer server;
    setServiceHost(server.hostAndPort());
    for (const char *call : { "init", "start", "check", "send-otp", "check-otp", "country" }) {
        server.answer(QByteArray("/v1.0/") + call,
            RawServer::http(200,
                R"({"meta":{"httpStatusCode":403,"errorCode":"403003","errorMessage":"for 5550123487"},
                    "result":{"sessionId":"S-5550123487"}})"));
    }
    const struct {
        std::function<void()> act;
        QStringList words;
    } rows[] = {
        { makeEveryCall, ofEveryCall(": refused by the service, status 403, code 403003") },
        { [] {
             auto &isReachable = ApiSessionHelper::shared().isNetworkReachable;
             const bool was = isReachable.exchange(false);
             makeEveryCall();
             isReachable = was;
         },
            ofEveryCall(": not sent, as the device has no default route") },
        { [] {
             EXPECT_FALSE(URLSchemeManager().checkIfAppIsInstalled(QStringLiteral("nobodys://")));
         },
            { QStringLiteral(
                "nobodys://: no handler for its links, so its app counts as not installed") } },
    };
    for (const auto &row : rows) {
        const DeveloperWords on;
        row.act();
        EXPECT_EQ(on.heard(), row.words);
    }
    const DeveloperWords off { QString() };
    for (const auto &row : rows)
        row.act();
    EXPECT_EQ(off.heard(), QStringList()) << "not turned on";
}

} // namespace
