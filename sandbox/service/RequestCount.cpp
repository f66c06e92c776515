#include "sandbox/service/RequestCount.h"

namespace sandbox {

void RequestCount::addPost(const std::string &call)
{
    const std::lock_guard lock(m_mutex);
    ++m_counts[call].posts;
}

void RequestCount::addFault(const std::string &call)
{
    const std::lock_guard lock(m_mutex);
    ++m_counts[call].faults;
}

void RequestCount::reset()
{
    const std::lock_guard lock(m_mutex);
    m_counts.clear();
}

std::map<std::string, RequestCount::Counts> RequestCount::counts() const
{
    const std::lock_guard lock(m_mutex);
    return m_counts;
}

}
