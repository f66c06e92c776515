#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Body of `result`; no flow sends it.
struct CheckResultRequestModel {
    std::optional<QString> sessionId; ///< snake case, unlike every other key

    static constexpr auto fields()
    {
        return std::tuple {
            field("session_id", &CheckResultRequestModel::sessionId),
        };
    }
};

} // namespace parloquin
