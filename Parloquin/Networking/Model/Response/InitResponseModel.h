#pragma once

#include "Parloquin/Extension/JsonField.h"
#include "Parloquin/Model/AppPackageModel.h"
#include "Parloquin/Model/Enum/ValidationMethodEnum.h"
#include "Parloquin/Model/LocalizedModel.h"
#include "Parloquin/Model/ThirdPartyKitModel.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief Result of `init`: which apps to offer.
struct InitResponseModel {
    std::optional<ValidationMethodEnum> validation;
    std::optional<QString> countryCode;
    std::optional<QString> description; ///< text above the app list
    std::optional<QList<ThirdPartyKitModel>> list; ///< in display order
    std::optional<ValidationMethodEnum>
        alternativeValidation; ///< when present, the SMS road is offered
    std::optional<QString> alternativeValidationDescription;
    std::optional<QList<AppPackageModel>> appPackageList; ///< schemes to probe for `start`
    std::optional<QList<LocalizedModel>> localizationList;

    static constexpr auto fields()
    {
        return std::tuple {
            field("validation", &InitResponseModel::validation),
            field("countryCode", &InitResponseModel::countryCode),
            field("description", &InitResponseModel::description),
            field("list", &InitResponseModel::list),
            field("alternativeValidation", &InitResponseModel::alternativeValidation),
            field("alternativeValidationDescription",
                &InitResponseModel::alternativeValidationDescription),
            field("appPackageList", &InitResponseModel::appPackageList),
            field("localizationList", &InitResponseModel::localizationList),
        };
    }
};

} // namespace parloquin
