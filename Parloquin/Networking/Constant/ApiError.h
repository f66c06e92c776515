#pragma once

#include "Parloquin/Extension/JsonField.h"

#include <array>
#include <utility>

namespace parloquin {

/// \brief Why a request brought no answer that can be read.
enum class ApiError {
    general, ///< no HTTP answer, or one with neither data nor an error
    requestObjectCreate, ///< no route, or no request could be made of it
    jsonDecode, ///< the body is no envelope of the expected kind
    noSuchFile, ///< no data; the transport's code is 4
    timeOutEtc, ///< no data; any other code of the transport
    connection, ///< no network: known beforehand, or the transport's code is -1009
};

/// Their names, for the console.
template <> struct RawValues<ApiError> {
    static constexpr std::array rows {
        std::pair { ApiError::general, "general" },
        std::pair { ApiError::requestObjectCreate, "requestObjectCreate" },
        std::pair { ApiError::jsonDecode, "jsonDecode" },
        std::pair { ApiError::noSuchFile, "noSuchFile" },
        std::pair { ApiError::timeOutEtc, "timeOutEtc" },
        std::pair { ApiError::connection, "connection" },
    };
};

} // namespace parloquin
