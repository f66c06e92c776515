#pragma once

#include <chrono>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace httplib {
struct Request;
}

namespace sandbox {

/// What was expected of a refused request, beside what came.
struct Comparison {
    std::string of; ///< in words: what both texts are
    std::string expected;
    std::string received;
    std::string note; ///< what the difference means, in words; may be empty
};

/// One request and what came of it.
struct Exchange {
    enum class Verdict { waiting, accepted, refused, fault };

    std::uint64_t id = 0; ///< 0: not in a journal yet
    std::uint64_t revision = 0; ///< of the journal when this was last put there
    std::chrono::system_clock::time_point time;
    std::chrono::microseconds duration {};

    std::string call; ///< "init" and so on, "message", "icon", "connection", or the path
    std::string method;
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body; ///< as it came
    std::string parameters; ///< decrypted; empty when that failed
    std::string language; ///< in which texts are wanted, as the request names it
    std::string number; ///< with the plus, where the request is about one

    Verdict verdict = Verdict::waiting;
    int status = 0; ///< of HTTP; 0: no answer
    std::string errorCode;
    std::string reason; ///< of a refusal; else what was done
    std::string fault; ///< that the answer met, as written
    std::optional<Comparison> comparison;
    std::string answer; ///< before it was encrypted
    bool answerEncrypted = false;
};

/// Since \p exchange came.
std::chrono::microseconds ageOf(const Exchange &exchange);

/// What came, now; what came of it is still to be said.
Exchange exchangeOf(const httplib::Request &request, const std::string &call);

/// Empty texts are left unsaid.
nlohmann::json orNull(const std::string &text);

/// "waiting", "accepted", "refused", "fault"
const char *nameOf(Exchange::Verdict verdict);

/// \param whole false: what a line of a list needs
nlohmann::json jsonOf(const Exchange &exchange, bool whole);

/// The line that sends the same bytes again.
std::string curlOf(const Exchange &exchange, int port);

/// "2026-11-25T14:03:09Z"
std::string timeText(std::chrono::system_clock::time_point time);

}
