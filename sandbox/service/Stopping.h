#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace sandbox {

/// \brief That the service ends, for those who wait meanwhile. Any thread.
class Stopping {
public:
    void stop()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_stopped = true;
        }
        m_changed.notify_all();
    }

    /// \return false when the service stopped meanwhile
    bool waitFor(std::chrono::milliseconds duration)
    {
        std::unique_lock lock(m_mutex);
        return !m_changed.wait_for(lock, duration, [this] { return m_stopped; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopped = false;
};

}
