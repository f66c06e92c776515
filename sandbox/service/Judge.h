#pragma once

#include "sandbox/service/Exchange.h"
#include "sandbox/service/Refusal.h"
#include "sandbox/service/Scenario.h"

#include <httplib.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace sandbox {

/// What came of one request.
struct Judgement {
    std::optional<Refusal> refusal;
    /// The caller holds our secret: its body could be read. Only such a caller can read an
    /// encrypted answer, so a refusal before that point must be sent in clear.
    bool readable = false;
    nlohmann::json parameters; ///< valid unless refused
    std::string plain; ///< what the body decrypted to; empty when it did not
    std::optional<Comparison> comparison; ///< of a refusal whose reason is a text that differs
};

/// \brief Decides whether a request is exactly what a right client sends.
///
/// Any thread; holds no state but the keys.
class Judge {
public:
    Judge(Keys keys, std::chrono::seconds tolerance);

    /// Tests in the order in which a developer would look: headers, age, keys, body, signature,
    /// parameters. The first fault is the one reported.
    Judgement judge(const httplib::Request &request, std::string_view call,
        std::chrono::system_clock::time_point now) const;

private:
    std::optional<Refusal> faultOfHeaders(
        const httplib::Request &request, std::chrono::system_clock::time_point now) const;
    std::optional<Refusal> faultOfKey(const httplib::Request &request) const;
    std::optional<Refusal> read(const httplib::Request &request, std::string &plain) const;

    Keys m_keys;
    std::chrono::seconds m_tolerance;
};

}
