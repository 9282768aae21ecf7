#include "attachfiles/Settling.h"

void Settling::touch(const CopyName& copy, std::optional<FileStamp> stamp)
{
    const auto known = m_waiting.find(copy);
    if (known != m_waiting.end() && known->second.stamp == stamp)
        return; // Nothing was written since.
    const bool isEmpty = stamp && stamp->size == 0;
    const auto due = Clock::now() + (isEmpty ? m_times.quietEmpty : m_times.quiet);
    Waiting& waiting = m_waiting[copy];
    m_order.erase({waiting.due, copy});
    waiting = {stamp, due};
    m_order.insert({due, copy});
}

std::optional<Settling::Clock::time_point> Settling::nextDue() const
{
    return m_order.empty() ? std::nullopt : std::optional(m_order.begin()->first);
}

std::optional<std::pair<CopyName, std::optional<FileStamp>>> Settling::takeDue()
{
    if (m_order.empty() || m_order.begin()->first > Clock::now())
        return std::nullopt;
    const CopyName copy = m_order.begin()->second;
    const auto waiting = m_waiting.find(copy);
    std::pair taken(copy, waiting->second.stamp);
    m_waiting.erase(waiting);
    m_order.erase(m_order.begin());
    return taken;
}
