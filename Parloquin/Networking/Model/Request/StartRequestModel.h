#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Body of `start`: begins a verification with one app.
struct StartRequestModel {
    QString countryCode;
    std::optional<QString> app;
    std::optional<QString> installedApps; ///< a JSON object as text: probed scheme to 1 or 0

    /// \return ISO country code of the SIM's operator, lower case; nothing without a SIM
    [[nodiscard]] static std::optional<QString> getCountryCodeFromCarrier();

    static constexpr auto fields()
    {
        return std::tuple {
            field("countryCode", &StartRequestModel::countryCode),
            field("app", &StartRequestModel::app),
            field("installedApps", &StartRequestModel::installedApps),
        };
    }
};

} // namespace parloquin
