#include "Parloquin/Platform/ReachabilityTarget.h"

#include <algorithm>
#include <cerrno>

namespace parloquin {

namespace {
thread_local qint32 lastCode = 0;
}

ReachabilityContext::~ReachabilityContext() = default;
ReachabilityTarget::~ReachabilityTarget() = default;

qint32 ReachabilityTarget::lastError() { return lastCode; }
void ReachabilityTarget::setLastError(qint32 code) { lastCode = code; }

std::unique_ptr<ReachabilityTarget> ReachabilityTarget::createWithAddress(
    const ReachabilityAddress &address)
{
    const ReachabilityAddress internet;
    if (address != internet) {
        setLastError(address.family == internet.family ? EINVAL : EAFNOSUPPORT);
        return nullptr;
    }
    return ofDefaultRoute();
}

std::unique_ptr<ReachabilityTarget> ReachabilityTarget::createWithName(const QString &host)
{
    constexpr qsizetype limit = 253; // characters of a host name
    if (host.isEmpty() || host.size() > limit || std::any_of(host.begin(), host.end(), [](QChar c) {
            return c.isSpace() || c.isNull() || c == u'/';
        })) {
        setLastError(EINVAL);
        return nullptr;
    }
    return ofDefaultRoute();
}

} // namespace parloquin
