#pragma once

#include <QtCore/QString>

#include <optional>

namespace parloquin {

/// \brief The host's information property list.
///
/// `:/Info.plist` compiled into the host, else `Info.plist` beside its executable; XML or binary.
/// Read afresh on every call, any thread. A file that is broken, over 64 KiB or no regular file is
/// named on standard error and counts as absent.
/// \return the text under the key; nothing where it is absent or no text
[[nodiscard]] std::optional<QString> infoDictionaryText(const QString &key);

} // namespace parloquin
