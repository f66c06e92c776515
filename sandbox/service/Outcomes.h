#pragma once

#include "sandbox/service/Scenario.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace sandbox {

/// A fault of commonWeather() for a share of the requests of every call that has no outcomes set.
struct Weather {
    unsigned percent = 0;
    std::uint64_t seed = 0;
};

/// \brief Which outcome is next, by call; what a list says, or the weather.
///
/// Any thread.
class Outcomes {
public:
    Outcomes(OutcomeLists lists, Weather weather);

    /// Takes the next outcome of \p call if \p wanted says so of it; else it stays the next. One
    /// outcome is looked at by each part of the service that can play it, in the order in which a
    /// request passes them.
    std::optional<Outcome> takeIf(
        const std::string &call, const std::function<bool(const Outcome &)> &wanted);
    Outcome take(const std::string &call);
    /// Of the first in \p whose that has outcomes of \p call set, else everybody's.
    Outcome take(const std::string &call, const std::vector<std::string> &whose);
    /// What is named in \p lists begins anew, with these; an empty list ends it.
    void replace(const OutcomeLists &lists);
    /// All begins anew, with these and nothing else.
    void reset(OutcomeLists lists);
    OutcomeLists lists() const;

private:
    struct Place {
        std::size_t served = 0;
        std::optional<Outcome> next;
    };
    Outcome draw(const OutcomeKey &key, std::size_t index) const;
    Outcome &next(const OutcomeKey &key);

    mutable std::mutex m_mutex;
    OutcomeLists m_lists;
    Weather m_weather;
    std::map<OutcomeKey, Place> m_places;
};

}
