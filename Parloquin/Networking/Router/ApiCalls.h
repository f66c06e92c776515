#pragma once

/// \file
/// The calls to the service, a row each. Whatever there is once a call is made of this list:
/// routes, paths and operations, and in the tests golden requests, made-up answers and the
/// service's forms.
///
/// A row says: what its operation takes, the name of route and operation, the last part of the URL,
/// what goes out, what comes back. `given` takes the request model, `own` makes it by itself, and
/// nothing sends `none` yet.

// clang-format off
#define PARLOQUIN_API_CALLS(ROW) \
    ROW(own,   initializer, "init",      InitRequestModel,        InitResponseModel) \
    ROW(given, start,       "start",     StartRequestModel,       StartResponseModel) \
    ROW(given, check,       "check",     CheckRequestModel,       CheckResponseModel) \
    ROW(given, sendOTP,     "send-otp",  SendOtpRequestModel,     SendOtpResponseModel) \
    ROW(given, checkOTP,    "check-otp", CheckOtpRequestModel,    CheckOtpResponseModel) \
    ROW(none,  checkResult, "result",    CheckResultRequestModel, CheckResponseModel) \
    ROW(own,   country,     "country",   CountryRequestModel,     CountryResponseModel)
// clang-format on

namespace parloquin {

#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    struct RequestModel;                                                                           \
    struct ResponseModel;
PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW

} // namespace parloquin
