#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief One messaging app that the service offers.
struct ThirdPartyKitModel {
    std::optional<QString> app; ///< its method name, sent back unchanged
    std::optional<QString> appPackage; ///< its URL scheme on the device, as the text of a URL
    std::optional<QString> name;
    std::optional<QString> text; ///< label of its row
    std::optional<QString> icon; ///< URL of its picture
    std::optional<QString> bgColour; ///< hexadecimal colour of its row
    std::optional<QString> textColour; ///< hexadecimal colour of its label

    static constexpr auto fields()
    {
        return std::tuple {
            field("app", &ThirdPartyKitModel::app),
            field("appPackage", &ThirdPartyKitModel::appPackage),
            field("name", &ThirdPartyKitModel::name),
            field("text", &ThirdPartyKitModel::text),
            field("icon", &ThirdPartyKitModel::icon),
            field("bgColour", &ThirdPartyKitModel::bgColour),
            field("textColour", &ThirdPartyKitModel::textColour),
        };
    }
};

} // namespace parloquin
