#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Result of `send-otp`.
struct SendOtpResponseModel {
    std::optional<QString> reference; ///< key of the `check-otp` call

    static constexpr auto fields()
    {
        return std::tuple {
            field("reference", &SendOtpResponseModel::reference),
        };
    }
};

} // namespace parloquin
