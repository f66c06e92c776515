#pragma once

#include "Parloquin/Networking/Client/Result.h"
#include "Parloquin/Networking/Model/Request/CheckOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Request/SendOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/StartRequestModel.h"
#include "Parloquin/Networking/Model/Response/CheckOtpResponseModel.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Networking/Model/Response/SendOtpResponseModel.h"
#include "Parloquin/Networking/Model/Response/StartResponseModel.h"

namespace parloquin {

/// \brief The calls to the service, one operation each.
///
/// Called on the main thread. The completion runs exactly once: on the network thread, or at once
/// on the calling thread when the network is known to be unreachable.
class ApiRequest {
public:
    static void initializer(Completion<InitResponseModel> completion);
    static void start(
        const StartRequestModel &requestModel, Completion<StartResponseModel> completion);
    static void check(
        const CheckRequestModel &requestModel, Completion<CheckResponseModel> completion);
    static void sendOTP(
        const SendOtpRequestModel &requestModel, Completion<SendOtpResponseModel> completion);
    static void checkOTP(
        const CheckOtpRequestModel &requestModel, Completion<CheckOtpResponseModel> completion);
    /// For the region of the system locale.
    static void country(Completion<CountryResponseModel> completion);
};

} // namespace parloquin
