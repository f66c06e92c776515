#pragma once

#include <QtCore/QLoggingCategory>

namespace parloquin {

/// \brief The category `parloquin`: tells the host's developer what stays silent for the person.
///
/// Off until Qt's rules turn it on. Never a key, number, code or session id, nor the service's own
/// words. Any thread.
Q_DECLARE_LOGGING_CATEGORY(developerLog)

} // namespace parloquin
