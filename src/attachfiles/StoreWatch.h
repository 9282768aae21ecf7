#pragma once

#include "attachfiles/FolderEvents.h"
#include "attachfiles/Settling.h"
#include "attachfiles/WatchedStore.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

/// A working copy that others have changed, as it stands when its writer has finished.
struct ChangedCopy {
    QString path;
    QString noteGuid;
    QString name;
    FileStamp stamp;
    QString md5; ///< of the content that had that stamp
};

/// Watches the store on a thread of its own, from construction to destruction, and tells of each
/// change of a working copy once.
///
/// What is no change: a file that was not there before (unless the library itself has put it there
/// and it has been written to since), a removal, a file with the extension "tmp", the library's own
/// writes, a file that was opened for writing and closed as it was, the same content once more.
/// Files that were there at the beginning count from what they were then.
///
/// The thread sleeps until something happens; only as long as a folder cannot be watched it wakes
/// up every few seconds. Where no thread or no descriptor is to be had nothing is watched, and the
/// log says so.
class StoreWatch {
public:
    /// All are called on the watch's own thread.
    struct Listener {
        /// The first look at the store is through: what happens from now on is seen.
        std::function<void(int folders)> watching;
        std::function<void(const ChangedCopy&)> changed;
    };
    struct Times {
        Settling::Times settling;
        std::chrono::milliseconds unwatched{10'000}; ///< pause between looks at what is unwatched
    };

    StoreWatch(
        const QString& store, std::unique_ptr<FolderEvents> events, Listener listener, Times times);
    /// Waits for the thread, which stops at once, in the middle of a digest too.
    ~StoreWatch();
    StoreWatch(const StoreWatch&) = delete;
    StoreWatch& operator=(const StoreWatch&) = delete;

private:
    void run();
    void wait();
    void suspect(const CopyName& copy);
    void settle(const CopyName& copy, const std::optional<FileStamp>& stamp);
    void compare(const CopyName& copy, const FileStamp& stamp);

    const std::unique_ptr<FolderEvents> m_events;
    const Listener m_listener;
    const Times m_times;
    WatchedStore m_store;
    Settling m_settling;
    std::chrono::steady_clock::time_point m_nextLook;
    const int m_wake; // an event descriptor, or negative; written to by the destructor
    std::atomic<bool> m_stop = false;
    std::thread m_thread; // last: it uses all of the above
};
