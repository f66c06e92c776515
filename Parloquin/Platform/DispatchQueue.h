#pragma once

#include <QtCore/QtGlobal>

#include <functional>
#include <memory>

namespace parloquin {

/// \brief Runs blocks one after another, in the order they were sent, on one thread.
class DispatchQueue {
public:
    DispatchQueue() = default;
    virtual ~DispatchQueue();
    Q_DISABLE_COPY_MOVE(DispatchQueue)

    /// \brief The main thread, as onMain() reaches it.
    [[nodiscard]] static std::shared_ptr<DispatchQueue> main();

    /// Any thread; returns at once.
    virtual void async(std::function<void()> block) = 0;
};

} // namespace parloquin
