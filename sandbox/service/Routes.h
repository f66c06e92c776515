#pragma once

#include "sandbox/service/Sandbox.h"

#include <httplib.h>

#include <nlohmann/json.hpp>

/// The calls for developers, below /sandbox/ at both ports, and the page at its own.
namespace sandbox {

/// \brief Adds routes that only a developer's own tools and the page of this sandbox get through.
///
/// Every route is guarded alike, so that none can be forgotten.
class Routes {
public:
    using Handler = std::function<void(const httplib::Request &, httplib::Response &)>;

    /// Both must outlive the routes.
    Routes(httplib::Server &server, Sandbox &sandbox);

    Sandbox &sandbox() const { return m_sandbox; }
    void get(const std::string &pattern, Handler handler);
    void post(const std::string &pattern, Handler handler);
    /// Whatever the method.
    void any(const std::string &pattern, const Handler &handler);

private:
    Handler guarded(Handler handler) const;

    httplib::Server &m_server;
    Sandbox &m_sandbox;
};

/// Why a request may be the work of a foreign page in a developer's browser; nothing when it is
/// not. \param pagePort of the one page that may ask
std::optional<Refusal> faultOfOrigin(const httplib::Request &request, int pagePort);

/// Also a server that is about to begin.
void stopServing(httplib::Server &server);

void answer(httplib::Response &response, int status, const nlohmann::json &body);
void answerError(httplib::Response &response, int status, const std::string &error);

void routeState(Routes &routes);
void routeOutcomes(Routes &routes);
void routeJournal(Routes &routes);
void routeScenario(Routes &routes);
/// The page itself.
void routePage(Routes &routes);
/// What is not there, below /sandbox/ only or anywhere.
void routeRest(Routes &routes, const std::string &pattern);

}
