#include "sandbox/service/FileWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>

namespace sandbox {
namespace {
/// Takes what was told so far. \return whether \p name was among it
bool isTold(int notifier, const std::string &name)
{
    alignas(inotify_event) char buffer[4096];
    const auto size = ::read(notifier, buffer, sizeof buffer);
    bool told = false;
    for (std::ptrdiff_t at = 0; at < size;) {
        const auto *const event = reinterpret_cast<const inotify_event *>(buffer + at);
        told = told || (event->len > 0 && name == event->name);
        at += static_cast<std::ptrdiff_t>(sizeof(inotify_event) + event->len);
    }
    return told;
}
}

FileWatch::FileWatch(const std::string &path, std::function<void()> changed)
    : m_notifier(::inotify_init1(IN_CLOEXEC))
    , m_ended(::eventfd(0, EFD_CLOEXEC))
{
    // The folder, since most editors put another file in its place.
    const auto file = std::filesystem::absolute(path);
    ::inotify_add_watch(m_notifier, file.parent_path().c_str(), IN_CLOSE_WRITE | IN_MOVED_TO);
    m_thread = std::thread([this, name = file.filename().string(), changed = std::move(changed)] {
        pollfd watched[] = { { m_ended, POLLIN, 0 }, { m_notifier, POLLIN, 0 } };
        while (::poll(watched, 2, -1) >= 0 && watched[0].revents == 0)
            if (isTold(m_notifier, name))
                changed();
    });
}

FileWatch::~FileWatch()
{
    const std::uint64_t one = 1;
    static_cast<void>(::write(m_ended, &one, sizeof one));
    m_thread.join();
    ::close(m_notifier);
    ::close(m_ended);
}

}
