#pragma once

#include "Process.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>

using nlohmann::json;
using namespace std::chrono_literals;

extern const std::string secret; // 32 bytes
std::string encrypted(const std::string &plain, const std::string &key);
std::string decrypted(const std::string &base64, const std::string &key);
std::string signature(const std::string &timeStamp, const std::string &signedJson);
/// Base64 of the MAC of \p text, by the signing key unless by another.
std::string signatureOf(const std::string &text, const std::string &key = {});

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
    std::string body; ///< decrypted
    json envelope;

    int metaStatus() const { return envelope.at("meta").at("httpStatusCode").get<int>(); }
    json result() const { return envelope.value("result", json()); }
    /// Of the result; empty: there is none.
    std::string sessionId() const { return envelope.value(idPlace, ""); }
    inline static const json::json_pointer idPlace { "/result/sessionId" };
};

/// A running service and a client that does everything right.
class Sandbox {
public:
    /// \param scenario merged into one that holds the keys only
    /// \param options further ones of the command line
    explicit Sandbox(
        const json &scenario = json::object(), const std::vector<std::string> &options = {});

    /// What a right client sends now. \param json the parameters, sorted and escaped
    Request request(const std::string &call, const std::string &json) const;
    Reply send(const Request &request) const;
    Reply call(const std::string &name, const json &parameters = json::object(),
        const std::string &language = "en") const;

    Process &process() { return *m_process; }
    httplib::Client client() const;
    int port() const { return m_port; }
    int pagePort() const { return m_pagePort; }

    /// A call for developers, at the port of the page. \return its answer, with "status" beside it
    json get(const std::string &path) const;
    json post(const std::string &path, const json &body) const;

private:
    std::unique_ptr<TemporaryFile> m_scenario;
    std::unique_ptr<Process> m_process;
    int m_port = 0;
    int m_pagePort = 0;
};

/// Compact, sorted, slashes escaped.
std::string canonical(const json &json);
/// "<seconds>000" of now and \p offset seconds.
std::string timeStampOf(long offset = 0);
