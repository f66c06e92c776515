#pragma once

#include "Parloquin/Extension/JsonField.h"
#include "Parloquin/Model/CountryModel.h"

#include <QtCore/QList>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Result of `country`.
struct CountryResponseModel {
    std::optional<QList<CountryModel>> list;

    static constexpr auto fields()
    {
        return std::tuple {
            field("list", &CountryResponseModel::list),
        };
    }
};

} // namespace parloquin
