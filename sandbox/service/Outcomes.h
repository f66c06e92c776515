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
    using Lists = std::map<std::string, std::vector<Outcome>>;

    Outcomes(Lists lists, Weather weather);

    /// Takes the next outcome of \p call if \p wanted says so of it; else it stays the next. One
    /// outcome is looked at by each part of the service that can play it, in the order in which a
    /// request passes them.
    std::optional<Outcome> takeIf(
        const std::string &call, const std::function<bool(const Outcome &)> &wanted);
    Outcome take(const std::string &call);
    /// The calls named in \p lists begin anew, with these.
    void replace(const Lists &lists);

private:
    struct Place {
        std::size_t served = 0;
        std::optional<Outcome> next;
    };
    Outcome draw(const std::string &call, std::size_t index) const;

    std::mutex m_mutex;
    Lists m_lists;
    Weather m_weather;
    std::map<std::string, Place> m_places;
};

}
