#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Result of `check-otp`.
struct CheckOtpResponseModel {
    std::optional<bool> validationStatus; ///< not consulted
    std::optional<QString> sessionId; ///< its presence alone means success

    static constexpr auto fields()
    {
        return std::tuple {
            field("validationStatus", &CheckOtpResponseModel::validationStatus),
            field("sessionId", &CheckOtpResponseModel::sessionId),
        };
    }
};

} // namespace parloquin
