#pragma once

#include <QtCore/QString>

#include <chrono>

namespace parloquin {

/// \brief Where the service is: fixed at build time but for rehearsals; ends in a slash.
[[nodiscard]] QString serviceBaseUrl();

/// \brief How long one whole call may take.
[[nodiscard]] std::chrono::milliseconds serviceTimeout();

} // namespace parloquin
