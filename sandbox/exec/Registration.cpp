#include "sandbox/exec/Registration.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace sandbox {
namespace {
namespace fs = std::filesystem;

// Those whose links the messenger reads.
constexpr std::array schemes { "parlo", "kite", "murmur", "wrenly", "hushbell" };
constexpr auto entry = "parloquin-messenger.desktop";

std::string valueOf(const char *variable, const char *usual)
{
    const auto *const value = std::getenv(variable);
    return value != nullptr && *value != '\0' ? value : usual;
}

void putInFront(const char *variable, const fs::path &folder, const char *usual)
{
    setenv(variable, (folder.string() + ':' + valueOf(variable, usual)).c_str(), 1);
}

/// Beside this program, as it is built and installed; else it is to be in PATH already.
void findMessenger()
{
    const auto beside = fs::read_symlink("/proc/self/exe").parent_path();
    if (fs::exists(beside / "parloquin-messenger"))
        putInFront("PATH", beside, "/usr/local/bin:/usr/bin:/bin");
    else if (std::system("command -v parloquin-messenger >/dev/null") != 0)
        throw std::runtime_error("no parloquin-messenger beside this program, nor in PATH");
}
}

Registration::Registration(const std::string &service)
{
    findMessenger();
    auto name = fs::temp_directory_path() / "parloquin-XXXXXX";
    auto made = name.string();
    if (mkdtemp(made.data()) == nullptr)
        throw std::runtime_error(name.string() + ": " + std::strerror(errno));
    m_folder = made;

    fs::create_directory(m_folder / "applications");
    // By its name, found through PATH: desktops look for a quoted program under the quoted name
    // where that has a percent sign.
    std::ofstream desktop(m_folder / "applications" / entry);
    desktop << "[Desktop Entry]\nType=Application\nName=Stand-in messenger\nNoDisplay=true\n"
            << "Exec=parloquin-messenger --service " << service << " %u\nMimeType=";
    std::ofstream defaults(m_folder / "mimeapps.list");
    defaults << "[Default Applications]\n";
    for (const auto *const scheme : schemes) {
        desktop << "x-scheme-handler/" << scheme << ';';
        defaults << "x-scheme-handler/" << scheme << '=' << entry << '\n';
    }
    desktop << '\n';
    if (!desktop.flush() || !defaults.flush())
        throw std::runtime_error(made + ": cannot be written");

    putInFront("XDG_DATA_DIRS", m_folder, "/usr/local/share:/usr/share");
    putInFront("XDG_CONFIG_DIRS", m_folder, "/etc/xdg");
}

Registration::~Registration()
{
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

std::string Registration::complaint() const
{
    // Asked of a process of its own, since who has asked once may remember. Where the desktop's
    // command is not installed there is nobody to ask.
    for (const auto *const scheme : schemes) {
        const auto question = std::string("LC_ALL=C gio mime x-scheme-handler/") + scheme
            + " 2>/dev/null || test $? -eq 127 && echo " + entry;
        const std::unique_ptr<FILE, int (*)(FILE *)> answer(popen(question.c_str(), "r"), pclose);
        std::array<char, 4096> line {};
        if (answer && std::fgets(line.data(), line.size(), answer.get()) != nullptr
            && std::string_view(line.data()).find(entry) == std::string_view::npos)
            return std::string(scheme) + ": links do not reach the messenger ("
                + std::strtok(line.data(), "\n") + "); settings of your own go first";
    }
    return {};
}

}
