#pragma once

#include "Parloquin/Networking/Client/Result.h"

#include <QtCore/QByteArray>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>

/// \brief Collects the outcomes of a call, whichever thread brings them, and waits for the first.
template <class... Arguments> class Awaited {
public:
    /// \param show puts an outcome into words
    explicit Awaited(std::function<std::string(std::decay_t<Arguments>...)> show)
    {
        m_state->show = std::move(show);
    }

    std::function<void(Arguments...)> handler()
    {
        return [state = m_state](Arguments... outcome) {
            const std::lock_guard lock(state->mutex);
            state->text = state->show(std::move(outcome)...);
            state->thread = std::this_thread::get_id();
            ++state->count;
            state->changed.notify_all();
        };
    }

    /// \return the last outcome, once there is one; "nothing" after 20 seconds
    std::string wait() const
    {
        std::unique_lock lock(m_state->mutex);
        m_state->changed.wait_for(
            lock, std::chrono::seconds(20), [this] { return m_state->count > 0; });
        return m_state->text;
    }

    int count() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->count;
    }

    bool onThisThread() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->thread == std::this_thread::get_id();
    }

private:
    struct State {
        std::function<std::string(std::decay_t<Arguments>...)> show;
        std::mutex mutex;
        std::condition_variable changed;
        std::string text = "nothing";
        std::thread::id thread;
        int count = 0;
    };
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
