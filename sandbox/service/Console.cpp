#include "sandbox/service/Console.h"

#include <ctime>
#include <iostream>

namespace sandbox {

void Console::say(const std::string &what, const std::string &verdict)
{
    const auto now = std::time(nullptr);
    std::tm parts {};
    ::localtime_r(&now, &parts);
    char time[sizeof "00:00:00"] = {};
    std::strftime(time, sizeof time, "%H:%M:%S", &parts);

    // What a stranger sent must not pass for a line of ours.
    auto line = std::string(time) + "  " + what
        + std::string(what.size() < 10 ? 10 - what.size() : 0, ' ') + "  " + verdict;
    for (auto &c : line)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            c = '?';
    const std::lock_guard lock(m_mutex);
    std::cout << line << std::endl; // flushed: a person or a pipe watches
}

}
