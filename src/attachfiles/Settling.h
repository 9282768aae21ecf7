#pragma once

#include "attachfiles/WatchedStore.h"
#include "support/FileCopy.h"

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <utility>

/// Working copies that somebody may still be writing, each with the moment at which to look at it
/// again. Everything that is written puts that moment off, so that several closes in short order,
/// or a rename behind them, come out as one change.
class Settling {
public:
    using Clock = std::chrono::steady_clock;
    struct Times {
        std::chrono::milliseconds quiet{150}; ///< no new stamp for that long
        /// The same for an empty file: it has been truncated, as a rule, to be written next.
        std::chrono::milliseconds quietEmpty{1000};
    };

    explicit Settling(Times times)
        : m_times(times)
    {
    }

    /// The copy may have changed and has `stamp` at this moment; without one it is no file now.
    void touch(const CopyName& copy, std::optional<FileStamp> stamp);
    /// When the next copy is due; nothing while none waits.
    std::optional<Clock::time_point> nextDue() const;
    /// Takes a copy out that is due, with the stamp it had when it was last touched.
    std::optional<std::pair<CopyName, std::optional<FileStamp>>> takeDue();

private:
    struct Waiting {
        std::optional<FileStamp> stamp;
        Clock::time_point due;
    };

    const Times m_times;
    std::map<CopyName, Waiting> m_waiting;
    std::set<std::pair<Clock::time_point, CopyName>> m_order;
};
