#pragma once

#include <memory>
#include <string>
#include <vector>

/// One event of a watched folder, or of all.
struct FolderEvent {
    enum Kind {
        File, ///< `name` was made, written to and closed, or renamed to.
        FolderCame, ///< `name`, a folder, was made or renamed to.
        FolderWent, ///< `name`, a folder, has left by a rename.
        SelfWent, ///< The watched folder has gone or moved, and `watch` may be no watch any more.
        Overflow, ///< Events were lost. Nothing else is told.
    };
    Kind kind;
    int watch = -1;
    std::string name = {};
};

/// Watches on folders, each for what lies directly in it. Paths and names are bytes, as on disk.
/// An interface, so that tests can lose events and run out of watches.
class FolderEvents {
public:
    virtual ~FolderEvents();

    /// Watches a folder. Its number, which is the same as long as the same folder is watched, or a
    /// negative `errno` value: -ENOSPC when the system allows no more watches.
    virtual int add(const std::string& folder) = 0;
    virtual void remove(int watch) = 0;
    /// Readable when there are events; -1 if there never will be any.
    virtual int descriptor() const = 0;
    /// The next events, in order; as long as there are more the descriptor stays readable. Does not
    /// wait.
    virtual std::vector<FolderEvent> read() = 0;
};

/// The real ones: inotify. If the system has none to give, every `add` fails.
std::unique_ptr<FolderEvents> MakeInotify();
