#pragma once

#include <map>
#include <mutex>
#include <string>

namespace sandbox {

/// \brief How many POSTs reached the service, by call, whatever became of them, and how many of
/// them met a fault.
///
/// Any thread.
class RequestCount {
public:
    struct Counts {
        int posts = 0;
        int faults = 0;
    };

    void addPost(const std::string &call);
    void addFault(const std::string &call);
    void reset();
    std::map<std::string, Counts> counts() const;

private:
    mutable std::mutex m_mutex;
    std::map<std::string, Counts> m_counts;
};

}
