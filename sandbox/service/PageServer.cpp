#include "sandbox/service/PageServer.h"

#include "sandbox/service/Routes.h"

namespace sandbox {

PageServer::PageServer(Sandbox &sandbox)
    : m_sandbox(sandbox)
{
    constexpr std::size_t threads = 32; // one is held by each page that waits for news
    constexpr std::size_t mostBytes = 4U << 20U; // a scenario may be long
    m_server.set_keep_alive_max_count(1); // else each idle connection would hold a thread
    m_server.set_read_timeout(2);
    m_server.new_task_queue = [] { return new httplib::ThreadPool(threads); };
    m_server.set_payload_max_length(mostBytes);
    m_server.set_socket_options([](int socket) {
        const int on = 1; // but never shared with another process
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    Routes routes(m_server, sandbox);
    routeState(routes);
    routeOutcomes(routes);
    routeJournal(routes);
    routeScenario(routes);
    routePage(routes);
    routeRest(routes, "[^]*");
}

bool PageServer::bind(int port)
{
    if (port == 0)
        m_sandbox.pagePort = m_server.bind_to_any_port("127.0.0.1");
    else if (m_server.bind_to_port("127.0.0.1", port))
        m_sandbox.pagePort = port;
    return m_sandbox.pagePort >= 0;
}

void PageServer::run() { m_server.listen_after_bind(); }

void PageServer::stop() { stopServing(m_server); }

}
