#pragma once

#include "sandbox/service/Sandbox.h"

#include <httplib.h>

namespace sandbox {

/// \brief The page for developers and its calls, at a port of their own: no fault that is meant for
/// a client reaches it.
class PageServer {
public:
    /// \param sandbox outlives this
    explicit PageServer(Sandbox &sandbox);

    /// \param port 0 takes a free one
    /// \return false with errno when it is taken; else the sandbox knows the port
    bool bind(int port);
    /// Serves until stop(); the caller's thread waits.
    void run();
    /// Any thread.
    void stop();

private:
    Sandbox &m_sandbox;
    httplib::Server m_server;
};

}
