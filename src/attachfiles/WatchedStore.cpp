#include "attachfiles/WatchedStore.h"

#include "attachstore/WorkingCopy.h"
#include "support/Log.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

using Directory = std::unique_ptr<DIR, int (*)(DIR*)>;

Directory openDirectory(const std::string& path)
{
    return {::opendir(path.c_str()), ::closedir};
}

bool isGone(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

// Calls `act` with each entry but the two that every directory has.
template <typename Act> void forEachEntry(DIR* directory, Act act)
{
    while (const dirent* entry = ::readdir(directory)) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            act(*entry);
    }
}

bool isFolder(int directory, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type == DT_DIR;
    struct stat info;
    return ::fstatat(directory, entry.d_name, &info, 0) == 0 && S_ISDIR(info.st_mode);
}

// What is being written, and names that the library cannot speak of, as they are not UTF-8.
bool isLeftOut(const std::string& file)
{
    const QByteArray bytes = QByteArray::fromStdString(file);
    const QString name = QFile::decodeName(bytes);
    return attachstore::IsTemporaryPath(u'/' + name) || QFile::encodeName(name) != bytes;
}

} // namespace

WatchedStore::WatchedStore(std::string store, FolderEvents& events, Suspected suspected)
    : m_store(std::move(store))
    , m_events(events)
    , m_suspected(std::move(suspected))
{
}

std::string WatchedStore::pathOf(const CopyName& copy) const
{
    return m_store + '/' + copy.folder + '/' + copy.file;
}

WatchedStore::Known* WatchedStore::known(const CopyName& copy)
{
    const auto folder = m_folders.find(copy.folder);
    if (folder == m_folders.end())
        return nullptr;
    const auto file = folder->second.files.find(copy.file);
    return file == folder->second.files.end() ? nullptr : &file->second;
}

void WatchedStore::setKnown(const CopyName& copy, const Known& known)
{
    if (const auto folder = m_folders.find(copy.folder); folder != m_folders.end())
        folder->second.files[copy.file] = known;
}

// --- The store itself ---

void WatchedStore::begin()
{
    if (openStore())
        readStore(AsKnown);
}

void WatchedStore::rescan()
{
    if (openStore())
        readStore(ToCompare);
    else
        loseStore();
}

bool WatchedStore::openStore()
{
    for (;;) {
        const int watch = m_events.add(m_store);
        if (watch >= 0) {
            replaceWatch(m_storeWatch, watch);
            m_unwatched.erase(std::string());
            replaceWatch(m_aboveWatch, -1);
            return true;
        }
        if (!isGone(-watch)) {
            lookLater(std::string(), -watch);
            return true;
        }
        // It comes with a change of the nearest folder above it that is there.
        const int before = m_aboveWatch;
        replaceWatch(m_aboveWatch, watchAbove());
        if (m_aboveWatch < 0)
            m_unwatched.insert(std::string());
        if (m_aboveWatch < 0 || m_aboveWatch == before)
            return false;
        // It may have come before the watch: once more.
    }
}

// The new watch, or an error.
int WatchedStore::watchAbove()
{
    std::string above = m_store;
    int watch = -ENOENT;
    while (isGone(-watch) && above.size() > 1) {
        above.erase(std::max<std::size_t>(above.rfind('/'), 1));
        watch = m_events.add(above);
    }
    return watch;
}

void WatchedStore::replaceWatch(int& watch, int by)
{
    if (watch >= 0 && watch != by)
        m_events.remove(watch);
    watch = by;
}

void WatchedStore::loseStore()
{
    std::vector<std::string> names;
    for (const auto& [name, folder] : m_folders)
        names.push_back(name);
    for (const std::string& name : names)
        forget(name);
    m_unwatched.clear();
    replaceWatch(m_storeWatch, -1);
    if (openStore())
        readStore(ToCompare);
}

void WatchedStore::readStore(Reading reading)
{
    const Directory store = openDirectory(m_store);
    if (!store)
        return lookLater(std::string(), errno);
    std::set<std::string> gone;
    for (const auto& [name, folder] : m_folders)
        gone.insert(name);
    forEachEntry(store.get(), [&](const dirent& entry) {
        if (!isFolder(::dirfd(store.get()), entry))
            return;
        gone.erase(entry.d_name);
        readFolder(entry.d_name, reading);
    });
    for (const std::string& name : gone)
        forget(name);
}

