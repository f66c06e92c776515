#include "Parloquin/ViewModel/OtpCheckViewModel.h"

#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Networking/Model/Request/CheckOtpRequestModel.h"
#include "Parloquin/Networking/Model/Response/CheckOtpResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/ViewModel/Base/Answer.h"

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
    onMain([request, origin = AnswerOrigin(weak_from_this(), presentedViewController)] {
        ApiRequest::checkOTP(request, [origin](const Result<CheckOtpResponseModel> &result) {
            origin.hideProgress();
            const auto *const envelope = printed(result);
            if (!envelope) {
                tellFailure(ParloquinError::serverError);
                return;
            }
            if (origin.isGone())
                return;
            origin.onMainThread([](const OtpCheckViewModel &self) { self.rebindScreen(); });
            tellOutcome(envelope->result ? envelope->result->sessionId : std::nullopt);
        });
    });
}

} // namespace parloquin
