#pragma once

#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Client/Result.h"
#include "Parloquin/Networking/Constant/ApiErrorAction.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Networking/Router/ApiRouter.h"
#include "Parloquin/Transport/UrlSession.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace parloquin {

/// \brief Sends one request to the service and turns what comes back into a result.
///
/// A client is made for one call and held by a shared pointer; the call under way keeps it, so its
/// maker may drop it at once.
class ApiClient : public std::enable_shared_from_this<ApiClient> {
public:
    /// \brief How many answers said that the token is expired, in the whole process; never reset.
    struct TokenExpiredTryCount {
        static std::atomic<qint64> current;
    };

    /// Starts what carries the calls, so that the first one finds it running. The main thread.
    static void prepare();

    /// \brief Sends the route's request.
    ///
    /// Any thread. The completion runs exactly once, on the session's thread; or at once, before
    /// this returns, when the network is known to be unreachable or there is nothing to send. It
    /// never runs when the session ends first. Whatever could be decoded is a success, also what
    /// the service refused.
    template <class T> void request(const std::optional<ApiRouter> &route, Completion<T> completion)
    {
        send(
            route,
            [completion](const QByteArray &data, QString *fault) -> std::optional<Answer> {
                auto decoded = decode<BaseResponseModel<T>>(data, fault);
                if (!decoded)
                    return {};
                const auto response =
                    std::make_shared<const BaseResponseModel<T>>(*std::move(decoded));
                return Answer { response->isSuccess(), response->meta, Dump(*response),
                    [completion, response] { completion(Result<T>::success(*response)); } };
            },
            [completion](ApiError error) { completion(Result<T>::failure(error)); });
    }

    /// Ends the call under way, if any; its completion runs with the failure `general`, or
    /// `timeOutEtc` once the answer's head has come.
    void cancelRequest();

    /// \brief Whether the transport brought an answer with data; logs the loss of the data.
    ///
    /// Any thread. The order of the tests is part of the behaviour: a time-out before the answer's
    /// head has come is `general`.
    /// \return nothing where there is data to decode
    [[nodiscard]] std::optional<ApiError> transportFailure(const std::optional<QByteArray> &data,
        const std::optional<UrlResponse> &response,
        const std::optional<TransportError> &error) const;

    /// Classifies an answer that is no success; the only effect is on TokenExpiredTryCount.
    void handleResponseError(const std::optional<MetaModel> &metaResponse);
    void tellRefusal(const std::optional<MetaModel> &meta) const;

    /// Counts each time that it says true.
    bool isTokenExpired(
        std::optional<HttpStatusCode> httpStatusCode, std::optional<ResponseErrorCode> errorCode);

    /// \brief The request log, on standard output, of every answer that could be decoded.
    /// \param response dump of the envelope
    /// \param body of the request in readable form; its absence stops the program
    void logRequest(const Dump &response, const std::optional<QByteArray> &body,
        const HeaderFields &headers, const UrlRequest &urlRequest) const;
    void printServerError(const std::optional<TransportError> &error) const;
    void printJsonParseError(const QString &fault, const QByteArray &data) const;
    void printRequestCreateError(const QString &fault) const;

    const ApiResponseHelper apiResponseHelper {};
    std::optional<ApiRouter> router; ///< of the request under way

private:
    /// A decoded envelope without its type.
    struct Answer {
        bool isSuccess;
        std::optional<MetaModel> meta;
        Dump dump; ///< of what `deliver` holds
        std::function<void()> deliver;
    };
    using Decoder = std::function<std::optional<Answer>(const QByteArray &data, QString *fault)>;
    using Failure = std::function<void(ApiError)>;

    void send(std::optional<ApiRouter> route, Decoder decoder, Failure fail);
    void handleRequest(const UrlRequest &urlRequest, Decoder decoder, Failure fail);
    void handleAnswer(std::optional<QByteArray> data, const std::optional<UrlResponse> &response,
        const std::optional<TransportError> &error, const UrlRequest &urlRequest,
        const Decoder &decoder, const Failure &fail);
    [[nodiscard]] bool errorActionContains(ApiErrorAction action) const;

    UrlSession *manager = nullptr;
    std::shared_ptr<UrlSessionTask> dataTask;
};

} // namespace parloquin
