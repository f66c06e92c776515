#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Body of `check`.
struct CheckRequestModel {
    std::optional<QString> reference; ///< from the last `start`

    static constexpr auto fields()
    {
        return std::tuple {
            field("reference", &CheckRequestModel::reference),
        };
    }
};

} // namespace parloquin
