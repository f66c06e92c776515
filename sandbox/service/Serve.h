#pragma once

#include "sandbox/service/Options.h"

namespace sandbox {

/// Runs the service until a signal ends it, and says on stdout where it listens: the first line
/// names the port of the service, the second that of the page.
/// \return the exit code of the program; what went wrong stands on stderr
int serve(Scenario scenario, const Options &options);

}
