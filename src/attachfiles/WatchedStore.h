#pragma once

#include "attachfiles/FolderEvents.h"
#include "support/FileCopy.h"

#include <QString>

#include <dirent.h>
#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>

/// A working copy by its place in the store: the note's folder and the file in it, as on disk.
struct CopyName {
    std::string folder, file;

    bool operator<(const CopyName& other) const
    {
        return std::tie(folder, file) < std::tie(other.folder, other.file);
    }
};

/// The store and the note folders in it, under watch, and what is known of each working copy.
///
/// One watch for the store and one for each folder in it, no more. A folder that cannot be watched,
/// or not be read, is looked through from time to time instead, and the log says so once for each
/// reason. When the store itself is missing, the nearest folder above it is watched until it is
/// there again.
///
/// All of it belongs to one thread.
class WatchedStore {
public:
    /// What a working copy was when it was last looked at.
    struct Known {
        FileStamp stamp;
        QString md5; ///< empty: not known
    };
    /// Called with each working copy that may have another content than the one known.
    using Suspected = std::function<void(const CopyName&)>;

    /// `store` is the directory, without a separator at its end. `events` is not owned.
    WatchedStore(std::string store, FolderEvents& events, Suspected suspected);

    /// Watches all that is there and takes it as known.
    void begin();
    void take(const FolderEvent& event);
    /// Compares all of the store with what is known, by size and time: after events were lost.
    void rescan();
    /// Compares what could not be watched or read, and tries again to watch it.
    void lookAtUnwatched();

    /// Whether there is anything for lookAtUnwatched.
    bool hasUnwatched() const { return !m_unwatched.empty(); }
    int folderCount() const { return static_cast<int>(m_folders.size()); }
    std::string pathOf(const CopyName& copy) const;
    /// Null: a file that was not met before. The pointer is good until the next other call.
    Known* known(const CopyName& copy);
    void setKnown(const CopyName& copy, const Known& known);

private:
    struct Folder {
        int watch = -1;
        std::unordered_map<std::string, Known> files;
    };
    enum Reading { AsKnown, ToCompare };

    bool openStore();
    int watchAbove();
    void loseStore();
    void replaceWatch(int& watch, int by);
    void readStore(Reading reading);
    void readFolder(const std::string& name, Reading reading);
    void readFiles(const std::string& name, DIR* folder, Reading reading);
    bool watchFolder(const std::string& name);
    void forget(const std::string& name);
    void selfWent(int watch);
    void lookLater(const std::string& name, int error);
    void complainOnce(int error);

    const std::string m_store;
    FolderEvents& m_events;
    const Suspected m_suspected;
    std::unordered_map<std::string, Folder> m_folders;
    std::unordered_map<int, std::string> m_names; // by watch
    std::set<std::string> m_unwatched; // the store itself is the empty name
    std::set<int> m_complained; // of these errors
    int m_storeWatch = -1;
    int m_aboveWatch = -1; // only while the store is missing
};
