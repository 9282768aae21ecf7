#pragma once

#include "kit/Print.h"
#include "kit/Wait.h"

#include "attachfiles/StoreWatch.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <mutex>
#include <optional>
#include <sys/resource.h>

/// While it lives, whatever would open a file fails with EMFILE. For the whole process.
class NoDescriptors {
public:
    NoDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit none{0, m_before.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    }
    ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

private:
    rlimit m_before;
};

/// Real events, but for what a test makes of them. Set by the test, used by the watch's thread.
struct Faults {
    std::atomic<bool> losing = false; ///< every event is lost, and only that is told
    std::atomic<int> limit = 1'000'000; ///< so many watches may be had
    std::atomic<int> watches = 0; ///< so many are held
    std::atomic<int> lost = 0; ///< times that events were lost
    std::atomic<int> adds = 0; ///< times that a watch was asked for
    /// No descriptor is to be had any more from the end of that `add` on, counted from 1, until the
    /// first look at the store is through.
    std::atomic<int> starvingAdd = 0;
    std::optional<NoDescriptors> starving; ///< the watch's thread's
};

class FaultyEvents : public FolderEvents {
public:
    explicit FaultyEvents(Faults& faults)
        : m_faults(faults)
    {
    }

    int add(const std::string& folder) override
    {
        const int watch = m_inner->add(folder);
        if (++m_faults.adds == m_faults.starvingAdd)
            m_faults.starving.emplace();
        if (watch < 0 || m_held.contains(watch))
            return watch;
        if (int(m_held.size()) >= m_faults.limit) {
            m_inner->remove(watch);
            return -ENOSPC;
        }
        m_held.insert(watch);
        m_faults.watches = int(m_held.size());
        return watch;
    }
    void remove(int watch) override
    {
        m_inner->remove(watch);
        m_held.erase(watch);
        m_faults.watches = int(m_held.size());
    }
    int descriptor() const override { return m_inner->descriptor(); }
    std::vector<FolderEvent> read() override
    {
        std::vector<FolderEvent> events = m_inner->read();
        if (!m_faults.losing || events.empty())
            return events;
        ++m_faults.lost;
        return {{FolderEvent::Overflow}};
    }

private:
    Faults& m_faults;
    std::unique_ptr<FolderEvents> m_inner = MakeInotify();
    std::set<int> m_held;
};

/// A store under watch, with the note `g` and its files "a.txt", which tests change, and "mark",
/// and a second process for the changes.
struct Watching : ::testing::Test {
    QTemporaryDir dir;
    QString store = dir.filePath(QStringLiteral("userdata/attachment"));
    Faults faults;
    StoreWatch::Times times{{std::chrono::milliseconds(100), std::chrono::milliseconds(300)},
        std::chrono::milliseconds(50)};

    void SetUp() override
    {
        sh(QStringLiteral("mkdir -p g && printf before > g/a.txt && printf 0 > g/mark"));
    }

    void start(const QString& at = {})
    {
        make(at);
        ASSERT_TRUE(waitFor([&] { return m_folders >= 0; }));
    }
    /// The same without waiting; with `events`, if given, which were made before.
    void make(const QString& at = {}, std::unique_ptr<FolderEvents> events = {})
    {
        if (!events)
            events = std::make_unique<FaultyEvents>(faults);
        StoreWatch::Listener listener;
        listener.watching = [this](int folders) {
            faults.starving.reset();
            m_folders = folders;
        };
        listener.changed = [this](const ChangedCopy& copy) {
            const std::lock_guard lock(m_mutex);
            m_changes.push_back(copy);
        };
        m_watch = std::make_unique<StoreWatch>(
            at.isEmpty() ? store : at, std::move(events), std::move(listener), times);
    }
    void stop() { m_watch.reset(); }
    int folders() const { return m_folders; }

    /// Runs a shell in the store, as a second process, and waits for its end.
    void sh(const QString& command)
    {
        QDir().mkpath(store);
        QProcess shell;
        shell.setWorkingDirectory(store);
        shell.start(QStringLiteral("/bin/bash"), {QStringLiteral("-ec"), command});
        ASSERT_TRUE(shell.waitForFinished());
        ASSERT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().constData();
    }

    /// All that was told so far.
    std::vector<ChangedCopy> changes()
    {
        const std::lock_guard lock(m_mutex);
        return m_changes;
    }
    /// What was told of "folder/name", as contents: those that the test says it has written.
    QStringList told(const QString& folder, const QString& name)
    {
        QStringList digests;
        for (const ChangedCopy& change : changes()) {
            if (change.noteGuid == folder && change.name == name)
                digests += change.md5;
        }
        return digests;
    }
    /// Waits until all that has happened so far is told: what was done before the mark is told
    /// before it.
    void settle()
    {
        const qsizetype before = told(QStringLiteral("g"), QStringLiteral("mark")).size();
        sh(QStringLiteral("printf %1 > g/mark").arg(++m_marks));
        ASSERT_TRUE(waitFor(
            [&] { return told(QStringLiteral("g"), QStringLiteral("mark")).size() > before; }));
    }
    /// What was told, apart from the marks, as "folder/name".
    QStringList toldNames()
    {
        QStringList names;
        for (const ChangedCopy& change : changes()) {
            if (change.name != u"mark")
                names += change.noteGuid + u'/' + change.name;
        }
        return names;
    }

private:
    std::mutex m_mutex;
    std::vector<ChangedCopy> m_changes;
    std::atomic<int> m_folders = -1;
    int m_marks = 0;
    std::unique_ptr<StoreWatch> m_watch;
};
