#include "sandbox/service/Outcomes.h"

#include "sandbox/service/CallForm.h"

#include <algorithm>
#include <random>
#include <utility>

namespace sandbox {

Outcomes::Outcomes(OutcomeLists lists, Weather weather)
    : m_weather(weather)
{
    reset(std::move(lists));
}

Outcome Outcomes::draw(const OutcomeKey &key, std::size_t index) const
{
    const auto &call = key.call;
    const auto found = m_lists.find(key);
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

Outcome &Outcomes::next(const OutcomeKey &key)
{
    auto &place = m_places[key];
    if (!place.next)
        place.next = draw(key, place.served++);
    return *place.next;
}

std::optional<Outcome> Outcomes::takeIf(
    const std::string &call, const std::function<bool(const Outcome &)> &wanted)
{
    const std::lock_guard lock(m_mutex);
    const OutcomeKey key { call };
    if (!wanted(next(key)))
        return std::nullopt;
    return std::exchange(m_places[key].next, std::nullopt);
}

Outcome Outcomes::take(const std::string &call) { return take(call, {}); }

Outcome Outcomes::take(const std::string &call, const std::vector<std::string> &whose)
{
    const std::lock_guard lock(m_mutex);
    OutcomeKey key { call };
    for (const auto &each : whose)
        if (m_lists.contains({ call, each })) {
            key.whose = each;
            break;
        }
    auto outcome = std::move(next(key));
    m_places[key].next.reset();
    return outcome;
}

void Outcomes::replace(const OutcomeLists &lists)
{
    const std::lock_guard lock(m_mutex);
    for (const auto &[key, list] : lists) {
        if (list.empty())
            m_lists.erase(key);
        else
            m_lists[key] = list;
        m_places.erase(key);
    }
}

void Outcomes::reset(OutcomeLists lists)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(lists, [](const auto &each) { return each.second.empty(); });
    m_lists = std::move(lists);
    m_places.clear();
}

OutcomeLists Outcomes::lists() const
{
    const std::lock_guard lock(m_mutex);
    return m_lists;
}

}
