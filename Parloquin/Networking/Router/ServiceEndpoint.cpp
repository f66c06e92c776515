#include "Parloquin/Networking/Router/ServiceEndpoint.h"

namespace parloquin {

QString serviceBaseUrl() { return QStringLiteral("http://" PARLOQUIN_SERVICE_HOST "/v1.0/"); }

std::chrono::milliseconds serviceTimeout() { return std::chrono::seconds(60); }

} // namespace parloquin
