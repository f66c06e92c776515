// What the kit tells the host's developer, and when.
#include "Network/Awaited.h"
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "support/RawServer.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QMutex>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace parloquin;

namespace {

const QtMessageHandler usual = qInstallMessageHandler(nullptr);
QMutex heardMutex;
QStringList heard; // under the mutex

void hear(QtMsgType, const QMessageLogContext &context, const QString &words)
{
    const QMutexLocker lock(&heardMutex);
    if (qstrcmp(context.category, "parloquin") == 0)
        heard.append(words);
}

QStringList heardOf(const QString &rules, const std::function<void()> &act)
{
    QLoggingCategory::setFilterRules(rules);
    qInstallMessageHandler(hear);
    act();
    qInstallMessageHandler(usual);
    QLoggingCategory::setFilterRules({});
    const QMutexLocker lock(&heardMutex);
    return std::exchange(heard, {});
}

void callInit()
{
    AwaitedResult<InitResponseModel> call;
    ApiRequest::initializer(call.handler());
    call.wait();
}

TEST(DeveloperLog, TellsWhatThePersonIsNotTold)
{
    RawServer server;
    setServiceHost(server.hostAndPort());
    server.answer("/v1.0/init",
        RawServer::http(200,
            R"({"meta":{"httpStatusCode":403,"errorCode":"403003","errorMessage":"for eyes 53"}})"));
    const struct {
        std::function<void()> act;
        const char *words;
    } rows[] = {
        { callInit, "init: refused by the service, status 403, code 403003" },
        { [] {
             auto &isReachable = ApiSessionHelper::shared().isNetworkReachable;
             const bool was = isReachable.exchange(false);
             callInit();
             isReachable = was;
         },
            "init: not sent, as the device has no default route" },
        { [] {
             EXPECT_FALSE(URLSchemeManager().checkIfAppIsInstalled(QStringLiteral("nobodys://")));
         },
            "nobodys://: no handler for its links, so its app counts as not installed" },
    };
    for (const auto &row : rows) {
        EXPECT_EQ(heardOf(QStringLiteral("parloquin=true"), row.act),
            QStringList(QString::fromUtf8(row.words)));
        EXPECT_EQ(heardOf({}, row.act), QStringList()) << "not turned on: " << row.words;
    }
}

} // namespace
