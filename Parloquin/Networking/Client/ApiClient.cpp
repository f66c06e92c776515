#include "Parloquin/Networking/Client/ApiClient.h"

#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Manager/DeveloperLog.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Platform/Rehearsal.h"

#include <exception>

namespace parloquin {

void ApiClient::prepare() { UrlSession::shared(); }

void ApiClient::send(std::optional<ApiRouter> route, Decoder decoder, Failure fail)
{
    router = std::move(route);
    if (!Rehearsal::hasRoute().value_or(ApiSessionHelper::shared().isNetworkReachable)) {
        qCWarning(developerLog, "%ls: not sent, as the device has no default route",
            qUtf16Printable(router ? router->path() : QString()));
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

void ApiClient::handleAnswer(std::optional<QByteArray> data,
    const std::optional<UrlResponse> &response, const std::optional<TransportError> &error,
    const UrlRequest &urlRequest, const Decoder &decoder, const Failure &fail)
{
    if (const auto failure = transportFailure(data, response, error)) {
        fail(*failure);
        return;
    }

    if (apiResponseHelper.checkResponseJsonEncryptedStatus(response->headers)) {
        if (auto plain = apiResponseHelper.getData(*data))
            data = std::move(plain);
    }

    QString fault;
    std::optional<Answer> answer = decoder(*data, &fault);
    if (!answer) {
        printJsonParseError(fault, *data);
        fail(ApiError::jsonDecode);
        return;
    }
    if (!answer->isSuccess) {
        tellRefusal(answer->meta);
        handleResponseError(answer->meta);
    }
    logRequest(answer->dump,
        urlRequest.body ? apiResponseHelper.getData(*urlRequest.body) : std::nullopt,
        response->headers, urlRequest);
    // What only decoding needed goes first: an answer may be large, and be taken apart meanwhile.
    data.reset();
    answer->deliver();
}

void ApiClient::tellRefusal(const std::optional<MetaModel> &meta) const
{
    const MetaModel said = meta.value_or(MetaModel());
    qCWarning(developerLog, "%ls: refused by the service, status %d, code %ls",
        qUtf16Printable(router ? router->path() : QString()),
        said.httpStatusCode ? rawValue(*said.httpStatusCode) : 0,
        qUtf16Printable(said.errorCode ? rawValue(*said.errorCode) : QStringLiteral("none")));
}

void ApiClient::cancelRequest()
{
    if (dataTask)
        dataTask->cancel();
}

} // namespace parloquin
