#pragma once

#include "Parloquin/Extension/JsonField.h"
#include "Parloquin/Networking/Model/Enum/HttpStatusEnum.h"

#include <QtCore/QString>

#include <optional>
#include <tuple>

namespace parloquin {

/// \brief How a call went, as the service says.
struct MetaModel {
    std::optional<QString> requestId;
    std::optional<HttpStatusCode> httpStatusCode;
    std::optional<ResponseErrorCode> errorCode;
    std::optional<QString> errorMessage;

    static constexpr auto fields()
    {
        return std::tuple {
            field("requestId", &MetaModel::requestId),
            field("httpStatusCode", &MetaModel::httpStatusCode),
            field("errorCode", &MetaModel::errorCode),
            field("errorMessage", &MetaModel::errorMessage),
        };
    }
};

} // namespace parloquin
