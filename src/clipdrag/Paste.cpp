#include "clipdrag/Paste.h"

#include "attachfiles/Adder.h"
#include "attachstore/EntryRules.h"
#include "attachstore/FileRecord.h"
#include "attachstore/ImageFile.h"
#include "attachstore/Import.h"
#include "bridge/OpenNote.h"
#include "clipdrag/ClipFlavours.h"
#include "clipdrag/DesktopClipboard.h"
#include "clipdrag/DroppedFiles.h"
#include "clipdrag/HtmlClipboard.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "noteattach/Rewrite.h"
#include "platform/Boxes.h"
#include "platform/Result.h"
#include "support/Log.h"
#include "support/Text.h"
#include "support/TimeText.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMimeData>

namespace {

/// A program that lives tells in far less than this what it has on the clipboard.
constexpr qint64 answerMs = 2000;

/// In bytes; 0 for what is no file.
quint64 sizeOf(const QString& path)
{
    const QFileInfo file(path);
    return !path.isEmpty() && file.isFile() ? quint64(file.size()) : 0;
}

DropFileInfo recordOf(const NewAttachFile& attachment, quint64 size)
{
    DropFileInfo info;
    info.filePath = attachment.filePath;
    info.origName = info.fileName = attachment.origName;
    info.fileExt = attachstore::UsableExtension(attachstore::GetFileStuffx(attachment.origName));
    info.fileSize = size;
    info.fileTime = attachstore::FormatCurTime();
    return info;
}

/// The attachments among the records, and the files they are to become.
struct Incoming {
    std::vector<NewAttachFile> attachments;
    std::vector<DropFileInfo> files;
    quint32 weight = 0;
    bool isWhole = true; ///< False once a file was missing.
};

Incoming incomingOf(const std::vector<NewAttachFile>& attList)
{
    Incoming incoming;
    for (const NewAttachFile& attachment : attList) {
        if (attachment.isSrcFile != 0)
            continue;
        const quint64 size = sizeOf(attachment.filePath);
        // Kept: the low 32 bits decide, with their sign, so a file of 2 GiB counts as missing; and
        // the sum has 32 bits.
        if (qint32(quint32(size)) < 1) {
            incoming.isWhole = false;
            return incoming;
        }
        incoming.weight += quint32(size);
        incoming.files.push_back(recordOf(attachment, size));
        incoming.attachments.push_back(attachment);
    }
    return incoming;
}

void appendSizes(
    const DropFileInfo& file, const MAF_RESULT& imported, std::vector<CopiedFileSize>& sizes)
{
    sizes.push_back({imported.attName, file.origName, file.fileSize});
    // Kept: the name of a card is both parts of its key.
    if (!noteattach::IsPicFileType(file.fileName))
        sizes.push_back({imported.picName, imported.picName, quint64(imported.picSize)});
}

} // namespace

Paste::Paste(OpenNote& note, Adder& adder, Boxes& boxes)
    : m_note(note)
    , m_adder(adder)
    , m_boxes(boxes)
{
}

long Paste::DoCtrlV()
{
    QClipboard* const board = clipdrag::DesktopClipboard();
    const QMimeData* const data = board ? board->mimeData() : nullptr;
    if (m_note.m_readOnly || !data)
        return E_NOTIMPL;
    // Each look at a clipboard whose owner hangs lasts some seconds: it is the only one.
    QElapsedTimer look;
    look.start();
    if (data->formats().isEmpty() && look.hasExpired(answerMs))
        return S_OK;
    if (clipdrag::HasTooManyFiles(*data)) {
        m_boxes.show(QStringLiteral("一次最多添加1000个文件！"));
        return S_OK;
    }
    // Kept: files and an image come before HTML, so what an office program copies with a picture of
    // itself is pasted as that picture.
    if (clipdrag::HasFileList(*data) || clipdrag::HasImage(*data))
        return DoCopyClipboardFile();
    return clipdrag::HasHtml(*data) ? DoCopyClipboardHtml() : E_NOTIMPL;
}

long Paste::DoCopyClipboardFile()
{
    std::vector<DropFileInfo> files;
    clipdrag::GetFileListFromClipboard(files);
    if (files.empty())
        return E_NOTIMPL;
    m_adder.AddDropFileToEditor(files);
    attachstore::DelTempFileFromList(files);
    return S_OK;
}

long Paste::DoCopyClipboardHtml()
{
    const SameNote same = m_adder.sameNote();
    std::string fragment;
    CHtmlClipboard::GetHtmlFragment(fragment);
    std::vector<NewAttachFile> attList;
    noteattach::ParseAttList(same.guid(), Utf8ToWide(fragment), attList, nullptr);
    if (attList.empty())
        return E_NOTIMPL;

    CopyLogicResult result;
    // Kept: a failure uses the key up, so the text beside the attachments is not pasted either.
    if (!DoCopyLogic(attList, result) || !same)
        return S_OK;
    if (result.attNewList.empty())
        return E_NOTIMPL;
    std::string html;
    if (noteattach::UpdateAttachAttValue2(fragment, result.attNewList, html))
        CHtmlClipboard::SetHtmlText(html);
    for (const CopiedFileSize& file : result.fileSizeList)
        m_note.EnterAttachFile(file.fileName, file.secondName, file.fileSize);
    return E_NOTIMPL;
}

int Paste::DoCopyLogic(const std::vector<NewAttachFile>& attList, CopyLogicResult& result)
{
    const SameNote same = m_adder.sameNote();
    Incoming incoming = incomingOf(attList);
    if (!incoming.isWhole || !mayEnter(incoming.weight, same))
        return 0;
    m_adder.DoAttSameName(incoming.files);
    if (!same)
        return 0;
    for (std::size_t i = 0; i < incoming.files.size(); ++i) {
        const DropFileInfo& file = incoming.files[i];
        MAF_RESULT imported;
        if (!attachstore::MoveAttFile(same.guid(), file, imported))
            return 0;
        appendSizes(file, imported, result.fileSizeList);
        result.attNewList.push_back(
            {noteattach::FormatOrigNameToJson(incoming.attachments[i].origName),
                noteattach::FormatOrigNameToJson(file.origName), imported.picName});
    }
    return 1;
}

/// Whether the note can take that many bytes more. If not, the user has been told.
bool Paste::mayEnter(quint32 weight, const SameNote& same)
{
    quint64 total = 0;
    const int isKnown = m_adder.GetExistAttTotalSize(total);
    if (!same)
        return false;
    if (!isKnown) {
        SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
            QStringLiteral("[ERROR] DoCopyLogic获取笔记编辑器附件总大小失败！"));
        m_boxes.show(QStringLiteral("获取笔记编辑器附件总大小失败！"));
        return false;
    }
    if (total + weight > attachstore::attachLimit) {
        m_boxes.show(QStringLiteral("最大支持上传10M附件！"));
        return false;
    }
    return true;
}
