#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Body of `send-otp`.
struct SendOtpRequestModel {
    std::optional<QString> phoneNumber; ///< dialling prefix and number in one
    std::optional<QString> countryCode;

    static constexpr auto fields()
    {
        return std::tuple {
            field("phoneNumber", &SendOtpRequestModel::phoneNumber),
            field("countryCode", &SendOtpRequestModel::countryCode),
        };
    }
};

} // namespace parloquin
