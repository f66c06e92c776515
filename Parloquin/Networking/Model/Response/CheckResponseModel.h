#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Result of `check`.
struct CheckResponseModel {
    std::optional<QString> sessionId; ///< its presence alone means success
    std::optional<bool> validationStatus; ///< not consulted

    static constexpr auto fields()
    {
        return std::tuple {
            field("sessionId", &CheckResponseModel::sessionId),
            field("validationStatus", &CheckResponseModel::validationStatus),
        };
    }
};

} // namespace parloquin
