#include "Parloquin/ViewModel/OtpMainViewModel.h"

#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Networking/Model/Request/SendOtpRequestModel.h"
#include "Parloquin/Networking/Model/Response/SendOtpResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/ViewModel/Base/Answer.h"

namespace parloquin {

void OtpMainViewModel::requestSendOtp()
{
    if (!phoneNumber || phoneNumber->isEmpty())
        return;
    if (!selectedCountryCode || selectedCountryCode->isEmpty())
        return;

    HudManager::shared().show(presentedViewController);
    ApiRequest::sendOTP({ .phoneNumber = phoneCode.value_or(QString()) + *phoneNumber,
                            .countryCode = selectedCountryCode },
        [origin = AnswerOrigin(weak_from_this(), presentedViewController)](
            const Result<SendOtpResponseModel> &result) {
            origin.hideProgress();
            const auto *const envelope = printed(result);
            if (!envelope)
                return;
            origin.onMainThread([answer = envelope->result](OtpMainViewModel &self) {
                self.reference = answer ? answer->reference : std::nullopt;
                self.rebindScreen();
            });
        });
}

} // namespace parloquin
