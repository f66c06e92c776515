#pragma once

#include "sandbox/service/Refusal.h"
#include "sandbox/service/Scenario.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

namespace sandbox {

/// A value, or why there is none.
template <typename T> using Answer = std::variant<T, Refusal>;

/// A verification that came to its end.
struct Session {
    std::string id;
    std::string method; ///< "3rdparty" or "otp"
    std::string app; ///< empty for an SMS
    std::chrono::system_clock::time_point confirmedAt;
};

/// A message that the user is to send, as prepared for one attempt.
struct PreparedMessage {
    std::string reference;
    std::string text;
};

/// A code on its way to a number.
struct SentCode {
    std::string reference;
    std::string code;
};

/// \brief What the service remembers between requests: attempts, messages, codes, sessions.
///
/// Any thread. Lives in memory; forgets all when the process ends. The scenario must outlive it.
class State {
public:
    using Clock = std::chrono::system_clock;

    explicit State(const Scenario &scenario);

    PreparedMessage prepareMessage(const std::string &app);
    /// The messenger's part. Sending the same message again changes nothing.
    std::optional<Refusal> receiveMessage(const std::string &app, const std::string &text);
    /// \return the session id, empty while the message has not come
    Answer<std::string> checkMessage(const std::string &reference);

    /// \param number plus and digits
    SentCode sendCode(const std::string &number);
    /// The last code sent to \p number.
    std::optional<SentCode> codeFor(const std::string &number) const;
    /// \return the session id
    Answer<std::string> checkCode(
        const std::string &reference, const std::string &number, const std::string &code);

    std::optional<Session> session(const std::string &id) const;

private:
    struct MessageAttempt {
        std::string app;
        std::string text;
        std::string sessionId;
        Clock::time_point expiry;
    };
    struct CodeAttempt {
        std::string number;
        std::string code;
        std::string sessionId;
        Clock::time_point expiry;
        int attemptsLeft = 0;
    };

    std::string confirm(const std::string &method, const std::string &app);

    const Scenario &m_scenario;
    mutable std::mutex m_mutex;
    std::map<std::string, MessageAttempt> m_messages; // by reference
    std::map<std::string, CodeAttempt> m_codes; // by reference
    std::map<std::string, std::string> m_lastReference; // by number
    std::map<std::string, Session> m_sessions; // by id
};

}
