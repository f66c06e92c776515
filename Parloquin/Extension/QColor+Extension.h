#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>

namespace parloquin {

/// \brief Colour from a hexadecimal text: RGB, RRGGBB or AARRGGBB, with or without a leading mark.
///
/// Never fails: a text of any other length is an almost transparent, almost black colour,
/// (1, 1, 0) at alpha 1/255, so that a broken colour of the service shows as nothing at all. Digits
/// count up to the first character that is none.
[[nodiscard]] QColor colorFromHexString(const QString &hexString);

} // namespace parloquin
