#include "support/ServiceEndpoint.h"

#include "Parloquin/Networking/Router/ServiceEndpoint.h"

namespace {
QString host = QStringLiteral("127.0.0.1:1"); // refuses
std::chrono::milliseconds timeout = std::chrono::seconds(60);
}

void setServiceHost(const QString &hostAndPort) { host = hostAndPort; }
void setServiceTimeout(std::chrono::milliseconds value) { timeout = value; }

namespace parloquin {
QString serviceBaseUrl() { return QStringLiteral("http://%1/v1.0/").arg(host); }
std::chrono::milliseconds serviceTimeout() { return timeout; }
}
