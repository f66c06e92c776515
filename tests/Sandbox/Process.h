#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

/// A program that a test started. Killed, if it still runs, when this goes.
class Process {
public:
    explicit Process(const std::vector<std::string> &arguments);
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    /// Reads output and errors until \p text stands there. \return all of it so far
    std::string waitForOutput(const std::string &text);
    void signal(int number) const;
    pid_t id() const { return m_pid; }
    /// \return the exit code; nothing when it still runs after \p patience, -N when signal N ended
    /// it
    std::optional<int> waitForEnd(std::chrono::milliseconds patience = std::chrono::seconds(20));
    /// All that it wrote so far, or since it was taken.
    std::string output();
    std::string takeOutput();

private:
    bool readMore(std::chrono::milliseconds patience);

    pid_t m_pid = 0;
    int m_pipe = -1;
    std::string m_output;
    std::optional<int> m_exit;
};

/// A file that goes with the test.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string &text = {});
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const std::string &path() const { return m_path; }

private:
    std::string m_path;
};

testing::AssertionResult holds(const std::string &text, const std::string &part);
/// Runs it to its end, which must be \p code, once it said \p part. \return all that it said
std::string expectEnd(
    const std::vector<std::string> &words, int code, const std::string &part = {});
