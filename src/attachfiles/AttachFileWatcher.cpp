#include "attachfiles/AttachFileWatcher.h"

#include "attachfiles/StampText.h"
#include "attachfiles/StoreWatch.h"
#include "attachfiles/SyncFileModifyArg.h"
#include "platform/WindowMessage.h"
#include "support/Paths.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace {

// In the order in which they were made.
std::vector<AttachFileWatcher*>& watchers()
{
    static std::vector<AttachFileWatcher*> all;
    return all;
}

} // namespace

AttachFileWatcher::AttachFileWatcher(QObject* parent)
    : QObject(parent)
{
    watchers().push_back(this);
}

AttachFileWatcher::~AttachFileWatcher()
{
    std::erase(watchers(), this);
    Stop();
}

void AttachFileWatcher::SetMsgReceiver(QWidget* wnd)
{
    m_msgWnd = wnd;
}

void AttachFileWatcher::SetNoteFileSource(NoteFileSource source)
{
    m_noteFileSource = std::move(source);
}

int AttachFileWatcher::Start()
{
    if (m_watch)
        return 1;
    // Each of them reaches this object by its event queue, and not at all when it is gone. What a
    // watch that was stopped has left in the queue is not for the next.
    const auto life = std::make_shared<char>();
    m_life = life;
    const auto here = [this, life = std::weak_ptr(life)](auto act) {
        QMetaObject::invokeMethod(
            this,
            [life, act] {
                if (!life.expired())
                    act();
            },
            Qt::QueuedConnection);
    };
    StoreWatch::Listener listener;
    listener.watching = [=, this](int folders) { here([=, this] { Q_EMIT Watching(folders); }); };
    listener.changed = [=, this](const ChangedCopy& copy) { here([=, this] { send(copy); }); };
    m_watch = std::make_unique<StoreWatch>(
        GetAttachmentDir(), MakeInotify(), std::move(listener), StoreWatch::Times());
    return 1;
}

void AttachFileWatcher::Stop()
{
    m_watch.reset();
    m_life.reset();
}

std::optional<QString> AttachFileWatcher::CurrentNoteFile(const QString& noteGuid)
{
    const auto last = std::find_if(watchers().rbegin(), watchers().rend(),
        [](const AttachFileWatcher* watcher) { return bool(watcher->m_noteFileSource); });
    if (last == watchers().rend())
        return std::nullopt;
    return (*last)->m_noteFileSource(noteGuid);
}

void AttachFileWatcher::send(const ChangedCopy& copy)
{
    if (!m_msgWnd)
        return;
    auto arg = std::make_unique<SyncFileModifyArg>();
    arg->filePath = copy.path;
    arg->fileSize = static_cast<qint32>(copy.stamp.size);
    arg->noteGuid = copy.noteGuid;
    arg->attachFile.origName = copy.name;
    arg->fileMd5 = copy.md5;
    arg->secondFile.text2 = StampText(copy.stamp);
    if (m_noteFileSource) {
        arg->secondFile.reserved = 1;
        arg->secondFile.text1 = m_noteFileSource(copy.noteGuid);
    }
    QCoreApplication::postEvent(
        m_msgWnd, WindowMessage::carrying(WM_ATTACH_FILE_MODIFY, std::move(arg)));
}
