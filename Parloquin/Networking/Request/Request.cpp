#include "Parloquin/Networking/Request/Request.h"

#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Platform/Device.h"

#include <memory>
#include <utility>

namespace parloquin {

namespace {

template <class T> void send(ApiRouter route, Completion<T> completion)
{
    std::make_shared<ApiClient>()->request<T>(std::move(route), std::move(completion));
}

} // namespace

void ApiRequest::initializer(Completion<InitResponseModel> completion)
{
    send(ApiRouter::initializer(InitRequestModel()), std::move(completion));
}

void ApiRequest::start(
    const StartRequestModel &requestModel, Completion<StartResponseModel> completion)
{
    send(ApiRouter::start(requestModel), std::move(completion));
}

void ApiRequest::check(
    const CheckRequestModel &requestModel, Completion<CheckResponseModel> completion)
{
    send(ApiRouter::check(requestModel), std::move(completion));
}

void ApiRequest::sendOTP(
    const SendOtpRequestModel &requestModel, Completion<SendOtpResponseModel> completion)
{
    send(ApiRouter::sendOTP(requestModel), std::move(completion));
}

void ApiRequest::checkOTP(
    const CheckOtpRequestModel &requestModel, Completion<CheckOtpResponseModel> completion)
{
    send(ApiRouter::checkOTP(requestModel), std::move(completion));
}

void ApiRequest::country(Completion<CountryResponseModel> completion)
{
    send(ApiRouter::country({ Device::regionCode() }), std::move(completion));
}

} // namespace parloquin
