#pragma once

#include "Client.h"

#include <cstdint>
#include <utility>

void replaceEach(std::string &text, const std::string &from, const std::string &to);
/// \p text with each match of \p pattern in place of which \p as says
std::string rewritten(const std::string &text, const std::string &pattern,
    const std::function<std::string(const std::smatch &)> &as);

/// \brief What comes of the steps played at one sandbox, as text that two runs write alike.
class Account {
public:
    /// \param value of this run, told as \p name from now on
    void mean(const std::string &value, const std::string &name) { m_meant[name] = value; }
    void forget(const std::string &name) { m_meant.erase(name); }
    /// \p step with this run's values in place of their names
    std::string withValues(std::string step) const;
    /// What the journal notes of the next request beyond this is told.
    void asked(const json &request) { m_sent = request; }

    void line(const std::string &text);
    void lines(const std::string &text);
    void answered(const std::string &bytes, const std::string &target);
    /// What has been noted since this was told last. \param said on the console meanwhile
    void noted(const Sandbox &sandbox, const std::string &said);
    std::uint64_t revision() const { return m_revision; } ///< of the journal
    /// \return the lines since this was asked last
    std::string take() { return std::exchange(m_lines, {}); }

private:
    std::string masked(std::string text);
    std::string once(const char *series, const std::string &text);
    void tellEntry(json row, json entry, const std::string &said);

    std::string m_lines;
    std::map<std::string, std::string> m_meant; ///< names, and what they stand for
    std::map<std::string, std::map<std::string, std::size_t>> m_told; ///< by sort
    std::uint64_t m_revision = 0;
    json m_sent; ///< as the journal has it
    json m_answer;
    bool m_isEncrypted = false; ///< the answer
};
