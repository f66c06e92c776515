#pragma once

namespace parloquin {

/// \brief Holds nothing: calls need no authentication beyond their signature.
class ApiAuthenticationHelper { };

} // namespace parloquin
