#pragma once

#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

/// A lock that another process holds on a file for the lifetime of this.
class FileLock {
public:
    enum Kind { Exclusive, Shared, RecordForWriting, RecordForReading, Lease };

    FileLock(const QString& path, Kind kind)
    {
        const QByteArray name = QFile::encodeName(path);
        int ready[2];
        EXPECT_EQ(::pipe(ready), 0);
        m_process = ::fork();
        if (m_process == 0) {
            const char done = take(name.constData(), kind) ? 'y' : 'n';
            if (::write(ready[1], &done, 1) == 1)
                ::pause();
            ::_exit(0);
        }
        char done = 'n';
        EXPECT_EQ(::read(ready[0], &done, 1), 1);
        EXPECT_EQ(done, 'y') << "the other process got no lock";
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~FileLock()
    {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Whether this process can have the file alone now, by both kinds of lock.
    static bool isFree(const QString& path)
    {
        const int file = ::open(QFile::encodeName(path).constData(), O_RDWR);
        struct flock record = whole(F_WRLCK);
        const bool free = ::flock(file, LOCK_EX | LOCK_NB) == 0
            && ::fcntl(file, F_OFD_GETLK, &record) == 0 && record.l_type == F_UNLCK;
        ::close(file);
        return free;
    }

private:
    static struct flock whole(short type)
    {
        struct flock record = {};
        record.l_type = type;
        record.l_whence = SEEK_SET;
        return record;
    }
    static bool take(const char* name, Kind kind)
    {
        std::signal(SIGIO, SIG_IGN); // Tells the holder of a lease that it is in the way.
        const int file = ::open(name, O_RDWR);
        if (kind == Exclusive || kind == Shared)
            return ::flock(file, (kind == Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0;
        if (kind == Lease)
            return ::fcntl(file, F_SETLEASE, F_WRLCK) == 0;
        struct flock record = whole(kind == RecordForWriting ? F_WRLCK : F_RDLCK);
        record.l_start = 1; // One byte somewhere is enough.
        record.l_len = 1;
        return ::fcntl(file, F_SETLK, &record) == 0;
    }

    pid_t m_process;
};
