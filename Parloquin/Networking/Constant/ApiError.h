#pragma once

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

} // namespace parloquin
