#include "Parloquin/Networking/Client/ApiClient.h"

#include "Parloquin/Networking/Helper/ApiSessionHelper.h"

#include <algorithm>
#include <exception>

namespace parloquin {

namespace {

// A field name is visible ASCII; what holds anything else cannot be looked up by name.
bool isReadable(const HeaderFields &fields)
{
    return std::all_of(fields.cbegin(), fields.cend(), [](const auto &field) {
        return std::all_of(
            field.first.cbegin(), field.first.cend(), [](char c) { return c > ' ' && c < '\x7f'; });
    });
}

ApiError apiError(const TransportError &error)
{
    constexpr int noSuchFile = 4; // in the platform's file errors; the domain is not looked at
    switch (error.code) {
    case TransportError::notConnectedToInternet:
        return ApiError::connection;
    case noSuchFile:
        return ApiError::noSuchFile;
    default:
        return ApiError::timeOutEtc;
    }
}

} // namespace

void ApiClient::send(std::optional<ApiRouter> route, Decoder decoder, Failure fail)
{
    router = std::move(route);
    if (!ApiSessionHelper::shared().isNetworkReachable) {
        cancelRequest();
        fail(ApiError::connection);
        return;
    }

    manager = &UrlSession::shared();
    std::optional<UrlRequest> urlRequest;
    try {
        if (router)
            urlRequest = router->asURLRequest();
    } catch (const std::exception &fault) {
        printRequestCreateError(QString::fromLocal8Bit(fault.what()));
    }
    if (!urlRequest) {
        fail(ApiError::requestObjectCreate);
        return;
    }
    handleRequest(*urlRequest, std::move(decoder), std::move(fail));
}

void ApiClient::handleRequest(const UrlRequest &urlRequest, Decoder decoder, Failure fail)
{
    dataTask = manager
        ? manager->dataTask(urlRequest,
            [client = shared_from_this(), urlRequest, decoder = std::move(decoder),
                fail = std::move(fail)](auto data, auto response, auto error) {
                client->handleAnswer(std::move(data), response, error, urlRequest, decoder, fail);
            })
        : nullptr;
    if (dataTask)
        dataTask->resume();
}

// The order of the tests is part of the behaviour: a time-out without a response is `general`.
void ApiClient::handleAnswer(std::optional<QByteArray> data,
    const std::optional<UrlResponse> &response, const std::optional<TransportError> &error,
    const UrlRequest &urlRequest, const Decoder &decoder, const Failure &fail)
{
    if (!response || !isReadable(response->headers)) {
        fail(ApiError::general);
        return;
    }
    if (!data) {
        printServerError(error);
        fail(error ? apiError(*error) : ApiError::general);
        return;
    }

    if (apiResponseHelper.checkResponseJsonEncryptedStatus(response->headers)) {
        if (auto plain = apiResponseHelper.getData(*data))
            data = std::move(plain);
    }

    QString fault;
    const std::optional<Answer> answer = decoder(*data, &fault);
    if (!answer) {
        printJsonParseError(fault, *data);
        fail(ApiError::jsonDecode);
        return;
    }
    if (!answer->isSuccess)
        handleResponseError(answer->meta);
    logRequest(answer->dump,
        urlRequest.body ? apiResponseHelper.getData(*urlRequest.body) : std::nullopt,
        response->headers, urlRequest);
    answer->deliver();
}

void ApiClient::cancelRequest()
{
    if (dataTask)
        dataTask->cancel();
}

} // namespace parloquin
