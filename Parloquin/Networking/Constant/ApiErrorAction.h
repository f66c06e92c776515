#pragma once

namespace parloquin {

/// \brief What a client may do about a failed answer of the service.
enum class ApiErrorAction {
    alert, ///< show it to the user
    retoken, ///< the token is expired or missing
    none,
};

} // namespace parloquin
