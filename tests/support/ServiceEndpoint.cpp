#include "support/ServiceEndpoint.h"

#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Parloquin/Platform/Rehearsal.h"

namespace {
QString built = QStringLiteral("verify.example:443"); // so that no test hears the environment
QString host = QStringLiteral("127.0.0.1:1"); // refuses
std::chrono::milliseconds timeout = std::chrono::seconds(60);
}

void setServiceHost(const QString &hostAndPort) { host = hostAndPort; }
void setBuiltFor(const QString &hostAndPort) { built = hostAndPort; }
void setServiceTimeout(std::chrono::milliseconds value) { timeout = value; }

namespace parloquin {
QString Rehearsal::builtFor() { return built; }
QString serviceBaseUrl() { return QStringLiteral("http://%1/v1.0/").arg(host); }
std::chrono::milliseconds serviceTimeout() { return timeout; }
}
