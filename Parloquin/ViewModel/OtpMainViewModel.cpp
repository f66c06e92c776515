#include "Parloquin/ViewModel/OtpMainViewModel.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/MainQueue.h"

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
        [weak = weak_from_this(), screen = presentedViewController](
            const auto &result) { receive(weak, screen, result); });
}

void OtpMainViewModel::receive(const std::weak_ptr<OtpMainViewModel> &weak,
    const std::weak_ptr<Updateable> &screen, const Result<SendOtpResponseModel> &result)
{
    if (!weak.expired())
        HudManager::shared().hide(screen);
    if (const ApiError *error = result.error()) {
        print(rawValue(*error));
        return;
    }

    const auto &envelope = *result.response();
    print(dump(envelope));
    onMain([weak, answer = envelope.result] {
        const auto self = weak.lock();
        if (!self)
            return;
        self->reference = answer ? answer->reference : std::nullopt;
        self->rebindScreen();
    });
}

} // namespace parloquin
