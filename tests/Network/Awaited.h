#pragma once

#include "Parloquin/Networking/Client/Result.h"

#include <QtTest/QTest>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>

/// \brief Collects the outcomes of a call, whichever thread brings them, and waits for the first.
template <class... Arguments> class Awaited {
public:
    /// \param show puts an outcome into words
    explicit Awaited(std::function<std::string(std::decay_t<Arguments>...)> show)
        : m_show(std::move(show))
    {
    }

    std::function<void(Arguments...)> handler()
    {
        return [show = m_show, state = m_state](Arguments... outcome) {
            state->text = show(std::move(outcome)...);
            state->thread = std::this_thread::get_id();
            ++state->count; // what is above may be read from now on
        };
    }

    /// \return the last outcome, once there is one; "nothing" after 20 seconds
    std::string wait() const
    {
        return QTest::qWaitFor([this] { return count() > 0; }, 20'000) ? m_state->text : "nothing";
    }
    int count() const { return m_state->count; }
    bool onThisThread() const { return m_state->thread == std::this_thread::get_id(); }

private:
    struct State {
        std::string text;
        std::thread::id thread;
        std::atomic<int> count = 0;
    };
    const std::function<std::string(std::decay_t<Arguments>...)> m_show;
    const std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// "success", "refused" by the service, or the failure's name.
template <class T> std::string nameOf(const parloquin::Result<T> &result)
{
    static constexpr const char *failures[] = { "general", "requestObjectCreate", "jsonDecode",
        "noSuchFile", "timeOutEtc", "connection" };
    if (const parloquin::ApiError *error = result.error())
        return failures[static_cast<int>(*error)];
    return result.response()->isSuccess() ? "success" : "refused";
}

template <class T> struct AwaitedResult : Awaited<parloquin::Result<T>> {
    AwaitedResult()
        : Awaited<parloquin::Result<T>>(nameOf<T>)
    {
    }
};
