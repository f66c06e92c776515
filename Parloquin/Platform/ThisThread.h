#pragma once

#include <QtCore/QString>

/// \brief What the system is told of a thread, by that thread.
namespace parloquin {

/// How urgent the work of a queue is.
enum class QualityOfService {
    userInteractive,
    userInitiated,
    standard,
    utility,
    background,
    unspecified,
};

namespace ThisThread {

/// \param label shown by debuggers and monitors, as much of its end as the system has room for
/// \param qos work that nobody waits for leaves the processor to others; a system that cannot order
/// threads takes them as equal
void introduce(const QString &label, QualityOfService qos);

} // namespace ThisThread

} // namespace parloquin
