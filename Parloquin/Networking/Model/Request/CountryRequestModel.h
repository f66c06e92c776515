#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <tuple>

namespace parloquin {

/// \brief Body of `country`.
struct CountryRequestModel {
    QString countryCode;

    static constexpr auto fields()
    {
        return std::tuple {
            field("countryCode", &CountryRequestModel::countryCode),
        };
    }
};

} // namespace parloquin
