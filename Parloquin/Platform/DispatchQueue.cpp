#include "Parloquin/Platform/DispatchQueue.h"

#include "Parloquin/Platform/MainQueue.h"

#include <utility>

namespace parloquin {

namespace {

class MainDispatchQueue final : public DispatchQueue {
public:
    void async(std::function<void()> block) override { onMain(std::move(block)); }
};

} // namespace

DispatchQueue::~DispatchQueue() = default;

std::shared_ptr<DispatchQueue> DispatchQueue::main()
{
    static const auto queue = std::make_shared<MainDispatchQueue>();
    return queue;
}

} // namespace parloquin
