#include "sandbox/service/Outcomes.h"

#include "sandbox/service/CallForm.h"

#include <algorithm>
#include <random>
#include <utility>

namespace sandbox {

Outcomes::Outcomes(Lists lists, Weather weather)
    : m_lists(std::move(lists))
    , m_weather(weather)
{
}

Outcome Outcomes::draw(const std::string &call, std::size_t index) const
{
    const auto found = m_lists.find(call);
    if (found != m_lists.end()) {
        const auto &list = found->second;
        // Broken connections end with their list: else nobody could set other outcomes any more.
        if (call == connectionName && index >= list.size())
            return {};
        return list[std::min(index, list.size() - 1)];
    }
    if (m_weather.percent == 0 || !isCall(call))
        return {};
    // By call and number, so that a seed brings the same faults however calls interleave. The
    // engine and the arithmetic are those of the standard: the same everywhere.
    const auto number = std::find(std::begin(callNames), std::end(callNames), call);
    std::seed_seq seeds { m_weather.seed & 0xffffffffU, m_weather.seed >> 32U,
        static_cast<std::uint64_t>(number - std::begin(callNames)),
        static_cast<std::uint64_t>(index) };
    std::mt19937 random(seeds);
    Outcome outcome;
    const auto &faults = commonWeather();
    if (random() % 100 < m_weather.percent)
        outcome.fault = faults[random() % faults.size()];
    return outcome;
}

std::optional<Outcome> Outcomes::takeIf(
    const std::string &call, const std::function<bool(const Outcome &)> &wanted)
{
    const std::lock_guard lock(m_mutex);
    auto &place = m_places[call];
    if (!place.next)
        place.next = draw(call, place.served++);
    if (!wanted(*place.next))
        return std::nullopt;
    return std::exchange(place.next, std::nullopt);
}

Outcome Outcomes::take(const std::string &call)
{
    return *takeIf(call, [](const Outcome &) { return true; });
}

void Outcomes::replace(const Lists &lists)
{
    const std::lock_guard lock(m_mutex);
    for (const auto &[call, list] : lists) {
        m_lists[call] = list;
        m_places.erase(call);
    }
}

}
