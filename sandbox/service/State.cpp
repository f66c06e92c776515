#include "sandbox/service/State.h"

#include "sandbox/service/Cipher.h"

namespace sandbox {
namespace {
/// No 0, O, 1, I: a person may have to read it aloud.
constexpr auto codeLetters = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr auto codeMark = "{code}";
constexpr std::size_t smsCodeLength = 3;

Refusal refuse(int status, std::string reason) { return { status, {}, std::move(reason) }; }
}

State::State(const Scenario &scenario)
    : m_scenario(scenario)
{
}

std::string State::confirm(const std::string &method, const std::string &app)
{
    Session session { randomUuid(), method, app, Clock::now() };
    auto id = session.id;
    m_sessions.emplace(id, std::move(session));
    return id;
}

PreparedMessage State::prepareMessage(const std::string &app)
{
    const auto code = randomText(4, codeLetters) + "-" + randomText(4, codeLetters);
    auto text = m_scenario.texts.message;
    text.replace(text.find(codeMark), std::string(codeMark).size(), code);

    const std::lock_guard lock(m_mutex);
    PreparedMessage message { randomUuid(), std::move(text) };
    m_messages[message.reference] = { app, message.text, {},
        Clock::now() + m_scenario.messageExpiry };
    return message;
}

std::optional<Refusal> State::receiveMessage(const std::string &app, const std::string &text)
{
    const std::lock_guard lock(m_mutex);
    for (auto &[reference, attempt] : m_messages) {
        if (attempt.text != text)
            continue;
        if (attempt.app != app)
            return refuse(400, "this message was prepared for another app");
        if (!attempt.sessionId.empty())
            return std::nullopt;
        if (Clock::now() >= attempt.expiry)
            return refuse(404, "this message is too old");
        attempt.sessionId = confirm("3rdparty", app);
        return std::nullopt;
    }
    return refuse(404, "no verification waits for this message");
}

Answer<std::string> State::checkMessage(const std::string &reference)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_messages.find(reference);
    if (found == m_messages.end())
        return refuse(404, "\"reference\": unknown");
    return found->second.sessionId;
}

SentCode State::sendCode(const std::string &number)
{
    const auto &codes = m_scenario.codes;
    SentCode sent { randomUuid(), codes.fixed.value_or(randomText(smsCodeLength, codes.alphabet)) };

    const std::lock_guard lock(m_mutex);
    m_codes[sent.reference] = { number, sent.code, {}, Clock::now() + codes.expiry,
        codes.attempts };
    m_lastReference[number] = sent.reference;
    return sent;
}

std::optional<SentCode> State::codeFor(const std::string &number) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_lastReference.find(number);
    if (found == m_lastReference.end())
        return std::nullopt;
    return SentCode { found->second, m_codes.at(found->second).code };
}

Answer<std::string> State::checkCode(
    const std::string &reference, const std::string &number, const std::string &code)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_codes.find(reference);
    if (found == m_codes.end())
        return refuse(404, "\"reference\": unknown");
    auto &attempt = found->second;
    if (attempt.number != number)
        return refuse(400, "\"phoneNumber\": not the number of this reference");
    if (attempt.attemptsLeft == 0)
        return refuse(429, "Too many attempts. Please ask for a new code.");
    if (Clock::now() >= attempt.expiry)
        return refuse(400, "This code is too old. Please ask for a new one.");
    if (attempt.code != code) {
        --attempt.attemptsLeft;
        return refuse(400, "This code is not right.");
    }
    if (attempt.sessionId.empty())
        attempt.sessionId = confirm("otp", {});
    return attempt.sessionId;
}

std::optional<Session> State::session(const std::string &id) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_sessions.find(id);
    if (found == m_sessions.end())
        return std::nullopt;
    return found->second;
}

}
