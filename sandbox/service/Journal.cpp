#include "sandbox/service/Journal.h"

#include <algorithm>
#include <cctype>

namespace sandbox {
namespace {
std::size_t sizeOf(const Exchange &exchange)
{
    auto size = sizeof exchange + exchange.target.size() + exchange.body.size()
        + exchange.parameters.size() + exchange.reason.size() + exchange.answer.size();
    for (const auto &[name, value] : exchange.headers)
        size += name.size() + value.size() + sizeof(std::string) * 2;
    if (exchange.comparison)
        size += exchange.comparison->expected.size() * 2;
    return size;
}

void cut(std::string &text)
{
    if (text.size() <= Journal::mostOfText)
        return;
    const auto whole = text.size();
    text.resize(Journal::mostOfText);
    text += " … cut; " + std::to_string(whole) + " bytes in all";
}

bool holds(const std::string &text, const std::string &search)
{
    const auto isSame = [](unsigned char a, unsigned char b) {
        return std::tolower(a) == std::tolower(b);
    };
    return std::search(text.begin(), text.end(), search.begin(), search.end(), isSame)
        != text.end();
}

bool matches(const Exchange &exchange, const Journal::Query &query)
{
    if (exchange.revision <= query.after || (query.before != 0 && exchange.id >= query.before)
        || (!query.call.empty() && exchange.call != query.call))
        return false;
    if (!query.verdict.empty() && query.verdict != nameOf(exchange.verdict))
        return false;
    if (query.search.empty())
        return true;
    for (const auto *text :
        { &exchange.call, &exchange.target, &exchange.reason, &exchange.errorCode, &exchange.fault,
            &exchange.number, &exchange.parameters, &exchange.answer })
        if (holds(*text, query.search))
            return true;
    return std::any_of(
        exchange.headers.begin(), exchange.headers.end(), [&query](const auto &each) {
            return holds(each.first, query.search) || holds(each.second, query.search);
        });
}
}

void Journal::put(Exchange &exchange)
{
    cut(exchange.target);
    cut(exchange.body);
    cut(exchange.parameters);
    cut(exchange.answer);
    cut(exchange.reason);
    {
        const std::lock_guard lock(m_mutex);
        exchange.revision = ++m_revision;
        if (exchange.id == 0) {
            exchange.id = ++m_lastId;
            m_entries.push_back(std::make_shared<const Exchange>(exchange));
            m_bytes += sizeOf(exchange);
        } else {
            // One that was let go or cleared meanwhile stays away.
            const auto place = std::lower_bound(m_entries.begin(), m_entries.end(), exchange.id,
                [](const Entry &entry, std::uint64_t id) { return entry->id < id; });
            if (place == m_entries.end() || (*place)->id != exchange.id)
                return;
            m_bytes += sizeOf(exchange) - sizeOf(**place);
            *place = std::make_shared<const Exchange>(exchange);
        }
        letGo();
    }
    m_changed.notify_all();
}

void Journal::letGo()
{
    while (m_entries.size() > mostExchanges || (m_bytes > mostBytes && m_entries.size() > 1)) {
        m_bytes -= sizeOf(*m_entries.front());
        m_entries.pop_front();
        ++m_dropped;
    }
}

std::optional<Journal::Entry> Journal::find(std::uint64_t id) const
{
    const std::lock_guard lock(m_mutex);
    const auto place = std::lower_bound(m_entries.begin(), m_entries.end(), id,
        [](const Entry &entry, std::uint64_t wanted) { return entry->id < wanted; });
    if (place == m_entries.end() || (*place)->id != id)
        return std::nullopt;
    return *place;
}

Journal::Page Journal::pageUnlocked(const Query &query) const
{
    Page page;
    for (auto entry = m_entries.rbegin();
         entry != m_entries.rend() && page.exchanges.size() < query.limit; ++entry)
        if (matches(**entry, query))
            page.exchanges.push_back(*entry);
    std::reverse(page.exchanges.begin(), page.exchanges.end());
    page.revision = m_revision;
    page.held = m_entries.size();
    page.dropped = m_dropped;
    page.oldest = m_entries.empty() ? 0 : m_entries.front()->id;
    return page;
}

Journal::Page Journal::pageOf(const Query &query) const
{
    const std::lock_guard lock(m_mutex);
    return pageUnlocked(query);
}

Journal::Page Journal::waitFor(const Query &query, std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_mutex);
    const auto clears = m_clears;
    auto asked = query;
    Page page;
    if (m_waiting >= mostWaiting)
        return pageUnlocked(query);
    ++m_waiting;
    m_changed.wait_for(lock, patience, [&] {
        page = pageUnlocked(asked);
        // What did not match will not: only what comes from now on is looked at again.
        asked.after = m_revision;
        return m_awake || m_clears != clears || !page.exchanges.empty();
    });
    --m_waiting;
    return page;
}

void Journal::clear()
{
    {
        const std::lock_guard lock(m_mutex);
        m_entries.clear();
        m_bytes = 0;
        m_dropped = 0;
        ++m_revision; // so that who waits hears of it
        ++m_clears;
    }
    m_changed.notify_all();
}

void Journal::wakeAll()
{
    {
        const std::lock_guard lock(m_mutex);
        m_awake = true;
    }
    m_changed.notify_all();
}

}
