// The path of a change to an attachment's file: from message 2224 to the host's OnSaveNote.

#include "editor/CNomarEditorImpl.h"

#include "attachfiles/AttachFileWatcher.h"
#include "attachfiles/StampText.h"
#include "attachfiles/SyncFileModifyArg.h"
#include "attachstore/ChangedFile.h"
#include "attachstore/ClosedNote.h"
#include "editor/NmWebNoteHandler_p.h"
#include "support/Log.h"
#include "support/TimeText.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

void log(const QString& what)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] CNomarEditorImpl::DoAttachFileModify ") + what);
}

attachstore::ChangedFile changedFile(const SyncFileModifyArg& arg)
{
    return {arg.filePath, arg.fileSize, arg.attachFile.origName, arg.fileMd5,
        StampOfText(arg.secondFile.text2)};
}

/// The file that a change to a note that is not open reads: empty if nobody says; nothing if the
/// note is to be left alone.
std::optional<QString> noteFile(const SyncFileModifyArg& arg)
{
    const AttachmentFile& told = arg.secondFile;
    if (!told.reserved)
        return told.text1;
    // A save may have come in since the message was sent: the host is asked again.
    const QString path = AttachFileWatcher::CurrentNoteFile(arg.noteGuid).value_or(told.text1);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

/// An extension comes from a file's name, which may hold anything but a slash.
QString insideJson(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array).sliced(2).chopped(2); // without brackets and quotes
}

} // namespace

long CNomarEditorImpl::OnAttachFileModify(SyncFileModifyArg* arg)
{
    if (!arg)
        return 1;
    DoAttachFileModify(*arg);
    return 0;
}

int CNomarEditorImpl::GenerateThumbPic(const SyncFileModifyArg& arg, QString& thumbName)
{
    return attachstore::GenerateThumbPic(changedFile(arg), thumbName);
}

void CNomarEditorImpl::DoAttachFileModify(const SyncFileModifyArg& arg)
{
    const QString guid = m_handler.GetCurNoteGuid();
    const QString now = FormatNowTime();
    QString thumbName;
    if (!GenerateThumbPic(arg, thumbName))
        return log(QStringLiteral("生成附件缩略图失败！"));
    changeNote(guid, arg, thumbName, now);
}

void CNomarEditorImpl::changeNote(const QString& openNote, const SyncFileModifyArg& arg,
    const QString& thumbName, const QString& time)
{
    if (openNote == arg.noteGuid)
        changeOpenNote(arg, thumbName, time);
    else
        changeClosedNote(arg, thumbName, time);
}

void CNomarEditorImpl::changeOpenNote(
    const SyncFileModifyArg& arg, const QString& thumbName, const QString& time)
{
    const SameNote same = m_handler.d->bridge.sameNote();
    const QString& name = arg.attachFile.origName;
    const QString newName = attachstore::HashNameOf(changedFile(arg));
    const QString folder = QStringLiteral("userdata\\\\attachment\\\\"); // as JSON has it
    const int isChanged = m_handler.UpdateHtmlAttachAttr(
        name, folder + insideJson(newName), QStringLiteral("../") + folder + insideJson(thumbName));
    if (!same.isAlive())
        return;
    if (!same) {
        // While the page was called the host has opened another text. If this note's can be had,
        // the change goes there.
        const QString guid = m_handler.GetCurNoteGuid();
        const auto canBeHad = [&] {
            const auto path = noteFile(arg);
            return path && !path->isEmpty();
        };
        if ((guid == arg.noteGuid || canBeHad()) && same.isAlive())
            changeNote(guid, arg, thumbName, time);
        return;
    }
    if (!isChanged)
        return log(QStringLiteral("更新笔记附件属性失败！"));
    // Ahead of the save, which takes the times from this book.
    // Kept: the book of sizes does not learn the new names; it knows them from the next load on.
    m_handler.RecordAttachModifyTime(newName, name, time);
    m_handler.RecordAttachModifyTime(thumbName, QString(), time);
    OnSave();
}

void CNomarEditorImpl::changeClosedNote(
    const SyncFileModifyArg& arg, const QString& thumbName, const QString& time)
{
    const auto path = noteFile(arg);
    if (!path)
        return;
    const QString newName = attachstore::HashNameOf(changedFile(arg));
    const attachstore::NewImage image{arg.attachFile.origName, newName, thumbName, time};
    std::vector<NewAttachFile> files;
    QString text;
    const attachstore::NoteRewrite result =
        attachstore::RewriteClosedNote(*path, arg.noteGuid, image, files, text);
    if (result == attachstore::NoteRewrite::Filed && m_notify)
        m_notify->OnSaveNote(arg.noteGuid, files, text);
}
