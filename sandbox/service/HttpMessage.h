#pragma once

#include "sandbox/service/Fault.h"

#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

/// \brief A request or an answer as its bytes are, open to be changed and spoilt.
///
/// One thread.
class HttpMessage {
public:
    /// \param bytes of the head at least
    explicit HttpMessage(std::string bytes);

    /// Removes every header \p name. \return the value of the first; empty when there was none
    std::string take(std::string_view name);
    /// Does to an answer what \p fault does to head and body, if it is one of HTTP.
    void apply(const Fault &fault);

    std::string head() const;
    const std::string &body() const { return m_body; }
    /// What an endless fault goes on with.
    const std::string &filler() const { return m_filler; }
    /// The body goes on for ever behind its bytes.
    bool isEndless() const { return m_endless; }

private:
    void add(const std::string &name, const std::string &value);
    void set(const std::string &name, const std::string &value);
    void setBody(std::string body);
    void setStatus(const std::string &number);
    void setLength(const std::string &change);
    void chunk(bool endless);

    std::string m_start;
    std::vector<std::string> m_headers; // lines without their ends
    std::string m_body;
    std::string m_filler = std::string(4096, 'x');
    bool m_endless = false;
};

}
