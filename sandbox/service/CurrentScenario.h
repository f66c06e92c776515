#pragma once

#include "sandbox/service/Scenario.h"

#include <memory>
#include <mutex>
#include <string>

namespace sandbox {

/// \brief The scenario that is played now; another can take its place while the service runs.
///
/// Any thread. A request keeps to the one that it began with.
class CurrentScenario {
public:
    using Pointer = std::shared_ptr<const Scenario>;

    explicit CurrentScenario(Scenario scenario);

    Pointer get() const;
    void set(Scenario scenario);

private:
    mutable std::mutex m_mutex;
    Pointer m_scenario;
};

}
