#include "Parloquin/Networking/Router/ServiceEndpoint.h"

#include "Parloquin/Platform/Rehearsal.h"

namespace parloquin {

QString Rehearsal::builtFor() { return QStringLiteral(PARLOQUIN_SERVICE_HOST); }

QString serviceBaseUrl() { return QStringLiteral("http://%1/v1.0/").arg(Rehearsal::serviceHost()); }

std::chrono::milliseconds serviceTimeout() { return std::chrono::seconds(60); }

} // namespace parloquin
