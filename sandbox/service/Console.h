#pragma once

#include <mutex>
#include <string>

namespace sandbox {

/// \brief What the service says on stdout, a line each. Any thread.
class Console {
public:
    /// \param what the call, or what else it is about
    void say(const std::string &what, const std::string &verdict);

private:
    std::mutex m_mutex;
};

}
