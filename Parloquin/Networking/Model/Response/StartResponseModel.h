#pragma once

#include "Parloquin/Extension/JsonField.h"
#include "Parloquin/Model/CountryModel.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Result of `start`.
struct StartResponseModel {
    std::optional<QList<CountryModel>> countryList;
    std::optional<QString> deeplink; ///< opens the messaging app with the prepared message
    std::optional<QString> reference; ///< key of the `check` call
    std::optional<QString> type;

    static constexpr auto fields()
    {
        return std::tuple {
            field("countryList", &StartResponseModel::countryList),
            field("deeplink", &StartResponseModel::deeplink),
            field("reference", &StartResponseModel::reference),
            field("type", &StartResponseModel::type),
        };
    }
};

} // namespace parloquin
