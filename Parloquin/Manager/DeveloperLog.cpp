#include "Parloquin/Manager/DeveloperLog.h"

namespace parloquin {

Q_LOGGING_CATEGORY(developerLog, "parloquin", QtFatalMsg)

} // namespace parloquin
