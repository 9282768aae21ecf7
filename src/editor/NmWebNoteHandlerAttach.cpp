// The handler's operations that bring files into the open note, and its books of them.

#include "editor/NmWebNoteHandler_p.h"

#include "attachstore/FileRecord.h"
#include "attachstore/ImageFile.h"
#include "attachstore/Import.h"
#include "clipdrag/DroppedFiles.h"

// --- Books ---

void NmWebNoteHandler::InitAttachFileSize(const std::map<QString, quint64>& sizes)
{
    d->note.InitAttachFileSize(sizes);
}

void NmWebNoteHandler::RecordAttachModifyTime(
    const QString& fileName, const QString& origName, const QString& modifyTime)
{
    d->note.RecordAttachModifyTime(fileName, origName, modifyTime);
}

const std::map<QString, QString>& NmWebNoteHandler::GetAttachModifyCache() const
{
    return d->note.m_attachModifyCache;
}

int NmWebNoteHandler::GetExistAttTotalSize(quint64& total)
{
    return d->adder.GetExistAttTotalSize(total);
}

// --- Files on their way in ---

void NmWebNoteHandler::AddDropFileToEditor(const std::vector<DropFileInfo>& files)
{
    d->adder.AddDropFileToEditor(files);
}

void NmWebNoteHandler::DoAttSameName(std::vector<DropFileInfo>& files)
{
    d->adder.DoAttSameName(files);
}

int NmWebNoteHandler::MoveAttFile(const DropFileInfo& info, MAF_RESULT& result)
{
    return attachstore::MoveAttFile(d->note.m_curNoteGuid, info, result);
}

int NmWebNoteHandler::SaveImage(const QImage* image, std::vector<DropFileInfo>& list)
{
    return image ? attachstore::SaveImage(*image, list) : 0;
}

QString NmWebNoteHandler::GetFileStuffx(const QString& name)
{
    return attachstore::GetFileStuffx(name);
}

void NmWebNoteHandler::DelTempFileFromList(const std::vector<DropFileInfo>& list)
{
    attachstore::DelTempFileFromList(list);
}

void NmWebNoteHandler::OnAddAttachment()
{
    d->chooser.OnAddAttachment();
}

// --- Drags and the clipboard ---

long NmWebNoteHandler::OnDragEnter(const QMimeData* data, unsigned keyState, QPoint pt, int* effect)
{
    return d->fileDrag.OnDragEnter(data, keyState, pt, effect, m_defaultDropTarget);
}

long NmWebNoteHandler::OnDragOver(unsigned keyState, QPoint pt, int* effect)
{
    return d->fileDrag.OnDragOver(keyState, pt, effect, m_defaultDropTarget);
}

long NmWebNoteHandler::OnDragLeave()
{
    return d->fileDrag.OnDragLeave(m_defaultDropTarget);
}

long NmWebNoteHandler::OnDrop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect)
{
    return d->fileDrag.OnDrop(data, keyState, pt, effect, m_defaultDropTarget, d->adder);
}

DRAGE_OP_TYPE NmWebNoteHandler::PreDrag(const QMimeData* data, unsigned, QPoint, int*)
{
    return d->fileDrag.PreDrag(*data);
}

void NmWebNoteHandler::GetFileList(const QMimeData* drop, std::vector<DropFileInfo>& files)
{
    clipdrag::GetFileList(*drop, files);
}

void NmWebNoteHandler::GetFileListFromClipboard(std::vector<DropFileInfo>& files)
{
    clipdrag::GetFileListFromClipboard(files);
}
