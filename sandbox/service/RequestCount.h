#pragma once

#include <map>
#include <mutex>
#include <string>

namespace sandbox {

/// \brief How many POSTs reached the service, by call, whatever became of them.
///
/// Any thread.
class RequestCount {
public:
    void add(const std::string &call);
    void reset();
    std::map<std::string, int> posts() const;

private:
    mutable std::mutex m_mutex;
    std::map<std::string, int> m_posts;
};

}
