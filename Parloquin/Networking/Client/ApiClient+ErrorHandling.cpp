#include "Parloquin/Networking/Client/ApiClient.h"

#include "Parloquin/Extension/Fatal.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace parloquin {

namespace {

std::vector<ApiErrorAction> permittedActions(ApiRouter::Route route)
{
    if (route == ApiRouter::Route::initializer)
        return { ApiErrorAction::retoken, ApiErrorAction::alert };
    return { ApiErrorAction::alert };
}

} // namespace

std::atomic<qint64> ApiClient::TokenExpiredTryCount::current = 0;

void ApiClient::handleResponseError(const std::optional<MetaModel> &metaResponse)
{
    const MetaModel meta = metaResponse.value_or(MetaModel {});
    // The verdict is not acted on: whoever called decides by what the envelope says.
    (void)errorActionContains(isTokenExpired(meta.httpStatusCode, meta.errorCode)
            ? ApiErrorAction::retoken
            : ApiErrorAction::alert);
}

bool ApiClient::errorActionContains(ApiErrorAction action) const
{
    if (!router)
        fatal(QStringLiteral("ApiClient: an answer without a route; set `router` before the answer "
                             "is classified"));
    const auto actions = permittedActions(router->route());
    return std::find(actions.cbegin(), actions.cend(), action) != actions.cend();
}

bool ApiClient::isTokenExpired(
    std::optional<HttpStatusCode> httpStatusCode, std::optional<ResponseErrorCode> errorCode)
{
    if (httpStatusCode != HttpStatusCode::forbiddenError
        || (errorCode != ResponseErrorCode::authUserNotFound
            && errorCode != ResponseErrorCode::authTokenNotFound))
        return false;
    if (TokenExpiredTryCount::current.fetch_add(1) == std::numeric_limits<qint64>::max())
        fatal(QStringLiteral("ApiClient: the count of expired tokens is full; the process has to "
                             "be started again"));
    return true;
}

} // namespace parloquin
