#pragma once

#include "sandbox/service/Exchange.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace sandbox {

/// \brief The last exchanges, decrypted.
///
/// Any thread. Bounded by number and by bytes: the oldest are let go, and counted.
class Journal {
public:
    using Entry = std::shared_ptr<const Exchange>;

    struct Query {
        std::uint64_t after = 0; ///< only what was put or changed since this revision
        std::uint64_t before = 0; ///< only those of a smaller id; 0: all
        std::size_t limit = mostExchanges; ///< the newest
        std::string call; ///< empty: all
        std::string verdict; ///< by name; empty: all
        std::string search; ///< in any of its texts, whatever the case; empty: all
    };
    struct Page {
        std::vector<Entry> exchanges; ///< the oldest first
        std::uint64_t revision = 0; ///< to ask for what comes after
        std::size_t held = 0;
        std::uint64_t dropped = 0; ///< let go since the last clear()
        std::uint64_t oldest = 0; ///< the smallest id that is held; 0: none is
    };

    static constexpr std::size_t mostExchanges = 10000;
    static constexpr std::size_t mostBytes = 64U << 20U;
    static constexpr std::size_t mostWaiting = 16; // each holds a thread of a server
    static constexpr std::size_t mostOfText = 256U << 10U; // longer ones are cut, and say so

    /// Adds \p exchange and gives it its id, or replaces the one that has its id.
    void put(Exchange &exchange);
    std::optional<Entry> find(std::uint64_t id) const;
    Page pageOf(const Query &query) const;
    /// As pageOf(), but waits until there is something to tell, until \p patience is over or until
    /// wakeAll(). Where mostWaiting do so already, it answers at once.
    Page waitFor(const Query &query, std::chrono::milliseconds patience);
    void clear();
    /// From now on nobody waits.
    void wakeAll();

private:
    Page pageUnlocked(const Query &query) const;
    void letGo();

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Entry> m_entries; // by id
    std::size_t m_bytes = 0;
    std::uint64_t m_lastId = 0;
    std::uint64_t m_revision = 0;
    std::uint64_t m_dropped = 0;
    std::uint64_t m_clears = 0;
    std::size_t m_waiting = 0;
    bool m_awake = false;
};

}
