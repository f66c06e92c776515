#include "Parloquin/Networking/Model/Request/InitRequestModel.h"

#include "Parloquin/Platform/Device.h"

namespace parloquin {

InitRequestModel::InitRequestModel()
    : deviceName(Device::name())
    , timezone(Device::timeZone())
    , countryCode(Device::regionCode())
{
}

} // namespace parloquin
