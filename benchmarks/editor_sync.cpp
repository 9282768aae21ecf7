// An attachment that is saved in another program, until the note shows it; and what it costs to
// watch a large store for that.

#include "Figure.h"
#include "editor_page.h"
#include "editor_sides.h"

#include <nomareditor/AppDirs.h>
#include <nomareditor/AttachFileWatcher.h>
#include <nomareditor/NmWebNoteHandler.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <chrono>
#include <cstdio>
#include <optional>
#include <stdexcept>

namespace {

using namespace bench;
using Clock = std::chrono::steady_clock;

constexpr int kFolders = 5000;
constexpr int kFilesPerFolder = 10;
constexpr int kIdleMilliseconds = 5000;
const QString kName = QStringLiteral("report.txt");

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(what);
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "no file");
}

/// Begins to watch the store, and waits until changes are seen.
void start(AttachFileWatcher& watcher)
{
    bool isWatching = false;
    const auto connection =
        QObject::connect(&watcher, &AttachFileWatcher::Watching, [&](int) { isWatching = true; });
    watcher.Start();
    waitUntil([&] { return isWatching; });
    QObject::disconnect(connection);
}

// --- From the save to the page ---

/// The open note with one attachment, of 1 MB.
class Attachment {
public:
    Attachment()
    {
        const QString folder = GetAppDir() + QStringLiteral("userdata/attachment/note/");
        require(QDir().mkpath(folder), "no folder");
        m_path = folder + kName;
        change();
        const QString exData = NmWebNoteHandler::FormatOrigNameToJson(kName);
        const QString element = QStringLiteral("<p>x<img class=\"userdata\\attachment\\0.txt\" "
                                               "src=\"../userdata\\attachment\\0.bmp\" "
                                               "nm_exdata=\"%1\"></p>");
        m_editor.open(m_editor.store(
            element.arg(QString(exData).replace(u'"', QStringLiteral("&quot;"))).toUtf8()));
    }

    void change() { write(m_path, QByteArray::number(++m_turn) + QByteArray(1 << 20, 'x')); }
    QString digest() const
    {
        QFile file(m_path);
        QCryptographicHash hash(QCryptographicHash::Md5);
        require(file.open(QIODevice::ReadOnly) && hash.addData(&file), "no digest");
        return QString::fromLatin1(hash.result().toHex());
    }
    void waitForPage(const QString& digest)
    {
        const QString script =
            kNoteBody + QStringLiteral(".querySelector('img').getAttribute('class')");
        waitUntil([&] { return evaluate(m_editor.page(), script).toString().contains(digest); });
    }
    /// What cannot be done without.
    void syncDirectly()
    {
        const QString name = digest();
        const QString card = m_path + QStringLiteral(".card");
        require(NmWebNoteHandler::GenerateFileThumb(FT_TEXT, kName,
                    NmWebNoteHandler::FormatFileInfo(long(QFile(m_path).size()), QString()), card,
                    nullptr),
            "no card");
        QFile::remove(card);
        const QString folder = QStringLiteral("userdata\\\\attachment\\\\");
        m_editor.handler().UpdateHtmlAttachAttr(kName, folder + name + QStringLiteral(".txt"),
            QStringLiteral("../") + folder + name + QStringLiteral(".bmp"));
        waitForPage(name);
    }

private:
    Editor& m_editor = Editor::instance();
    QString m_path;
    int m_turn = 0;
};

std::vector<Figure> measureSync()
{
    Editor& editor = Editor::instance();
    Attachment attachment;
    AttachFileWatcher watcher;
    watcher.SetMsgReceiver(&editor.control());
    const auto watched = [&] {
        start(watcher);
        attachment.change();
        const Clock::time_point begin = Clock::now();
        attachment.waitForPage(attachment.digest());
        const double seconds = secondsSince(begin);
        watcher.Stop();
        return seconds;
    };
    const auto direct = [&] {
        attachment.change();
        const Clock::time_point begin = Clock::now();
        attachment.syncDirectly();
        return secondsSince(begin);
    };
    watched();
    direct();
    std::vector<double> later;
    for (int round = 0; round < 9; ++round) {
        const double ours = watched();
        const double floor = direct();
        std::fprintf(stderr, "# external save to the element: %.6g against %.6g\n", ours, floor);
        later.push_back((ours - floor) * 1000);
    }
    return {{"external save to the element changed in the page, milliseconds later than digest, "
             "card and page call done directly",
        median(later), 300, true}};
}

const Registration sync{"sync", measureSync};

// --- A large store ---

/// A store of its own, in force as long as this lives.
class LargeStore {
public:
    LargeStore()
    {
        SetAppDir(m_dir.path());
        const QString store = GetAppDir() + QStringLiteral("userdata/attachment/");
        for (int folder = 0; folder < kFolders; ++folder) {
            const QString path = store + QStringLiteral("note%1/").arg(folder);
            require(QDir().mkpath(path), "no folder");
            for (int file = 0; file < kFilesPerFolder; ++file)
                write(path + QStringLiteral("file %1.txt").arg(file), "x");
        }
    }
    ~LargeStore() { SetAppDir(m_before); }
    LargeStore(const LargeStore&) = delete;
    LargeStore& operator=(const LargeStore&) = delete;

private:
    const QString m_before = GetAppDir();
    QTemporaryDir m_dir;
};

/// The watches that this process holds.
qsizetype watches()
{
    qsizetype count = 0;
    const QDir descriptors(QStringLiteral("/proc/self/fdinfo"));
    for (const QString& name : descriptors.entryList(QDir::Files))
        count += contentOf(descriptors.filePath(name)).count("inotify wd:");
    return count;
}

/// The processor time of the watcher's thread so far, in nanoseconds.
qint64 processorTime()
{
    const QDir threads(QStringLiteral("/proc/self/task"));
    for (const QString& thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QDir dir(threads.filePath(thread));
        if (contentOf(dir.filePath(QStringLiteral("comm"))).trimmed() == "nomar-watch")
            return contentOf(dir.filePath(QStringLiteral("schedstat"))).split(' ')[0].toLongLong();
    }
    throw std::runtime_error("the watcher has no thread");
}

std::vector<Figure> measureWatch()
{
    const LargeStore store;
    std::vector<double> starts;
    double held = 0;
    std::optional<AttachFileWatcher> watcher;
    for (int round = 0; round < kRounds; ++round) {
        watcher.emplace();
        const qsizetype before = watches();
        const Clock::time_point begin = Clock::now();
        start(*watcher);
        starts.push_back(secondsSince(begin));
        held = double(watches() - before);
        if (round + 1 < kRounds)
            watcher.reset();
    }
    settle(500);
    const qint64 before = processorTime();
    settle(kIdleMilliseconds);
    const double idle = double(processorTime() - before) / 1e6;
    const std::string what = "watching 50,000 files in 5,000 folders, ";
    return {{what + "seconds to start", median(starts), 2, true},
        {what + "milliseconds of processor time in 5 s of idleness", idle, 0, true},
        {what + "watches for each folder and the store", held / (kFolders + 1), 1, true}};
}

const Registration watch{"watch", measureWatch};

} // namespace
