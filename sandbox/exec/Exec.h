#pragma once

#include <string>
#include <vector>

namespace sandbox {

/// \brief Runs a host with all that it needs around it: the sandbox, the stand-in messenger behind
/// its links, a way out of the machine. Ends all that when the host ends.
/// \param options words, for the sandbox
/// \param command the host's
/// \return the host's exit code; 128 and the signal that ended it; 126 or 127 when it cannot be run
int exec(const std::vector<std::string> &options, const std::vector<std::string> &command);

}
