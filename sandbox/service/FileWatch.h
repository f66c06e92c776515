#pragma once

#include <functional>
#include <string>
#include <thread>

namespace sandbox {

/// \brief Calls back whenever a file was written or replaced, as editors do it.
///
/// The callback runs on a thread of this object's own, which ends with it.
class FileWatch {
public:
    FileWatch(const std::string &path, std::function<void()> changed);
    ~FileWatch();
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;

private:
    int m_notifier;
    int m_ended;
    std::thread m_thread;
};

}
