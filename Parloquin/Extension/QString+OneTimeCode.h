#pragma once

#include <QtCore/QString>

#include <optional>

namespace parloquin {

/// \brief The code in a message that binds it to a host: its last line is `@host #code`, as the
/// draft on origin-bound one-time codes (draft-wells-origin-bound-one-time-codes) has it.
///
/// \param host compared whole: a part of its name, or a name below it, is another's
/// \param length of the code, which consists of letters and digits of ASCII
/// \return nothing where the message is not such a one
[[nodiscard]] std::optional<QString> oneTimeCode(
    const QString &message, const QString &host, int length);

} // namespace parloquin
