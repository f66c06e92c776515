#include "Parloquin/Networking/Request/Request.h"

#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "Parloquin/Platform/Device.h"

#include <memory>
#include <utility>

namespace parloquin {

namespace {

template <class T> void send(const ApiRouter &route, Completion<T> completion)
{
    std::make_shared<ApiClient>()->request<T>(route, std::move(completion));
}

template <class RequestModel> RequestModel own() { return {}; }
template <> CountryRequestModel own() { return { Device::regionCode() }; }

} // namespace

#define PARLOQUIN_given(name, RequestModel, ResponseModel)                                         \
    void ApiRequest::name(const RequestModel &requestModel, Completion<ResponseModel> completion)  \
    {                                                                                              \
        send(ApiRouter::name(requestModel), std::move(completion));                                \
    }
#define PARLOQUIN_own(name, RequestModel, ResponseModel)                                           \
    void ApiRequest::name(Completion<ResponseModel> completion)                                    \
    {                                                                                              \
        send(ApiRouter::name(own<RequestModel>()), std::move(completion));                         \
    }
#define PARLOQUIN_none(name, RequestModel, ResponseModel)
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    PARLOQUIN_##takes(name, RequestModel, ResponseModel)
PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW
#undef PARLOQUIN_none
#undef PARLOQUIN_own
#undef PARLOQUIN_given

} // namespace parloquin
