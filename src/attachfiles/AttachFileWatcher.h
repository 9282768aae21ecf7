#pragma once

#include "support/Export.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class StoreWatch;
struct ChangedCopy;

/// Watches the store for attachments that the user changes in other programs, and sends the control
/// message 2224 for each change. A host makes one beside its control:
///
///     m_watcher.SetMsgReceiver(&m_control);
///     m_watcher.SetNoteFileSource([this](const QString& guid) { return pathOfNote(guid); });
///     m_watcher.Start();                                   // once message 8005 is there
///
/// A change is told once, when its writer has finished, with the final content: by a rename of a
/// new file to the old name as by writing in pieces. Not told are files that are new, files that
/// go, files with the extension "tmp", what the library itself writes, and what has changed while
/// nobody watched. Size and digest are computed on a thread of the watcher's own, which sleeps
/// while nothing happens. New note folders, a store that is deleted and made anew, and events that
/// the system lost are taken care of. Folders beyond the system's limit of watches
/// (fs.inotify.max_user_watches), and such as cannot be read at the moment, are looked through
/// every ten seconds, with one line in the log.
///
/// All operations belong to the thread of the user interface.
class NOMAR_EXPORT AttachFileWatcher : public QObject {
    Q_OBJECT
public:
    /// Gives the full path of a note's current HTML file, the one of the last save; empty if the
    /// note is not the host's (any more) or has none. Asked right before a note that is not open is
    /// read, so that no save in between is lost. Note GUIDs are names of folders that anybody may
    /// have made.
    using NoteFileSource = std::function<QString(const QString& noteGuid)>;

    explicit AttachFileWatcher(QObject* parent = nullptr);
    ~AttachFileWatcher() override;

    /// Sets the control. Not owned; nothing is sent without one, or when it is gone.
    void SetMsgReceiver(QWidget* wnd);
    /// Sets the host's answer. Without one a change in a note that is not open hands the host an
    /// empty text for that note: `SyncFileModifyArg::secondFile`.
    void SetNoteFileSource(NoteFileSource source);

    /// Begins to watch GetAttachmentDir, which is made if it is missing. Returns 1, also if it
    /// watches already. Returns at once: the first look at the store goes on behind it.
    int Start();
    /// Ends that. Changes that were not told yet are not told any more.
    void Stop();

    /// Which file is a note's at this moment, by the watcher that was made last of those that have
    /// a source; nothing if there is none. What a control asks.
    static std::optional<QString> CurrentNoteFile(const QString& noteGuid);

Q_SIGNALS:
    /// The first look is through, and changes are seen from now on. `folders` is the count of note
    /// folders.
    void Watching(int folders);

private:
    void send(const ChangedCopy& copy);

    QPointer<QWidget> m_msgWnd;
    NoteFileSource m_noteFileSource;
    std::unique_ptr<StoreWatch> m_watch;
    std::shared_ptr<char> m_life; ///< As long as that watch.
};
