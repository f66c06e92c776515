#pragma once

#include "sandbox/service/Calls.h"
#include "sandbox/service/Judge.h"
#include "sandbox/service/Scenario.h"
#include "sandbox/service/State.h"

#include <httplib.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>

namespace sandbox {

/// \brief The service on its socket: takes requests, has them judged, answers, says so on stdout.
class Service {
public:
    explicit Service(Scenario scenario);

    /// \param port 0 takes a free one
    /// \return the port, or -1 when it is taken
    int bind(int port);
    /// Serves until stop(); the caller's thread waits.
    /// \return false when serving failed
    bool run();
    /// Any thread. Answers that were to last are cut short.
    void stop();

private:
    void routeCalls();
    void routeSandbox();

    void answerCall(const httplib::Request &request, httplib::Response &response);
    void refuse(httplib::Response &response, const std::string &call, const Refusal &refusal,
        bool readable);
    void send(httplib::Response &response, const nlohmann::json &envelope, const Outcome &outcome,
        bool readable);
    Outcome nextOutcome(const std::string &call);
    /// \return false when the service stopped meanwhile
    bool waitFor(std::chrono::milliseconds duration);
    void say(const std::string &call, const std::string &verdict);

    const Scenario m_scenario;
    State m_state;
    Calls m_calls;
    Judge m_judge;
    httplib::Server m_server;
    int m_socket = -1; // the one it listens on; borrowed

    std::mutex m_mutex;
    std::condition_variable m_stopping;
    bool m_stopped = false;
    std::map<std::string, std::size_t> m_served; // by call
    std::mutex m_console;
};

}
