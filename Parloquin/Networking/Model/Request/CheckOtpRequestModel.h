#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Body of `check-otp`.
struct CheckOtpRequestModel {
    std::optional<QString> phoneNumber; ///< as typed, without the dialling prefix
    std::optional<QString> countryCode;
    std::optional<QString> code;
    std::optional<QString> reference; ///< from `send-otp`

    static constexpr auto fields()
    {
        return std::tuple {
            field("phoneNumber", &CheckOtpRequestModel::phoneNumber),
            field("countryCode", &CheckOtpRequestModel::countryCode),
            field("code", &CheckOtpRequestModel::code),
            field("reference", &CheckOtpRequestModel::reference),
        };
    }
};

} // namespace parloquin
