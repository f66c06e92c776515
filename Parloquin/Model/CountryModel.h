#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief One country of the picker.
struct CountryModel {
    std::optional<QString> phoneCode; ///< dialling prefix, shown and prepended as it comes
    std::optional<QString> countryCode;
    std::optional<QString> title; ///< display name; the picker sorts and sections by it

    static constexpr auto fields()
    {
        return std::tuple {
            field("phoneCode", &CountryModel::phoneCode),
            field("countryCode", &CountryModel::countryCode),
            field("title", &CountryModel::title),
        };
    }
};

} // namespace parloquin
