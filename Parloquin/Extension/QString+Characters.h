#pragma once

#include <QtCore/QString>

namespace parloquin {

/// \brief Text counted as people count it: an emoji or a letter with its accents is one character.

/// \return the first character as written; empty for an empty text
[[nodiscard]] QString firstCharacter(const QString &text);

/// \return the text without its last character when it has two or more, else the text itself
[[nodiscard]] QString shortenedByOne(const QString &text);

} // namespace parloquin
