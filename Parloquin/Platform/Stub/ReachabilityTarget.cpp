#include "Parloquin/Platform/ReachabilityTarget.h"

namespace parloquin {

namespace {

class AlwaysReachable final : public ReachabilityTarget {
public:
    bool setCallback(std::shared_ptr<ReachabilityContext>) override { return true; }
    bool setDispatchQueue(SerialQueue *) override { return true; }
    std::optional<ReachabilityFlags> flags() override { return reachable; }
};

} // namespace

std::unique_ptr<ReachabilityTarget> ReachabilityTarget::ofDefaultRoute()
{
    return std::make_unique<AlwaysReachable>();
}

} // namespace parloquin
