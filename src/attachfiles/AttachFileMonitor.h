#pragma once

#include "attachfiles/IFileMonitorNotify.h"
#include "attachfiles/SyncFileModifyArg.h"
#include "support/Export.h"

#include <QPointer>
#include <QWidget>

#include <vector>

/// Knows who is to hear of a changed attachment, and which event is such a change. A plain value:
/// copies share nothing.
class NOMAR_EXPORT AttachFileMonitor : public IFileMonitorNotify {
public:
    AttachFileMonitor();
    AttachFileMonitor(const AttachFileMonitor&);
    AttachFileMonitor& operator=(const AttachFileMonitor&);
    ~AttachFileMonitor() override;

    /// Sets the widget and the number of the message that tell of a change. The control does so
    /// with itself and 2224 when its page is first complete.
    void SetMsgReceiver(QWidget* wnd, unsigned msg);
    /// Returns 1 and does nothing else: the message is sent by `AttachFileWatcher`.
    int Start();
    /// Does nothing.
    void Stop();

    /// The receiver; null if there is none or it is gone.
    QWidget* MsgWnd() const { return m_msgWnd; }
    unsigned MsgId() const { return m_msgId; }

protected:
    /// Lets through what modifies a file or renames one to this name, unless its extension is
    /// "tmp", as long as there is a receiver.
    void OnEvent(const QString& path, quint32 action) override;
    /// Finds out which attachment it is. Sends nothing.
    void DoAttachFileSync(const QString& path);
    /// Note and file name of a working copy's path; both stay as they are for any other path.
    void GetAttachInfoFromPath(const QString& path, QString& noteFolder, QString& fileName);
    /// The first record with that original name. 1, or 0 if there is none.
    int GetAttachFileInfo(
        const std::vector<AttachmentFile>& list, const QString& origName, AttachmentFile& out);
    /// The first record of type 0. 1, or 0 if there is none.
    int GetNoteHtmlFileInfo(const std::vector<AttachmentFile>& list, AttachmentFile& out);
    /// The sizes of the records of another type than 0, summed up in 32 bits.
    long GetAttachTotalSize(const std::vector<AttachmentFile>& list);

private:
    QPointer<QWidget> m_msgWnd;
    unsigned m_msgId = 0;
    SyncFileModifyArg m_syncArg; // Kept: written by nothing.
};
