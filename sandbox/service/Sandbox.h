#pragma once

#include "sandbox/service/Cipher.h"
#include "sandbox/service/Console.h"
#include "sandbox/service/CurrentScenario.h"
#include "sandbox/service/Journal.h"
#include "sandbox/service/Outcomes.h"
#include "sandbox/service/RequestCount.h"
#include "sandbox/service/State.h"
#include "sandbox/service/Stopping.h"

#include <string>

namespace sandbox {

/// \brief What both the calls of clients and those of developers work on. Any thread.
struct Sandbox {
    Sandbox(Scenario first, Weather weather)
        : scenario(std::move(first))
        , state(scenario)
        , outcomes(scenario.get()->outcomes, weather)
    {
    }

    /// Forgets what happened and what was set since the start; the scenario stays.
    void reset()
    {
        state.clear();
        outcomes.reset(scenario.get()->outcomes);
        count.reset();
        journal.clear();
    }

    /// Plays \p next from now on; its outcomes begin anew, what happened stays.
    void play(Scenario next)
    {
        scenario.set(std::move(next));
        outcomes.reset(scenario.get()->outcomes);
    }

    /// Ends every wait.
    void stop()
    {
        stopping.stop();
        journal.wakeAll();
    }

    CurrentScenario scenario;
    State state;
    Outcomes outcomes;
    RequestCount count;
    Journal journal;
    Console console;
    Stopping stopping;
    const std::string run = randomUuid(); ///< tells one life of the program from the next
    int port = -1; ///< of the service; known once it is bound, as is the other
    int pagePort = -1;
};

}
