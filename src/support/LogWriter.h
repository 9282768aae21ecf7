#pragma once

#include "support/Lock.h"

#include <QString>
#include <QStringView>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

/// The two halves of the log: callers append finished lines to a queue, and a pass of the writer
/// takes the queue to the file. Shared between CLog4C and its thread.
class LogWriter {
public:
    /// A file larger than this is deleted and begun anew.
    static constexpr std::uint32_t kSizeLimit = 0xA00000;

    explicit LogWriter(const QString& path)
        : m_path(path)
    {
    }

    /// Stamps a line with the local time and the caller's thread, and queues it. The text ends at
    /// its first NUL; an empty one queues nothing.
    void append(QStringView message);

    /// One turn: look at the file's size, open it, write the queue, close it. The queue is taken
    /// only when the file is open, and not held while the disk is touched.
    void pass();

    /// What the thread does: a pass every two seconds until told to stop.
    void run();
    void stop();
    /// Waits for the end of run; false if that takes longer.
    bool waitForEnd(std::chrono::milliseconds limit);
    /// For a writer whose thread never came to be.
    void setEnded();

private:
    std::FILE* openFile() const;

    /// Finished lines, each with its line end, in blocks that are never moved: one text that grew
    /// would be copied again and again.
    using Blocks = std::vector<std::u16string>;
    std::u16string& blockWithRoom(std::size_t length);
    Blocks takeQueue();
    void recycle(Blocks blocks);

    const QString m_path;
    CSLock m_lock; // of the two below
    Blocks m_queue;
    Blocks m_spare; // emptied, kept for their memory
    std::mutex m_passMutex; // a pass of the thread, or one asked for by WriteQueued

    std::atomic<std::uint8_t> m_stop{0};
    std::mutex m_stateMutex;
    std::condition_variable m_stateChanged;
    bool m_ended = false;
};
