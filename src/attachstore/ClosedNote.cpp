#include "attachstore/ClosedNote.h"

#include "noteattach/AttachList.h"
#include "noteattach/ModifyTimes.h"
#include "noteattach/Rewrite.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Log.h"

#include <algorithm>
#include <exception>

namespace attachstore {
namespace {

const QString kNotUpdated = QStringLiteral("更新笔记附件属性失败！");

NoteRewrite failed(const QString& what)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] CNomarEditorImpl::DoAttachFileModify ") + what);
    return NoteRewrite::Failed;
}

bool hasAttachment(const QString& html, const QString& origName)
{
    std::vector<QString> names;
    noteattach::ParseAttOrigFileNameList(html, names);
    return std::find(names.begin(), names.end(), origName) != names.end();
}

NoteRewrite rewriteAndFile(const QString& notePath, const QString& noteGuid, const NewImage& image,
    std::vector<NewAttachFile>& files, QString& text)
{
    const bool isKnown = !notePath.isEmpty();
    QString html;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
    if (!NoteHtmlRW::ReadHtmlTextFromFile(notePath, html, &version) && isKnown)
        return failed(QStringLiteral("读取笔记内容失败！"));
    if (isKnown && !hasAttachment(html, image.origName))
        return NoteRewrite::NoSuchAttachment;

    const QString folder = QStringLiteral("userdata\\attachment\\"); // as it stands in notes
    QString bodyHtml, bodyText;
    if (!noteattach::UpdateHtmlAttachAttr(html, image.origName, folder + image.hashName,
            QStringLiteral("../") + folder + image.thumbName, bodyHtml, bodyText))
        return failed(kNotUpdated);
    if (isKnown && bodyHtml == html)
        return NoteRewrite::Unchanged;

    NewAttachFile noteFile;
    if (!NoteHtmlRW::SaveHtmlTextToFile(bodyHtml, noteFile, &version) && isKnown)
        return NoteRewrite::Failed;
    std::vector<NewAttachFile> list;
    noteattach::ParseAttList(noteGuid, bodyHtml, list, nullptr);
    list.insert(list.begin(), noteFile);
    noteattach::UpdateAttModifyTimeField(noteGuid, list,
        {{image.hashName + image.origName, image.time}, {image.thumbName, image.time}});
    files = std::move(list);
    text = bodyText;
    return NoteRewrite::Filed;
}

} // namespace

NoteRewrite RewriteClosedNote(const QString& notePath, const QString& noteGuid,
    const NewImage& image, std::vector<NewAttachFile>& files, QString& text)
{
    try {
        return rewriteAndFile(notePath, noteGuid, image, files, text);
    } catch (const std::exception&) {
        return failed(kNotUpdated);
    }
}

} // namespace attachstore
