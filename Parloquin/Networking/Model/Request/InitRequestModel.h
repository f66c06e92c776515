#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <tuple>

namespace parloquin {

/// \brief Body of `init`: what the service may know of the device.
struct InitRequestModel {
    /// Asks the device, at this moment.
    InitRequestModel();

    QString deviceName;
    QString timezone; ///< IANA name
    QString countryCode; ///< region of the system locale, or empty

    static constexpr auto fields()
    {
        return std::tuple {
            field("deviceName", &InitRequestModel::deviceName),
            field("timezone", &InitRequestModel::timezone),
            field("countryCode", &InitRequestModel::countryCode),
        };
    }
};

} // namespace parloquin
