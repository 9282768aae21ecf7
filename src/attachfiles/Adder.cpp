#include "attachfiles/Adder.h"

#include "attachstore/ClashingNames.h"
#include "attachstore/EntryRules.h"
#include "attachstore/Import.h"
#include "attachstore/SizeSum.h"
#include "bridge/PageBridge.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "platform/Boxes.h"
#include "platform/ImportProgress.h"
#include "support/Log.h"

Adder::Adder(OpenNote& note, PageBridge& bridge, Boxes& boxes, ImportProgress& progress)
    : m_note(note)
    , m_bridge(bridge)
    , m_boxes(boxes)
    , m_progress(progress)
{
}

SameNote Adder::sameNote() const
{
    return m_bridge.sameNote();
}

void Adder::AddDropFileToEditor(const std::vector<DropFileInfo>& files)
{
    if (m_note.m_readOnly)
        return;
    std::vector<DropFileInfo> left = files;
    const SameNote same = sameNote();
    const std::optional<Pulled> pulled = pull();
    if (!same)
        return;
    if (!pulled)
        return reportMissingTotal();
    const bool wasShown = showRefusals(left, pulled->total, same);
    if (!same)
        return;
    // Behind a message the note may read otherwise than before it.
    if (wasShown || pulled->html.isEmpty())
        DoAttSameName(left);
    else
        attachstore::NumberClashingNames(pulled->origNames, left);
    if (same)
        addAll(left, same);
}

void Adder::DoAttSameName(std::vector<DropFileInfo>& files)
{
    const SameNote same = sameNote();
    QString html, text;
    m_bridge.GetEditorContent(html, text);
    std::vector<QString> names;
    if (same && !html.isEmpty() && noteattach::ParseAttOrigFileNameList(html, names))
        attachstore::NumberClashingNames(names, files);
}

int Adder::GetExistAttTotalSize(quint64& total)
{
    const std::optional<Pulled> pulled = pull();
    total = pulled ? pulled->total : 0;
    return pulled ? 1 : 0;
}

std::optional<Adder::Pulled> Adder::pull()
{
    const SameNote same = sameNote();
    Pulled pulled;
    QString text;
    std::vector<NewAttachFile> list;
    if (!m_bridge.GetEditorContent(pulled.html, text) || !same
        || !noteattach::ParseAttList(same.guid(), pulled.html, list, nullptr, &pulled.origNames)
        || !attachstore::SumAttachSizes(list, m_note.m_attachSizeCache, pulled.total))
        return std::nullopt;
    return pulled;
}

void Adder::reportMissingTotal()
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] 获取笔记编辑器附件总大小失败！"));
    m_boxes.show(QStringLiteral("获取笔记编辑器附件总大小失败！"));
}

bool Adder::showRefusals(std::vector<DropFileInfo>& files, quint64 total, const SameNote& same)
{
    const attachstore::Refused refused = attachstore::ApplyEntryRules(files, total);
    const std::pair<bool, QString> messages[] = {
        {refused.folder, QStringLiteral("暂不支持文件夹粘贴！")},
        {refused.empty, QStringLiteral("不能上传文件大小为0的附件！")},
        {refused.overLimit, QStringLiteral("最大支持上传10M附件！")},
    };
    for (const auto& [applies, text] : messages) {
        if (applies && same)
            m_boxes.show(text);
    }
    return refused != attachstore::Refused();
}

void Adder::addAll(const std::vector<DropFileInfo>& files, const SameNote& same)
{
    m_progress.begin(int(files.size()));
    for (const DropFileInfo& file : files) {
        const bool goesOn = m_progress.next(file.origName);
        if (!goesOn || !same)
            break;
        addOne(file, same.guid());
        if (!same)
            break;
    }
    if (same.isAlive())
        m_progress.end();
}

void Adder::addOne(const DropFileInfo& file, const QString& noteGuid)
{
    MAF_RESULT imported;
    if (!attachstore::MoveAttFile(noteGuid, file, imported))
        return;
    // Before the page call, so that the size is known even if the page fails.
    enterBooks(file, imported);
    m_bridge.AddPicToEditor(imported.picPath, imported.attPath,
        noteattach::FormatOrigNameToJson(file.origName), file.fileExt);
}

void Adder::enterBooks(const DropFileInfo& file, const MAF_RESULT& imported)
{
    m_note.EnterAttachFile(imported.attName, file.origName, file.fileSize);
    // Kept: the card's name is both parts of its key.
    if (!noteattach::IsPicFileType(file.fileName))
        m_note.EnterAttachFile(imported.picName, imported.picName, quint64(imported.picSize));
}
