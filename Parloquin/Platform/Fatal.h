#pragma once

#include <QtCore/QString>

namespace parloquin {

/// \brief Stops the program over a mistake that only the host's or the kit's developer can mend.
///
/// Flushes standard output, says the message on standard error, aborts.
/// \param message names what is missing and how to mend it
[[noreturn]] void fatal(const QString &message);

} // namespace parloquin
