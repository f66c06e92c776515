#include "Process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <utility>

using namespace std::chrono_literals;

namespace {
// A program that starts while another thread writes a file would hold that file open, and its end
// would be a change of the file to whoever watches it.
std::mutex starting;
}

Process::Process(const std::vector<std::string> &arguments)
{
    int ends[2] = {};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe");
    std::vector<char *> words;
    for (const auto &word : arguments)
        words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);
    std::unique_lock alone(starting);
    m_pid = ::fork();
    if (m_pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // also when a test dies
        for (const int signal : { SIGINT, SIGHUP }) // ignored where the suite is in the background
            ::signal(signal, SIG_DFL);
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        ::execv(words[0], words.data());
        ::_exit(127);
    }
    alone.unlock();
    ::close(ends[1]);
    m_pipe = ends[0];
}

Process::~Process()
{
    if (!m_exit) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    ::close(m_pipe);
}

bool Process::readMore(std::chrono::milliseconds patience)
{
    pollfd watched { m_pipe, POLLIN, 0 };
    if (::poll(&watched, 1, static_cast<int>(patience.count())) <= 0)
        return false;
    char bytes[4096];
    const auto count = ::read(m_pipe, bytes, sizeof bytes);
    if (count > 0)
        m_output.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
}

std::string Process::waitForOutput(const std::string &text)
{
    const auto deadline = std::chrono::steady_clock::now() + 20s; // however much it says
    while (m_output.find(text) == std::string::npos && std::chrono::steady_clock::now() < deadline
        && readMore(20s)) { }
    if (m_output.find(text) == std::string::npos)
        ADD_FAILURE() << "never said \"" << text << "\" but: " << m_output;
    return m_output;
}

std::string Process::output()
{
    while (readMore(0ms)) { }
    return m_output;
}

std::string Process::takeOutput()
{
    output();
    return std::exchange(m_output, {});
}

void Process::signal(int number) const { ::kill(m_pid, number); }

std::optional<int> Process::waitForEnd(std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!m_exit && std::chrono::steady_clock::now() < deadline) {
        readMore(10ms); // ends at once when the program closes its side
        int status = 0;
        if (::waitpid(m_pid, &status, WNOHANG) == m_pid)
            m_exit = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    output();
    if (!m_exit)
        ADD_FAILURE() << "runs on after " << patience.count() << " ms; it said: " << m_output;
    return m_exit;
}

TemporaryFile::TemporaryFile(const std::string &text)
    : m_path("/tmp/sandbox-test-XXXXXX")
{
    const std::lock_guard alone(starting);
    ::close(::mkstemp(m_path.data()));
    std::ofstream(m_path) << text;
}

TemporaryFile::~TemporaryFile() { ::unlink(m_path.c_str()); }

testing::AssertionResult holds(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos
        ? testing::AssertionSuccess()
        : testing::AssertionFailure() << "no \"" << part << "\" in: " << text;
}

std::string expectEnd(const std::vector<std::string> &words, int code, const std::string &part)
{
    Process program(words);
    EXPECT_EQ(program.waitForEnd(), code) << words.back() << ": " << program.output();
    EXPECT_TRUE(holds(program.output(), part)) << words.back();
    return program.output();
}
