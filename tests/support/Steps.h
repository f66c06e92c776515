#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// \brief A transcript: steps, and what came of each, held against one that somebody read. A step
/// is a line that begins with "# " or "$ ".
namespace transcript {

struct Step {
    std::string head;
    std::string text; ///< whole lines
};
using Steps = std::vector<Step>;

inline Steps read(const std::string &path)
{
    Steps steps;
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("# ") || line.starts_with("$ "))
            steps.push_back({ line, {} });
        else if (!steps.empty())
            steps.back().text += line + '\n';
    }
    return steps;
}

inline void write(const std::string &path, const Steps &steps)
{
    std::ofstream file(path);
    for (const auto &[head, text] : steps)
        file << head << '\n' << text;
    EXPECT_TRUE(file.flush()) << path;
}

/// Where what was seen is left to be looked at.
inline std::string seenFile(const std::string &path)
{
    return std::filesystem::path(path).stem().string() + ".seen.txt";
}

/// TRANSCRIPT=approve in the environment takes what is seen for what is approved.
inline void takeIfMeant(const Steps &seen, const std::string &path)
{
    if (const char *wish = std::getenv("TRANSCRIPT"); wish && wish == std::string("approve"))
        write(path, seen);
}

/// Says how the first step that differs does.
inline void expectApproved(const Steps &seen, const std::string &path)
{
    const auto linesOf = [](const Step &step) {
        std::vector<std::string> lines { step.head };
        std::istringstream text(step.text);
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    };
    const Steps approved = read(path);
    for (std::size_t i = 0; i < std::max(seen.size(), approved.size()); ++i) {
        auto now = linesOf(i < seen.size() ? seen[i] : Step { "(no more steps)", {} });
        auto then = linesOf(i < approved.size() ? approved[i] : Step { "(no more steps)", {} });
        const auto size = std::max(now.size(), then.size());
        now.resize(size, "(no more)");
        then.resize(size, "(no more)");
        const auto [is, was] = std::mismatch(now.begin(), now.end(), then.begin());
        if (is == now.end())
            continue;
        write(seenFile(path), seen);
        ADD_FAILURE() << then.front() << ", line " << is - now.begin() << ":\n  " << *is
                      << "\nin place of\n  " << *was << "\nsee " << seenFile(path) << " here; "
                      << "TRANSCRIPT=approve takes it for the approved one";
        return;
    }
}

} // namespace transcript
