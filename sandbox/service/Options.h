#pragma once

#include "sandbox/service/Outcomes.h"
#include "sandbox/service/Scenario.h"

#include <string>
#include <vector>

namespace sandbox {

/// \brief What the command line of the service says.
struct Options {
    enum class Task { serve, help, version, printScenario, printSchema, check };

    Task task = Task::serve;
    int port = 8046; ///< 0: a free one
    int page = 8047; ///< of the page; 0: a free one
    bool pageGiven = false; ///< this port or none; else a free one when it is taken
    std::string scenarioFile; ///< to be played or to be checked; empty: the built-in one
    std::vector<std::string> faults; ///< "CALL=FAULT"
    Weather weather;
    /// The first word that is no option and all that follow.
    std::vector<std::string> command;
    /// Why they cannot be followed: names the option and what was expected. Else empty.
    std::string fault;
};

/// \param words those behind the program's name
Options optionsFrom(const std::vector<std::string> &words);

/// What the options are, a line each.
std::string helpText();

/// The scenario that \p options ask for, with the outcomes that they name.
/// \throws ScenarioError
Scenario scenarioFor(const Options &options);

}
