#pragma once

#include "sandbox/service/Connection.h"
#include "sandbox/service/Outcomes.h"
#include "sandbox/service/RequestCount.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>

namespace sandbox {

/// \brief The public side of the service: owns its port and every connection to it.
///
/// Whole requests go on to the strict service behind, on a port that only this one knows; its
/// answers come back through here, where what happens on the wire can be spoilt. A thread a
/// connection: those that are never answered hold up nobody else.
class Front {
public:
    /// Hears of a fault that came before the service behind could.
    using Played = std::function<void(const std::string &call, const std::string &fault)>;

    /// In which the service behind names the fault of its answer; it never reaches a client.
    static constexpr auto faultHeader = "X-Sandbox-Fault";

    /// All three are used until run() has returned, by any thread.
    Front(Outcomes &outcomes, RequestCount &count, Played played);
    ~Front();
    Front(const Front &) = delete;
    Front &operator=(const Front &) = delete;

    /// \param port 0 takes a free one
    /// \return the port, or -1 with errno when it is taken
    int bind(int port);
    /// Serves until stop(); the caller's thread waits.
    /// \param backPort where the service behind listens
    void run(int backPort);
    /// Any thread, at any time. Ends every connection.
    void stop();

private:
    void serve(Connection &client);
    std::string ask(Connection &client, const std::string &request) const;

    Outcomes &m_outcomes;
    RequestCount &m_count;
    Played m_played;
    int m_socket = -1;
    int m_stopped = -1;
    int m_backPort = 0;

    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_connections = 0;
};

}
