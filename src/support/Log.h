#pragma once

#include "support/Singleton.h"

#include <QString>

#include <memory>

class LogWriter;

/// The failure log: `NomarEditor.log` in GetAppDir; docs/log.md tells the file's form.
///
/// Code that has something to report writes
///     SingletonTemplate<CLog4C>::GetInstance()->WriteLog(text);
/// There are no levels and no filter. By custom the text of a failure starts with "[ERROR] ".
///
/// A caller only stamps the line and queues it. One thread, started with the first line, writes
/// what is queued every two seconds and closes the file again. A run that logs nothing leaves the
/// file alone. Lines of the last two seconds before the process ends may be lost. No failure of the
/// log is reported to anyone: when the file cannot be opened the lines wait for the next turn.
class CLog4C : public SingletonTemplate<CLog4C> {
public:
    /// Takes the file's place from GetAppDir and starts the writer.
    CLog4C();
    /// Waits for the writer, 3 seconds at most. What is still queued is not written.
    ~CLog4C() override;

    /// Queues one line. The text is taken as it stands, up to its first NUL; the empty text queues
    /// nothing. Callable from any thread.
    void WriteLog(const QString& message);

    /// Writes what is queued at once, on the caller's thread: for a process that is about to end.
    /// Does nothing if nothing was ever logged.
    static void WriteQueued();

private:
    std::shared_ptr<LogWriter> m_writer; // shared with the thread, which may outlive the wait
};
