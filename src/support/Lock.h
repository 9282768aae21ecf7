#pragma once

#include <mutex>

/// A lock that the thread which holds it may take again.
class CSLock {
public:
    CSLock() = default;
    virtual ~CSLock() = default;
    CSLock(const CSLock&) = delete;
    CSLock& operator=(const CSLock&) = delete;

    /// Tries again for a moment before it sleeps, each time after a longer pause, so that threads
    /// which meet here all the time take turns in batches and not line by line.
    void Lock()
    {
        for (int pauses = 16; pauses <= 1024; pauses *= 2) {
            if (m_mutex.try_lock())
                return;
            for (int i = 0; i < pauses; ++i)
                Pause();
        }
        m_mutex.lock();
    }
    void Unlock() { m_mutex.unlock(); }

private:
    static void Pause()
    {
#if defined(__x86_64__) || defined(__i386__)
        __builtin_ia32_pause();
#endif
    }

    std::recursive_mutex m_mutex;
};

/// Holds a CSLock for as long as it lives.
class CSAutoLock {
public:
    explicit CSAutoLock(CSLock& lock)
        : m_lock(lock)
    {
        m_lock.Lock();
    }
    virtual ~CSAutoLock() { m_lock.Unlock(); }
    CSAutoLock(const CSAutoLock&) = delete;
    CSAutoLock& operator=(const CSAutoLock&) = delete;

private:
    CSLock& m_lock;
};
