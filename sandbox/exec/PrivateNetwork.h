#pragma once

#include <string>

namespace sandbox {

/// \brief Whether this process has a way out of the machine, which the kit asks for.
bool hasDefaultRoute();

/// \brief Moves this process, which has one thread, into a network of its own, whose only way out
/// is its loopback.
/// \return what was not allowed; empty when done
std::string enterPrivateNetwork();

}
