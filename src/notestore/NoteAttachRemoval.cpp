#include "notestore/NoteAttachRemoval.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "noteattach/ModifyTimes.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Log.h"
#include "support/Paths.h"

#include <exception>

namespace notestore {
namespace {

int removeAndFile(const QString& path, const QString& noteGuid, const QString& origName,
    std::vector<NewAttachFile>& attList)
{
    if (path.isEmpty() || !IsFileExist(path))
        return 0;
    QString html;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
    NoteHtmlRW::ReadHtmlTextFromFile(path, html, &version); // one that fails leaves an empty note

    QString newText;
    if (!RemoveAttachElement(html, origName, newText))
        return 0;

    NewAttachFile noteFile;
    if (!NoteHtmlRW::SaveHtmlTextToFile(newText, noteFile, &version))
        return 0;
    attList.clear();
    noteattach::ParseAttList(noteGuid, newText, attList, nullptr);
    attList.insert(attList.begin(), noteFile);
    noteattach::UpdateAttModifyTimeField(noteGuid, attList, {});
    return 1;
}

} // namespace

int DelAttachFromHtmlFile(
    const QString& noteGuid, const QString& origName, std::vector<NewAttachFile>& attList)
{
    const QString path; // Kept: nothing says which file is the note's.
    return DelAttachFromHtmlFile(path, noteGuid, origName, attList);
}

int DelAttachFromHtmlFile(const QString& path, const QString& noteGuid, const QString& origName,
    std::vector<NewAttachFile>& attList)
{
    try {
        return removeAndFile(path, noteGuid, origName, attList);
    } catch (const std::exception&) {
        SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
            QStringLiteral("[ERROR] DelAttachFromHtmlFile从html文件中删除附件失败！"));
        return 0;
    }
}

// The first only: a name may stand in a note more than once.
bool RemoveAttachElement(const QString& html, const QString& origName, QString& newText)
{
    HtmlDocument document(html);
    if (!document.hasBody())
        return false;
    const QString exData = noteattach::FormatOrigNameToJson(origName);
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        if (document.attribute(i, QLatin1StringView("nm_exdata")) == exData) {
            document.remove(i);
            newText = document.bodyInnerHtml();
            return true;
        }
    }
    return false;
}

} // namespace notestore
