#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief A URL scheme to probe on the device.
struct AppPackageModel {
    std::optional<QString> package; ///< text of a URL

    static constexpr auto fields()
    {
        return std::tuple {
            field("package", &AppPackageModel::package),
        };
    }
};

} // namespace parloquin
