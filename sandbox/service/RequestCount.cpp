#include "sandbox/service/RequestCount.h"

namespace sandbox {

void RequestCount::add(const std::string &call)
{
    const std::lock_guard lock(m_mutex);
    ++m_posts[call];
}

void RequestCount::reset()
{
    const std::lock_guard lock(m_mutex);
    m_posts.clear();
}

std::map<std::string, int> RequestCount::posts() const
{
    const std::lock_guard lock(m_mutex);
    return m_posts;
}

}
