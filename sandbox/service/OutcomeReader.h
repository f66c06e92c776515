#pragma once

#include "sandbox/service/Scenario.h"
#include "sandbox/service/ScenarioReader.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace sandbox {

/// Reads an object of calls: for each one outcome or a list of them, and each is the name of a
/// common one, or an object. Null: no outcome. Under "numbers" and "clients" stand such objects by
/// phone number, and by client key or device id.
/// \throws ScenarioError
OutcomeLists readOutcomes(const ScenarioReader &reader);

/// The names of the common outcomes, by the alphabet.
std::vector<std::string> outcomeNames();

/// What readOutcomes() reads.
nlohmann::json jsonOf(const OutcomeLists &lists);

}
