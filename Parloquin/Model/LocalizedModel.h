#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief A text sent by the service; kept, shown nowhere.
struct LocalizedModel {
    std::optional<QString> key;
    std::optional<QString> value;

    static constexpr auto fields()
    {
        return std::tuple {
            field("key", &LocalizedModel::key),
            field("value", &LocalizedModel::value),
        };
    }
};

} // namespace parloquin
