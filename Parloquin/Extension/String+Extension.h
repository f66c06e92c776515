#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace parloquin {

/// \brief Hexadecimal text to bytes, forgiving: what is no digit is passed over.
///
/// Each run of digits is cut into pairs from its start; a run of odd length ends in a byte of one
/// digit. So "0x00ff" is the bytes 00 00 ff: the x ends the first run.
/// \return nothing where there is no digit
[[nodiscard]] std::optional<QByteArray> hexadecimal(QStringView text);

/// \brief An optional text for the console: `Optional("...")`, quotes and control characters
/// inside escaped, or `nil`.
[[nodiscard]] QString optionalDescription(const std::optional<QString> &text);

} // namespace parloquin
