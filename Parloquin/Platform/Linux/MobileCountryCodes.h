#pragma once

#include <QtCore/QString>

#include <optional>

namespace parloquin {

/// \brief Finds the country of a mobile operator in the system's provider database. Any thread.
///
/// Reads the file, some hundred kilobytes, on every call.
/// \param identifier mobile country code (3 digits) and network code (2 or 3 digits)
/// \return ISO 3166-1 alpha-2 code in lower case; nothing where either is unknown
[[nodiscard]] std::optional<QString> countryOfOperator(const QString &identifier);

} // namespace parloquin
