#pragma once

#include "sandbox/service/Scenario.h"
#include "sandbox/service/ScenarioReader.h"

#include <vector>

namespace sandbox {

/// Reads one outcome or a list of them; each is the name of a common one, or an object.
/// \throws ScenarioError
std::vector<Outcome> readOutcomes(const ScenarioReader &reader);

}
