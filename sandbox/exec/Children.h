#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace sandbox {

/// \brief Starts programs and ends all that they left behind.
///
/// One a process, on its only thread: it takes the signals that end a program, and adopts the
/// orphans of what it started.
class Children {
public:
    Children();
    ~Children(); ///< ends all
    Children(const Children &) = delete;
    Children &operator=(const Children &) = delete;

    struct Start {
        std::vector<std::string> words; ///< the program, found through PATH, and its arguments
        int output = -1; ///< what becomes its standard output; -1: ours
        bool inFront = false; ///< gets the terminal, where we have it
    };
    /// \return its number, or minus errno when it cannot be started
    pid_t start(const Start &program);

    /// Waits for \p program, and has \p hear read \p pipe whenever there is something in it.
    /// A signal to end is passed on; the second one of them kills.
    /// \param enough asked after each reading; ends the wait early
    /// \return as a shell says it: its exit code, or 128 and the signal; -1 when there is enough
    int wait(
        pid_t program, int pipe, const std::function<void()> &hear,
        const std::function<bool()> &enough = [] { return false; });

    /// Asks all that still run to end, and kills what has not within three seconds.
    void endAll();

private:
    bool reap(pid_t program, int &status);

    int m_signals; // a descriptor
    int m_asked = 0; // signals to end so far
    bool m_isInFront; // of the terminal, as what a shell runs in the background is not
};

}
