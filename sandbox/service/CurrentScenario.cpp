#include "sandbox/service/CurrentScenario.h"

namespace sandbox {

CurrentScenario::CurrentScenario(Scenario scenario)
    : m_scenario(std::make_shared<const Scenario>(std::move(scenario)))
{
}

CurrentScenario::Pointer CurrentScenario::get() const
{
    const std::lock_guard lock(m_mutex);
    return m_scenario;
}

void CurrentScenario::set(Scenario scenario)
{
    auto next = std::make_shared<const Scenario>(std::move(scenario));
    const std::lock_guard lock(m_mutex);
    m_scenario.swap(next);
}

}
