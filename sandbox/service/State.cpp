#include "sandbox/service/State.h"

#include "sandbox/service/Cipher.h"

#include <algorithm>

namespace sandbox {
namespace {
/// No 0, O, 1, I: a person may have to read it aloud.
constexpr auto codeLetters = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr auto codeMark = "{code}";

constexpr std::size_t mostOfEach = 1000;

template <typename Item> void add(std::deque<Item> &list, Item item)
{
    list.push_back(std::move(item));
    if (list.size() > mostOfEach)
        list.pop_front();
}

template <typename Item> auto byReference(std::deque<Item> &list, const std::string &reference)
{
    return std::find_if(list.begin(), list.end(),
        [&reference](const Item &each) { return each.reference == reference; });
}

Refusal refuse(int status, std::string reason) { return { status, {}, std::move(reason) }; }
}

State::State(const CurrentScenario &scenario)
    : m_scenario(scenario)
{
}

std::string State::confirm(Session session)
{
    session.id = randomUuid();
    session.confirmedAt = Clock::now();
    auto id = session.id;
    add(m_sessions, std::move(session));
    return id;
}

PreparedMessage State::prepareMessage(const std::string &app, const std::string &language)
{
    const auto scenario = m_scenario.get();
    const auto code = randomText(4, codeLetters) + "-" + randomText(4, codeLetters);
    auto text = scenario->texts.message.in(language);
    text.replace(text.find(codeMark), std::string(codeMark).size(), code);

    const auto now = Clock::now();
    PreparedMessage message { randomUuid(), app, std::move(text), {}, now,
        now + scenario->messageExpiry };
    const std::lock_guard lock(m_mutex);
    add(m_messages, message);
    return message;
}

std::optional<Refusal> State::receiveMessage(
    const std::string &app, const std::string &text, const std::string &from)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_messages.begin(), m_messages.end(),
        [&text](const PreparedMessage &each) { return each.text == text; });
    if (found == m_messages.end())
        return refuse(404, "no verification waits for this message");
    if (found->app != app)
        return refuse(400, "this message was prepared for another app");
    if (!found->sessionId.empty())
        return std::nullopt;
    if (Clock::now() >= found->expiry)
        return refuse(404, "this message is too old");
    found->sessionId = confirm({ {}, "3rdparty", app, from, {}, false });
    return std::nullopt;
}

Answer<std::string> State::checkMessage(const std::string &reference)
{
    const std::lock_guard lock(m_mutex);
    const auto found = byReference(m_messages, reference);
    if (found == m_messages.end())
        return refuse(404, "\"reference\": unknown");
    return found->sessionId;
}

SentCode State::sendCode(const std::string &number)
{
    const auto scenario = m_scenario.get();
    const auto &codes = scenario->codes;
    const auto now = Clock::now();
    SentCode sent { randomUuid(), number,
        codes.fixed.value_or(randomText(Codes::length, codes.alphabet)), {}, now,
        now + codes.expiry, codes.attempts };
    const std::lock_guard lock(m_mutex);
    add(m_codes, sent);
    return sent;
}

std::optional<SentCode> State::codeFor(const std::string &number) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_codes.rbegin(), m_codes.rend(),
        [&number](const SentCode &each) { return each.number == number; });
    if (found == m_codes.rend())
        return std::nullopt;
    return *found;
}

Answer<std::string> State::checkCode(
    const std::string &reference, const std::string &number, const std::string &code)
{
    const std::lock_guard lock(m_mutex);
    const auto found = byReference(m_codes, reference);
    if (found == m_codes.end())
        return refuse(404, "\"reference\": unknown");
    auto &attempt = *found;
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
        attempt.sessionId = confirm({ {}, "otp", {}, number, {}, false });
    return attempt.sessionId;
}

std::optional<Session> State::session(const std::string &id) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(
        m_sessions.begin(), m_sessions.end(), [&id](const Session &each) { return each.id == id; });
    if (found == m_sessions.end())
        return std::nullopt;
    return *found;
}

std::string State::makeSession(Session session)
{
    const std::lock_guard lock(m_mutex);
    return confirm(std::move(session));
}

std::vector<Session> State::sessions() const
{
    const std::lock_guard lock(m_mutex);
    return { m_sessions.rbegin(), m_sessions.rend() };
}

std::vector<SentCode> State::codes() const
{
    const std::lock_guard lock(m_mutex);
    return { m_codes.rbegin(), m_codes.rend() };
}

std::vector<PreparedMessage> State::messages() const
{
    const std::lock_guard lock(m_mutex);
    return { m_messages.rbegin(), m_messages.rend() };
}

void State::clear()
{
    const std::lock_guard lock(m_mutex);
    m_messages.clear();
    m_codes.clear();
    m_sessions.clear();
}

}
