#include "support/LogWriter.h"

#include "support/Utf8.h"

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <iterator>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr auto kInterval = std::chrono::seconds(2);
constexpr std::size_t kBlockUnits = 32 * 1024;
constexpr std::size_t kSpareBlocks = 64; // a burst's memory goes back

// The date is worth more time than the rest of a line, so each thread keeps its last second's text.
struct Stamp {
    std::time_t second = -1;
    char16_t date[32];
    std::size_t dateLength = 0;
    char16_t thread[24];
    std::size_t threadLength = 0;

    void setSecond(std::time_t now);
    void setThread();
};

std::size_t widen(const char* text, char16_t* target)
{
    const std::size_t length = std::char_traits<char>::length(text);
    std::copy_n(text, length, target);
    return length;
}

void Stamp::setSecond(std::time_t now)
{
    std::tm local{};
    localtime_r(&now, &local);
    char text[sizeof date / sizeof *date];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S:", &local);
    dateLength = widen(text, date);
    second = now;
}

void Stamp::setThread()
{
    char text[sizeof thread / sizeof *thread];
    std::snprintf(text, sizeof text, " TID:0x%x ", static_cast<unsigned>(::gettid()));
    threadLength = widen(text, thread);
}

thread_local Stamp t_stamp;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// The file is a text file of the desktop this log comes from: lines end CR LF.
void writeLines(std::FILE* file, QStringView lines)
{
    char narrow[16 * 1024];
    std::string ended;
    while (!lines.isEmpty()) {
        const std::size_t length = EncodeUtf8(lines, narrow, sizeof narrow);
        ended.clear();
        for (std::size_t i = 0; i < length; ++i) {
            if (narrow[i] == '\n')
                ended += '\r';
            ended += narrow[i];
        }
        // Kept: a failed write is not looked at, its lines are gone.
        (void)!std::fwrite(ended.data(), 1, ended.size(), file);
    }
}

} // namespace

void LogWriter::append(QStringView message)
{
    message = UntilNul(message);
    if (message.isEmpty())
        return;
    std::timespec now;
    std::timespec_get(&now, TIME_UTC);
    Stamp& stamp = t_stamp;
    if (stamp.threadLength == 0)
        stamp.setThread();
    if (stamp.second != now.tv_sec)
        stamp.setSecond(now.tv_sec);
    const int milliseconds = static_cast<int>(now.tv_nsec / 1'000'000);
    const char16_t fraction[3]{static_cast<char16_t>(u'0' + milliseconds / 100),
        static_cast<char16_t>(u'0' + milliseconds / 10 % 10),
        static_cast<char16_t>(u'0' + milliseconds % 10)};

    const auto messageLength = static_cast<std::size_t>(message.size());
    const std::size_t length =
        stamp.dateLength + std::size(fraction) + stamp.threadLength + messageLength + 1;

    const CSAutoLock lock(m_lock);
    blockWithRoom(length) // all of the line or none
        .append(stamp.date, stamp.dateLength)
        .append(fraction, std::size(fraction))
        .append(stamp.thread, stamp.threadLength)
        .append(message.utf16(), messageLength)
        .append(1, u'\n');
}

std::FILE* LogWriter::openFile() const
{
    const QByteArray path = QFile::encodeName(m_path);
    struct stat info;
    // Kept: a failure to look counts as absence.
    if (::stat(path, &info) != 0)
        return std::fopen(path, "we");
    // Kept: only the low 32 bits of the size count, so a file of just over 4 GiB is appended to.
    if (static_cast<std::uint32_t>(info.st_size) <= kSizeLimit)
        return std::fopen(path, "a+e");
    // Kept: no second file, so that the log never takes more of the disk than its limit.
    return ::unlink(path) == 0 ? std::fopen(path, "we") : nullptr;
}

std::u16string& LogWriter::blockWithRoom(std::size_t length)
{
    if (!m_queue.empty() && m_queue.back().capacity() - m_queue.back().size() >= length)
        return m_queue.back();
    std::u16string block;
    if (!m_spare.empty()) {
        block.swap(m_spare.back());
        m_spare.pop_back();
    }
    block.reserve(std::max(length, kBlockUnits));
    return m_queue.emplace_back(std::move(block));
}

LogWriter::Blocks LogWriter::takeQueue()
{
    const CSAutoLock lock(m_lock);
    return std::exchange(m_queue, {});
}

void LogWriter::recycle(Blocks blocks)
{
    const CSAutoLock lock(m_lock);
    for (std::u16string& block : blocks) {
        if (m_spare.size() == kSpareBlocks)
            break;
        block.clear();
        m_spare.push_back(std::move(block));
    }
}

void LogWriter::pass()
{
    const std::lock_guard lock(m_passMutex);
    const std::unique_ptr<std::FILE, FileCloser> file(openFile());
    if (!file)
        return;
    Blocks blocks = takeQueue();
    for (const std::u16string& block : blocks)
        writeLines(file.get(), block);
    recycle(std::move(blocks));
}

void LogWriter::run()
{
    while (!m_stop.load(std::memory_order_relaxed)) {
        try {
            pass();
        } catch (const std::bad_alloc&) {
            // As with a failed write: what this pass had taken is gone.
        }
        std::unique_lock lock(m_stateMutex);
        m_stateChanged.wait_for(
            lock, kInterval, [this] { return m_stop.load(std::memory_order_relaxed) != 0; });
    }
    // Kept: what was queued since the last pass is lost, as an end must not wait for the disk.
    setEnded();
}

void LogWriter::stop()
{
    m_stop.store(1, std::memory_order_relaxed);
    // Not between the thread's look at the flag and its sleep.
    const std::lock_guard lock(m_stateMutex);
    m_stateChanged.notify_all();
}

bool LogWriter::waitForEnd(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_stateMutex);
    return m_stateChanged.wait_for(lock, limit, [this] { return m_ended; });
}

void LogWriter::setEnded()
{
    const std::lock_guard lock(m_stateMutex);
    m_ended = true;
    m_stateChanged.notify_all();
}
