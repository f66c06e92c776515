#include "Parloquin/Networking/Model/Request/StartRequestModel.h"

#include "Parloquin/Platform/Telephony.h"

namespace parloquin {

std::optional<QString> StartRequestModel::getCountryCodeFromCarrier()
{
    return Telephony::shared().isoCountryCode();
}

} // namespace parloquin
