#include "Parloquin/Networking/Client/ApiClient.h"

#include "Parloquin/Platform/Fatal.h"

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

// A field name is visible ASCII; what holds anything else cannot be looked up by name.
bool isReadable(const HeaderFields &fields)
{
    return std::all_of(fields.cbegin(), fields.cend(), [](const auto &field) {
        return std::all_of(
            field.first.cbegin(), field.first.cend(), [](char c) { return c > ' ' && c < '\x7f'; });
    });
}

} // namespace

std::optional<ApiError> ApiClient::transportFailure(const std::optional<QByteArray> &data,
    const std::optional<UrlResponse> &response, const std::optional<TransportError> &error) const
{
    if (!response || !isReadable(response->headers))
        return ApiError::general;
    if (data)
        return {};
    printServerError(error);
    if (!error)
        return ApiError::general;
    constexpr int noSuchFile = 4; // of the platform's file errors; the domain is not looked at
    switch (error->code) {
    case TransportError::notConnectedToInternet:
        return ApiError::connection;
    case noSuchFile:
        return ApiError::noSuchFile;
    default:
        return ApiError::timeOutEtc;
    }
}

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
