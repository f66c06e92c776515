#pragma once

#include "Process.h"

#include <httplib.h>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

extern const std::string secret; // 32 bytes
std::string encrypted(const std::string &plain, const std::string &key);
std::string decrypted(const std::string &base64, const std::string &key);
std::string signature(const std::string &timeStamp, const std::string &signedJson);

/// One request, every piece open to be spoilt.
struct Request {
    std::string method = "POST";
    std::string path;
    httplib::Headers headers;
    std::string body;

    void set(const std::string &header, const std::string &value)
    {
        headers.erase(header);
        headers.emplace(header, value);
    }
};

struct Reply {
    int status = 0; ///< 0: there was no answer
    bool wasEncrypted = false;
    std::string body; ///< decrypted
    nlohmann::json envelope;

    int metaStatus() const { return envelope.at("meta").at("httpStatusCode").get<int>(); }
    std::string errorCode() const { return envelope.at("meta").value("errorCode", ""); }
    std::string errorMessage() const { return envelope.at("meta").value("errorMessage", ""); }
    nlohmann::json result() const { return envelope.value("result", nlohmann::json()); }
    /// Of the result; empty: there is none.
    std::string sessionId() const { return envelope.value(idPlace, ""); }
    inline static const nlohmann::json::json_pointer idPlace { "/result/sessionId" };
};

/// A running service and a client that does everything right.
class Sandbox {
public:
    /// \param scenario merged into one that holds the keys only
    /// \param options further ones of the command line
    explicit Sandbox(const nlohmann::json &scenario = nlohmann::json::object(),
        const std::vector<std::string> &options = {});

    /// What a right client sends now. \param json the parameters, sorted and escaped
    Request request(const std::string &call, const std::string &json) const;
    Reply send(const Request &request) const;
    Reply call(
        const std::string &name, const nlohmann::json &parameters = nlohmann::json::object()) const;

    Process &process() { return *m_process; }
    httplib::Client client() const;
    int port() const { return m_port; }
    int pagePort() const { return m_pagePort; }

    /// A call for developers, at the port of the page. \return its answer, with "status" beside it
    nlohmann::json get(const std::string &path) const;
    nlohmann::json post(const std::string &path, const nlohmann::json &body) const;

private:
    std::unique_ptr<TemporaryFile> m_scenario;
    std::unique_ptr<Process> m_process;
    int m_port = 0;
    int m_pagePort = 0;
};

/// Compact, sorted, slashes escaped.
std::string canonical(const nlohmann::json &json);
/// "<seconds>000" of now and \p offset seconds.
std::string timeStampOf(long offset = 0);
