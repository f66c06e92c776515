#include "sandbox/service/Routes.h"

#include <algorithm>
#include <thread>

namespace sandbox {
namespace {
using nlohmann::json;

bool isLoopback(std::string host)
{
    std::transform(host.begin(), host.end(), host.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (const auto colon = host.rfind(':'); colon != host.npos && !host.ends_with(']')) {
        const auto port = host.substr(colon + 1);
        if (port.empty() || port.find_first_not_of("0123456789") != port.npos)
            return false;
        host.erase(colon);
    }
    if (host == "localhost" || host == "[::1]")
        return true;
    // Nothing but four numbers of which the first is 127: "127.0.0.1.example" is a name.
    int numbers = 0;
    for (std::size_t at = 0; at <= host.size(); ++numbers) {
        const auto end = std::min(host.find('.', at), host.size());
        const auto number = host.substr(at, end - at);
        if (number.empty() || number.size() > 3
            || number.find_first_not_of("0123456789") != number.npos || std::stoi(number) > 255
            || (numbers == 0 && number != "127"))
            return false;
        at = end + 1;
    }
    return numbers == 4;
}

bool isJson(const httplib::Request &request)
{
    const auto type = request.get_header_value("Content-Type");
    return type.substr(0, type.find(';')) == "application/json" && json::accept(request.body);
}
}

std::optional<Refusal> faultOfOrigin(const httplib::Request &request, int pagePort)
{
    // A name that was made to lead here makes a foreign page one of the same origin to a browser.
    if (request.get_header_value_count("Host") != 1
        || !isLoopback(request.get_header_value("Host")))
        return Refusal { 421, {}, "Host: expected a loopback address or \"localhost\"" };

    const auto origins = request.get_header_value_count("Origin");
    if (origins > 0) {
        const auto origin = request.get_header_value("Origin");
        const auto port = ":" + std::to_string(pagePort);
        if (origins > 1
            || (origin != "http://127.0.0.1" + port && origin != "http://localhost" + port))
            return Refusal { 403, {}, "Origin: expected none, or the page of this sandbox" };
        if (request.method != "GET" && request.method != "HEAD" && !isJson(request))
            return Refusal { 403, {}, "body: expected JSON, as application/json" };
    }
    // Where a browser sends no origin, with a picture or a form to be read, it says this.
    const auto site = request.get_header_value("Sec-Fetch-Site");
    const auto opensPage = request.path == "/" && request.method == "GET"
        && request.get_header_value("Sec-Fetch-Mode") == "navigate"
        && request.get_header_value("Sec-Fetch-Dest") == "document";
    if (!site.empty() && site != "same-origin" && site != "none" && !opensPage)
        return Refusal { 403, {}, "Sec-Fetch-Site: another page asks" };
    return std::nullopt;
}

Routes::Routes(httplib::Server &server, Sandbox &sandbox)
    : m_server(server)
    , m_sandbox(sandbox)
{
}

Routes::Handler Routes::guarded(Handler handler) const
{
    return [this_ = &m_sandbox, handler = std::move(handler)](
               const httplib::Request &request, httplib::Response &response) {
        auto &sandbox = *this_;
        if (const auto fault = faultOfOrigin(request, sandbox.pagePort)) {
            sandbox.console.say("page",
                "refused " + std::to_string(fault->status) + ": " + request.method + " "
                    + request.path + ": " + fault->reason);
            return answerError(response, fault->status, fault->reason);
        }
        handler(request, response);
    };
}

void Routes::get(const std::string &pattern, Handler handler)
{
    m_server.Get(pattern, guarded(std::move(handler)));
}

void Routes::post(const std::string &pattern, Handler handler)
{
    m_server.Post(pattern, guarded(std::move(handler)));
}

void Routes::any(const std::string &pattern, const Handler &handler)
{
    get(pattern, handler);
    post(pattern, handler);
    m_server.Put(pattern, guarded(handler));
    m_server.Patch(pattern, guarded(handler));
    m_server.Delete(pattern, guarded(handler));
    m_server.Options(pattern, guarded(handler));
}

void stopServing(httplib::Server &server)
{
    // The library forgets a stop that comes before it serves.
    for (int tries = 0; !server.is_running() && tries < 100; ++tries)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    server.stop();
}

void answer(httplib::Response &response, int status, const json &body)
{
    response.status = status;
    response.set_header("Cache-Control", "no-store");
    response.set_header("X-Content-Type-Options", "nosniff");
    response.set_header("Cross-Origin-Resource-Policy", "same-origin");
    // Strangers' bytes may be in it, and need not be text.
    response.set_content(body.dump(-1, ' ', false, json::error_handler_t::replace),
        "application/json; charset=utf-8");
}

void answerError(httplib::Response &response, int status, const std::string &error)
{
    answer(response, status, { { "error", error } });
}

void routeRest(Routes &routes, const std::string &pattern)
{
    routes.any(pattern, [](const httplib::Request &request, httplib::Response &response) {
        answerError(response, 404,
            request.method + " " + request.path + ": no such call; sandbox/README.md lists them");
    });
}

}
