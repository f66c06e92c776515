#pragma once

#include "sandbox/service/Fault.h"
#include "sandbox/service/RequestCount.h"

#include <chrono>
#include <string>
#include <string_view>

namespace sandbox {

/// \brief A client's connection, and what may go wrong with it.
///
/// One thread; every wait ends when the service does. What comes in is counted by request line.
class Connection {
public:
    /// \param socket becomes this one's and closes with it
    /// \param stopped a descriptor that turns readable when the service ends; borrowed
    Connection(int socket, int stopped, RequestCount &count);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    int socket() const { return m_socket; }
    /// Adds to \p bytes what comes next, \p most at a time.
    /// \return false when nothing comes in \p patience, or ever again
    bool receive(std::string &bytes, std::size_t most, std::chrono::milliseconds patience);
    /// \return false when the client has gone
    bool send(std::string_view bytes);

    /// Sends \p whole, whose first \p headSize bytes are the head, as \p fault has it, and ends
    /// the connection.
    /// \param filler what an endless answer consists of
    void play(const Fault &fault, std::string_view whole, std::size_t headSize,
        const std::string &filler);

private:
    enum class Ready { yes, late, stopped };
    Ready waitFor(short events, std::chrono::milliseconds patience) const;
    /// Reads and drops what comes. \return false when the client has gone before
    bool dropFor(std::chrono::milliseconds duration);
    void countLines(std::string_view bytes);

    void close();
    void reset();
    void end();
    void dropUntilGone();

    int m_socket;
    int m_stopped;
    RequestCount &m_count;
    std::string m_line; // begun, of the request
};

}