// --- Note folders ---

void WatchedStore::readFolder(const std::string& name, Reading reading)
{
    // The watch first: what comes in while the folder is read is then met twice, not missed.
    if (!watchFolder(name))
        return forget(name);
    const Directory folder = openDirectory(m_store + '/' + name);
    if (!folder)
        return lookLater(name, errno);
    readFiles(name, folder.get(), reading);
}

void WatchedStore::readFiles(const std::string& name, DIR* folder, Reading reading)
{
    auto& files = m_folders[name].files;
    forEachEntry(folder, [&](const dirent& entry) {
        if (entry.d_type == DT_DIR || isLeftOut(entry.d_name))
            return;
        const auto stamp = FileStamp::ofRegularFile(::dirfd(folder), entry.d_name);
        if (!stamp)
            return;
        if (reading == AsKnown) {
            files[entry.d_name] = {*stamp, {}};
            return;
        }
        const auto known = files.find(entry.d_name);
        if (known == files.end() || known->second.stamp != *stamp)
            m_suspected({name, entry.d_name});
    });
}

// False: there is no such folder.
bool WatchedStore::watchFolder(const std::string& name)
{
    const int watch = m_events.add(m_store + '/' + name);
    if (isGone(-watch))
        return false;
    Folder& folder = m_folders[name];
    if (folder.watch != watch)
        m_names.erase(folder.watch);
    replaceWatch(folder.watch, watch);
    if (watch >= 0) {
        m_names[watch] = name;
        m_unwatched.erase(name);
    } else {
        lookLater(name, -watch);
    }
    return true;
}

// A folder that cannot be watched, or not be read, as when there are no file descriptors left. Its
// files are not known until it can.
void WatchedStore::lookLater(const std::string& name, int error)
{
    if (isGone(error))
        return;
    m_unwatched.insert(name);
    complainOnce(error);
}

void WatchedStore::forget(const std::string& name)
{
    m_unwatched.erase(name);
    const auto folder = m_folders.find(name);
    if (folder == m_folders.end())
        return;
    m_names.erase(folder->second.watch);
    replaceWatch(folder->second.watch, -1);
    m_folders.erase(folder);
}

void WatchedStore::selfWent(int watch)
{
    if (watch == m_storeWatch)
        return loseStore();
    if (const auto name = m_names.find(watch); name != m_names.end())
        forget(std::string(name->second));
}

void WatchedStore::lookAtUnwatched()
{
    const std::set<std::string> names = m_unwatched;
    for (const std::string& name : names) {
        if (name.empty())
            return rescan();
        readFolder(name, ToCompare);
    }
}

void WatchedStore::take(const FolderEvent& event)
{
    if (event.kind == FolderEvent::Overflow)
        return rescan();
    if (event.watch >= 0 && event.watch == m_aboveWatch) {
        if (openStore())
            readStore(ToCompare);
        return;
    }
    if (event.kind == FolderEvent::SelfWent)
        return selfWent(event.watch);
    if (event.watch == m_storeWatch) {
        if (event.kind == FolderEvent::FolderCame)
            readFolder(event.name, ToCompare);
        else if (event.kind == FolderEvent::FolderWent)
            forget(event.name);
        return; // the files there are no working copies
    }
    const auto folder = m_names.find(event.watch);
    if (folder != m_names.end() && event.kind == FolderEvent::File && !isLeftOut(event.name))
        m_suspected({folder->second, event.name});
}

void WatchedStore::complainOnce(int error)
{
    if (!m_complained.insert(error).second)
        return;
    const QString reason = error == ENOSPC
        ? QStringLiteral("the limit fs.inotify.max_user_watches is reached")
        : QStringLiteral("error code %1").arg(error);
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] AttachFileWatcher cannot watch all folders of the store (%1); it "
                       "looks through the others every few seconds")
            .arg(reason));
}
