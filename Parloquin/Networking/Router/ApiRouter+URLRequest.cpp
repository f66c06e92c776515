#include "Parloquin/Networking/Router/ApiRouter.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Helper/ApiRequestHelper.h"
#include "Parloquin/Networking/Model/Base/BaseRequestHeaderModel.h"
#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Parloquin/Platform/Fatal.h"

namespace parloquin {

UrlRequest ApiRouter::asURLRequest() const
{
    const BaseRequestHeaderModel headerModel(EncryptedState::active);
    const ApiRequestHelper helper(parameters(), dictionary(headerModel));
    const std::optional<QJsonObject> headers = helper.requestHeaders();
    const std::optional<QJsonObject> body = helper.requestParameters();

    UrlRequest request;
    const QString address = serviceBaseUrl() + path();
    request.url = QUrl(address, QUrl::StrictMode);
    if (!request.url.isValid() || request.url.host().isEmpty()) {
        fatal(QStringLiteral("the service address \"%1\" is no URL; build the kit with "
                             "PARLOQUIN_SERVICE_HOST=host:port")
                  .arg(address));
    }
    request.method = method();
    request.timeout = serviceTimeout();
    if (headers) {
        for (auto it = headers->begin(); it != headers->end(); ++it) {
            if (it.value().isString())
                request.addHeader(it.key().toUtf8(), it.value().toString().toUtf8());
        }
    }
    request.setHeader("Content-Type", "application/json; charset=utf-8");
    request.body = jsonText(body.value_or(QJsonObject()));
    return request;
}

} // namespace parloquin
