#include "Parloquin/ViewModel/OtpCheckViewModel.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Manager/DeveloperLog.h"
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Protocol/ParloquinSingleton.h"

namespace parloquin {

void OtpCheckViewModel::requestCheckOtp()
{
    if (!otpCode || otpCode->isEmpty())
        return;

    HudManager::shared().show(presentedViewController);
    const CheckOtpRequestModel request { .phoneNumber = phoneNumber,
        .countryCode = countryCode,
        .code = otpCode,
        .reference = reference };
    // A request that fails at once tells the host at once, and the host may delete the container:
    // not within the tap that it is still handling.
    onMain([request, weak = weak_from_this(), screen = presentedViewController] {
        ApiRequest::checkOTP(
            request, [weak, screen](const auto &result) { receive(weak, screen, result); });
    });
}

void OtpCheckViewModel::receive(const std::weak_ptr<OtpCheckViewModel> &weak,
    const std::weak_ptr<Updateable> &screen, const Result<CheckOtpResponseModel> &result)
{
    if (!weak.expired())
        HudManager::shared().hide(screen);
    const auto delegate = ParloquinSingleton::shared().delegate();
    if (!delegate)
        qCWarning(developerLog, "an outcome reaches nobody: no delegate is set");
    if (const ApiError *error = result.error()) {
        print(rawValue(*error));
        if (delegate)
            delegate->verificationDidFail(ParloquinError::serverError);
        return;
    }

    const auto &envelope = *result.response();
    print(dump(envelope));
    if (weak.expired())
        return;
    onMain([weak] {
        if (const auto self = weak.lock())
            self->rebindScreen();
    });
    if (!delegate)
        return;
    // The session id alone decides, whatever the answer says of the validation.
    if (envelope.result && envelope.result->sessionId)
        delegate->verificationDidSucceed(*envelope.result->sessionId);
    else
        delegate->verificationDidFail(ParloquinError::authorizationError);
}

} // namespace parloquin
