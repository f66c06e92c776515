#include "sandbox/exec/Children.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>

using namespace std::chrono_literals;

namespace sandbox {
namespace {
constexpr int signalled = 128; // and the signal, as shells count

sigset_t watched()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int each : { SIGCHLD, SIGINT, SIGTERM, SIGHUP })
        sigaddset(&set, each);
    return set;
}

/// Each process that has us as its parent.
std::vector<pid_t> childrenOfThis()
{
    std::vector<pid_t> found;
    const auto self = std::to_string(getpid());
    std::ifstream list("/proc/self/task/" + self + "/children");
    for (pid_t each = 0; list >> each;)
        found.push_back(each);
    return found;
}

/// In the new process, where only simple calls are safe. Returns what went wrong.
int become(const Children::Start &program, bool inFront, char *const *words, pid_t parent)
{
    setpgid(0, 0);
    if (inFront)
        tcsetpgrp(STDIN_FILENO, getpid());
    const auto none = sigset_t {};
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGTTOU, SIG_DFL);
    // Should we be killed outright, it ends as well.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent)
        return ECHILD;
    if (program.output >= 0 && dup2(program.output, STDOUT_FILENO) < 0)
        return errno;
    execvp(words[0], words);
    return errno;
}
}

Children::Children()
    : m_isInFront(tcgetpgrp(STDIN_FILENO) == getpgrp())
{
    const auto set = watched();
    sigprocmask(SIG_BLOCK, &set, nullptr);
    signal(SIGTTOU, SIG_IGN); // taking the terminal back from behind
    m_signals = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

Children::~Children()
{
    endAll();
    close(m_signals);
}

pid_t Children::start(const Start &program)
{
    std::vector<char *> words;
    for (const auto &word : program.words)
        words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);

    int pipe[2]; // closed by a start that succeeds
    if (pipe2(pipe, O_CLOEXEC) != 0)
        return -errno;
    const auto parent = getpid();
    const auto child = fork();
    if (child == 0) {
        const int fault = become(program, program.inFront && m_isInFront, words.data(), parent);
        static_cast<void>(!write(pipe[1], &fault, sizeof fault));
        _exit(signalled - 1);
    }
    close(pipe[1]);
    int fault = child < 0 ? errno : 0;
    if (child > 0 && read(pipe[0], &fault, sizeof fault) == sizeof fault)
        waitpid(child, nullptr, 0);
    close(pipe[0]);
    return fault != 0 ? -fault : child;
}

bool Children::reap(pid_t program, int &status)
{
    bool ended = false;
    int each = 0;
    for (pid_t gone = 0; (gone = waitpid(-1, &each, WNOHANG)) > 0;) {
        if (gone == program) {
            ended = true;
            status = WIFSIGNALED(each) ? signalled + WTERMSIG(each) : WEXITSTATUS(each);
        }
    }
    return ended;
}

int Children::wait(
    pid_t program, int pipe, const std::function<void()> &hear, const std::function<bool()> &enough)
{
    int status = 0;
    while (!reap(program, status)) {
        pollfd ready[] = { { m_signals, POLLIN, 0 }, { pipe, POLLIN, 0 } };
        poll(ready, 2, -1);
        if (ready[1].revents & POLLIN)
            hear();
        else if (ready[1].revents != 0)
            pipe = -1; // nobody writes to it any more
        if (enough())
            return -1;
        signalfd_siginfo came {};
        while (read(m_signals, &came, sizeof came) == sizeof came) {
            if (came.ssi_signo == SIGCHLD)
                continue;
            kill(-program, m_asked++ == 0 ? static_cast<int>(came.ssi_signo) : SIGKILL);
            kill(-program, SIGCONT); // behind others it may have been stopped
        }
    }
    return status;
}

void Children::endAll()
{
    const auto patience = std::chrono::steady_clock::now() + 3s;
    int status = 0;
    reap(0, status);
    // Whoever loses its parent becomes ours, so it takes as many rounds as there are generations.
    for (auto left = childrenOfThis(); !left.empty(); left = childrenOfThis()) {
        const bool late = std::chrono::steady_clock::now() > patience;
        for (const auto each : left)
            kill(each, late ? SIGKILL : SIGTERM);
        pollfd ready { m_signals, POLLIN, 0 };
        constexpr int glance = 100; // ms
        poll(&ready, 1, glance);
        signalfd_siginfo came {};
        while (read(m_signals, &came, sizeof came) == sizeof came) { }
        reap(0, status);
    }
    if (m_isInFront)
        tcsetpgrp(STDIN_FILENO, getpgrp());
}

}
