#pragma once

#include "sandbox/service/Calls.h"
#include "sandbox/service/Front.h"
#include "sandbox/service/Judge.h"
#include "sandbox/service/Outcomes.h"
#include "sandbox/service/RequestCount.h"
#include "sandbox/service/Scenario.h"
#include "sandbox/service/State.h"

#include <httplib.h>

#include <condition_variable>
#include <mutex>
#include <string>

namespace sandbox {

/// \brief The service behind its front: has requests judged, answers, says so on stdout.
class Service {
public:
    Service(Scenario scenario, Weather weather);

    /// \param port 0 takes a free one
    /// \return the port, or -1 with errno when it is taken
    int bind(int port);
    /// Serves until stop(); the caller's thread waits.
    void run();
    /// Any thread. Answers that were to last are cut short.
    void stop();

private:
    void routeCalls();
    void routeSandbox();

    void answerCall(const httplib::Request &request, httplib::Response &response);
    void refuse(httplib::Response &response, const std::string &call, const Refusal &refusal,
        bool readable);
    void sendIcon(const std::string &name, httplib::Response &response);
    void send(httplib::Response &response, const nlohmann::json &envelope, const Outcome &outcome,
        bool readable);
    /// \return false when the service stopped meanwhile
    bool waitFor(std::chrono::milliseconds duration);
    void say(const std::string &call, const std::string &verdict);

    const Scenario m_scenario;
    State m_state;
    Calls m_calls;
    Judge m_judge;
    Outcomes m_outcomes;
    RequestCount m_count;
    Front m_front;
    httplib::Server m_server; // behind the front
    int m_port = -1; // of the server, known to the front only

    std::mutex m_mutex;
    std::condition_variable m_stopping;
    bool m_stopped = false;
    std::mutex m_console;
};

}
