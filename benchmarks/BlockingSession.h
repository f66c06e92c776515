#pragma once

#include "ByHand.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// \brief The limit: the kit's call without a kit. One thread with one blocking socket after
/// another, the same bytes on the wire, an answer that is decrypted and looked into.
class BlockingSession {
public:
    BlockingSession();
    ~BlockingSession();
    Q_DISABLE_COPY_MOVE(BlockingSession)

    /// Main thread; `done` runs on the session's, with the reference that the answer holds.
    void start(const parloquin::StartRequestModel &model, std::function<void(QByteArray)> done);

private:
    struct Call {
        std::string message;
        std::function<void(QByteArray)> done;
    };
    void run();
    [[nodiscard]] QByteArray carry(const std::string &message) const;

    const ByHand::Keys m_keys = ByHand::keys();
    std::mutex m_mutex;
    std::condition_variable m_hasMore;
    std::deque<Call> m_calls;
    bool m_isEnding = false;
    std::thread m_thread;
};
