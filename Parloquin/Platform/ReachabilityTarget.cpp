#include "Parloquin/Platform/ReachabilityTarget.h"

namespace parloquin {

namespace {
thread_local qint32 lastCode = 0;
}

ReachabilityContext::~ReachabilityContext() = default;
ReachabilityTarget::~ReachabilityTarget() = default;

qint32 ReachabilityTarget::lastError() { return lastCode; }
void ReachabilityTarget::setLastError(qint32 code) { lastCode = code; }

} // namespace parloquin
