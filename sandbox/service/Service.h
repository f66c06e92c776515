#pragma once

#include "sandbox/service/Front.h"
#include "sandbox/service/Sandbox.h"

#include <httplib.h>

#include <string>

namespace sandbox {

/// \brief The service behind its front: has requests judged, answers, says so on stdout.
class Service {
public:
    /// \param sandbox outlives this
    explicit Service(Sandbox &sandbox);

    /// \param port 0 takes a free one
    /// \return false with errno when it is taken; else the sandbox knows the port
    bool bind(int port);
    /// Serves until stop(); the caller's thread waits.
    void run();
    /// Any thread. Answers that were to last are cut short.
    void stop();

private:
    void routeCalls();

    void answerCall(const httplib::Request &request, httplib::Response &response);
    void refuse(httplib::Response &response, Exchange &exchange, const Refusal &refusal,
        const Scenario *readable = nullptr);
    void sendIcon(const httplib::Request &request, httplib::Response &response);
    void send(httplib::Response &response, Exchange &exchange, const nlohmann::json &envelope,
        const Outcome &outcome, const Scenario *readable);

    Sandbox &m_sandbox;
    Front m_front;
    httplib::Server m_server; // behind the front
    int m_port = -1; // of the server, known to the front only
};

}
