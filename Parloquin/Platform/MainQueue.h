#pragma once

#include <QtCore/QObject>

#include <chrono>
#include <functional>

namespace parloquin {

/// \brief Runs a block on the main thread, later, in the order the blocks were sent.
///
/// Any thread. Blocks sent when the application object is gone, or going, are dropped.
void onMain(std::function<void()> block);

/// \brief The same after a delay, unless the owner is gone by then. Main thread only.
void onMainAfter(std::chrono::milliseconds delay, QObject *owner, std::function<void()> block);

} // namespace parloquin
