#pragma once

#include "sandbox/service/CurrentScenario.h"
#include "sandbox/service/Refusal.h"

#include <chrono>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace sandbox {

/// A value, or why there is none.
template <typename T> using Answer = std::variant<T, Refusal>;

/// A verification that came to its end.
struct Session {
    std::string id;
    std::string method; ///< "3rdparty" or "otp"
    std::string app; ///< empty for an SMS
    std::string number; ///< plus and digits; empty when the service does not know it
    std::chrono::system_clock::time_point confirmedAt;
    bool expired = false; ///< made so; the service itself lets none expire
};

/// A message that the user is to send, as prepared for one attempt.
struct PreparedMessage {
    std::string reference;
    std::string app;
    std::string text;
    std::string sessionId; ///< empty until it came
    std::chrono::system_clock::time_point preparedAt;
    std::chrono::system_clock::time_point expiry;
};

/// A code on its way to a number.
struct SentCode {
    std::string reference;
    std::string number; ///< plus and digits
    std::string code;
    std::string sessionId; ///< empty until it was typed
    std::chrono::system_clock::time_point sentAt;
    std::chrono::system_clock::time_point expiry;
    int attemptsLeft = 0;
};

/// \brief What the service remembers between requests: attempts, messages, codes, sessions.
///
/// Any thread. Lives in memory, the newest of each sort; forgets all when the process ends. The
/// scenario must outlive it.
class State {
public:
    using Clock = std::chrono::system_clock;

    explicit State(const CurrentScenario &scenario);

    PreparedMessage prepareMessage(const std::string &app, const std::string &language);
    /// The messenger's part. Sending the same message again changes nothing.
    /// \param from the full number that sent it; empty when nobody says
    std::optional<Refusal> receiveMessage(
        const std::string &app, const std::string &text, const std::string &from = {});
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

    /// Makes a session as if somebody had verified a number, \p session without its id.
    /// \return its id
    std::string makeSession(Session session);

    /// Each of them the newest first.
    std::vector<Session> sessions() const;
    std::vector<SentCode> codes() const;
    std::vector<PreparedMessage> messages() const;
    /// As if the process began anew.
    void clear();

private:
    std::string confirm(Session session);

    const CurrentScenario &m_scenario;
    mutable std::mutex m_mutex;
    // The oldest first; a service that runs for days forgets those.
    std::deque<PreparedMessage> m_messages;
    std::deque<SentCode> m_codes;
    std::deque<Session> m_sessions;
};

}
