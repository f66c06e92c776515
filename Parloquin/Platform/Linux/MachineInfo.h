#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace parloquin {

/// \brief The text of one assignment of a machine-info file (`NAME="value"`, shell quoting).
/// \return empty where the file has no such assignment or quotes it wrongly
[[nodiscard]] QString machineInfoValue(const QByteArray &file, const QByteArray &name);

} // namespace parloquin
