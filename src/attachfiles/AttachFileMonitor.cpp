#include "attachfiles/AttachFileMonitor.h"

#include "attachstore/WorkingCopy.h"

#include <algorithm>

namespace {

template <typename Condition>
int copyFirst(const std::vector<AttachmentFile>& list, Condition condition, AttachmentFile& out)
{
    const auto found = std::find_if(list.begin(), list.end(), condition);
    if (found == list.end())
        return 0;
    out = *found;
    return 1;
}

} // namespace

IFileMonitorNotify::~IFileMonitorNotify() = default;

AttachFileMonitor::AttachFileMonitor() = default;
AttachFileMonitor::AttachFileMonitor(const AttachFileMonitor&) = default;
AttachFileMonitor& AttachFileMonitor::operator=(const AttachFileMonitor&) = default;
AttachFileMonitor::~AttachFileMonitor() = default;

void AttachFileMonitor::SetMsgReceiver(QWidget* wnd, unsigned msg)
{
    m_msgWnd = wnd;
    m_msgId = msg;
}

int AttachFileMonitor::Start()
{
    // Kept: nothing is watched here; a watcher outside the control posts the message.
    return 1;
}

void AttachFileMonitor::Stop() { }

void AttachFileMonitor::OnEvent(const QString& path, quint32 action)
{
    if (m_msgWnd && attachstore::IsChangeEvent(path, action))
        DoAttachFileSync(path);
}

void AttachFileMonitor::DoAttachFileSync(const QString& path)
{
    // Kept: what is found out goes nowhere, as the watcher sends the message.
    QString noteFolder, fileName;
    GetAttachInfoFromPath(path, noteFolder, fileName);
}

void AttachFileMonitor::GetAttachInfoFromPath(
    const QString& path, QString& noteFolder, QString& fileName)
{
    attachstore::GetAttachInfoFromPath(path, noteFolder, fileName);
}

int AttachFileMonitor::GetAttachFileInfo(
    const std::vector<AttachmentFile>& list, const QString& origName, AttachmentFile& out)
{
    return copyFirst(
        list, [&](const AttachmentFile& file) { return file.origName == origName; }, out);
}

int AttachFileMonitor::GetNoteHtmlFileInfo(
    const std::vector<AttachmentFile>& list, AttachmentFile& out)
{
    return copyFirst(
        list, [](const AttachmentFile& file) { return file.fileType == 0; }, out);
}

long AttachFileMonitor::GetAttachTotalSize(const std::vector<AttachmentFile>& list)
{
    quint32 total = 0; // unsigned, so that it wraps
    for (const AttachmentFile& file : list) {
        if (file.fileType != 0)
            total += static_cast<quint32>(file.fileSize);
    }
    return static_cast<qint32>(total);
}
