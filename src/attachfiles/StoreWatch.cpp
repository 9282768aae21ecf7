#include "attachfiles/StoreWatch.h"

#include "support/FileMd5.h"
#include "support/Log.h"
#include "support/OwnWrites.h"

#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

QString nameOf(const std::string& bytes)
{
    return QFile::decodeName(QByteArray::fromStdString(bytes));
}

void log(const char* what)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] AttachFileWatcher ") + QLatin1StringView(what));
}

// Editors leave such names beside the file they work on: backups, locks, their own notes.
bool isBesideAFile(const std::string& name)
{
    return name.front() == '.' || name.front() == '#' || name.back() == '~';
}

} // namespace

StoreWatch::StoreWatch(
    const QString& store, std::unique_ptr<FolderEvents> events, Listener listener, Times times)
    : m_events(std::move(events))
    , m_listener(std::move(listener))
    , m_times(times)
    , m_store(QFile::encodeName(store).toStdString(), *m_events,
          [this](const CopyName& copy) { suspect(copy); })
    , m_settling(times.settling)
    , m_wake(::eventfd(0, EFD_CLOEXEC))
{
    if (m_wake < 0) {
        // Nothing could end the thread's wait.
        log("has no event descriptor and watches nothing");
        return;
    }
    try {
        m_thread = std::thread([this] {
            try {
                run();
            } catch (const std::bad_alloc&) {
                log("ran out of memory and watches no longer");
            }
        });
    } catch (const std::system_error&) {
        log("has no thread and watches nothing");
    }
}

StoreWatch::~StoreWatch()
{
    if (m_wake < 0)
        return;
    m_stop = true;
    ::eventfd_write(m_wake, 1);
    if (m_thread.joinable())
        m_thread.join();
    ::close(m_wake);
}

void StoreWatch::run()
{
    ::pthread_setname_np(::pthread_self(), "nomar-watch");
    const ownwrites::Watching watching;
    m_store.begin();
    m_listener.watching(m_store.folderCount());
    m_nextLook = steady_clock::now() + m_times.unwatched;
    while (!m_stop) {
        wait();
        for (const FolderEvent& event : m_events->read())
            m_store.take(event);
        if (m_store.hasUnwatched() && steady_clock::now() >= m_nextLook) {
            m_store.lookAtUnwatched();
            m_nextLook = steady_clock::now() + m_times.unwatched;
        }
        // One at a time: while a large file is digested, the kernel's queue fills.
        if (const auto due = m_settling.takeDue())
            settle(due->first, due->second);
    }
}

void StoreWatch::wait()
{
    std::optional<steady_clock::time_point> until = m_settling.nextDue();
    if (m_store.hasUnwatched())
        until = std::min(until.value_or(m_nextLook), m_nextLook);
    int timeout = -1;
    if (until) {
        const auto left = duration_cast<milliseconds>(*until - steady_clock::now()).count();
        timeout = int(std::clamp<long long>(left + 1, 0, 60'000));
    }
    pollfd sources[] = {{m_events->descriptor(), POLLIN, 0}, {m_wake, POLLIN, 0}};
    ::poll(sources, std::size(sources), timeout);
}

void StoreWatch::suspect(const CopyName& copy)
{
    m_settling.touch(copy, FileStamp::ofRegularFile(AT_FDCWD, m_store.pathOf(copy).c_str()));
}

void StoreWatch::settle(const CopyName& copy, const std::optional<FileStamp>& stamp)
{
    const auto now = FileStamp::ofRegularFile(AT_FDCWD, m_store.pathOf(copy).c_str());
    if (!now)
        return; // It has gone, or a folder has its name; what comes next is compared with before.
    if (now != stamp)
        return m_settling.touch(copy, now); // Somebody is still at it.
    if (const auto own = ownwrites::take(nameOf(m_store.pathOf(copy))))
        m_store.setKnown(copy, {*own, {}});
    const WatchedStore::Known* known = m_store.known(copy);
    if (known && known->stamp != *now)
        compare(copy, *now);
    else if (!known && !isBesideAFile(copy.file))
        m_store.setKnown(copy, {*now, {}});
}

void StoreWatch::compare(const CopyName& copy, const FileStamp& stamp)
{
    const QString path = nameOf(m_store.pathOf(copy));
    qint64 length = 0;
    const QString md5 = FileMd5Unless(m_stop, path, &length);
    if (md5.isEmpty())
        return;
    const auto now = FileStamp::ofRegularFile(AT_FDCWD, m_store.pathOf(copy).c_str());
    if (now != stamp)
        return m_settling.touch(copy, now);
    if (length != stamp.size)
        return; // It cannot be read to its end.
    const bool isNew = m_store.known(copy)->md5 != md5;
    m_store.setKnown(copy, {stamp, md5});
    if (isNew)
        m_listener.changed({path, nameOf(copy.folder), nameOf(copy.file), stamp, md5});
}
