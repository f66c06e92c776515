#pragma once

#include "sandbox/service/Scenario.h"
#include "sandbox/service/ScenarioReader.h"

#include <map>
#include <string>
#include <vector>

namespace sandbox {

/// Reads an object of calls: for each one outcome or a list of them, and each is the name of a
/// common one, or an object.
/// \throws ScenarioError
std::map<std::string, std::vector<Outcome>> readOutcomes(const ScenarioReader &reader);

}
