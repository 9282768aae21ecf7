// The handler's operations on notes and files that need no open note.

#include "editor/NmWebNoteHandler.h"

#include "attachstore/Card.h"
#include "attachstore/FileRecord.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "noteattach/ModifyTimes.h"
#include "noteattach/Rewrite.h"
#include "notestore/MhtExport.h"
#include "notestore/NoteAttachRemoval.h"
#include "support/Paths.h"

int NmWebNoteHandler::ParseAttList(const QString& noteGuid, const QString& html,
    std::vector<NewAttachFile>& attList, QString* plainText)
{
    return noteattach::ParseAttList(noteGuid, html, attList, plainText);
}

int NmWebNoteHandler::ParseAttOrigFileNameList(const QString& html, std::vector<QString>& origNames)
{
    return noteattach::ParseAttOrigFileNameList(html, origNames);
}

void NmWebNoteHandler::GetAttachFileFromHtml(const QString& noteGuid, const QString& html,
    std::vector<QString>& filePaths, QString* plainText)
{
    noteattach::GetAttachFileFromHtml(noteGuid, html, filePaths, plainText);
}

int NmWebNoteHandler::DelAttachFromHtmlFile(
    const QString& noteGuid, const QString& origName, std::vector<NewAttachFile>& attList)
{
    return notestore::DelAttachFromHtmlFile(noteGuid, origName, attList);
}

int NmWebNoteHandler::UpdateHtmlAttachAttr(const QString& html, const QString& origName,
    const QString& classValue, const QString& srcValue, QString& bodyHtml, QString& bodyText)
{
    return noteattach::UpdateHtmlAttachAttr(
        html, origName, classValue, srcValue, bodyHtml, bodyText);
}

int NmWebNoteHandler::UpdateAttachAttValue(
    const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml)
{
    return noteattach::UpdateAttachAttValue(html, attNewList, outHtml);
}

int NmWebNoteHandler::UpdateAttachAttValue2(
    const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml)
{
    return noteattach::UpdateAttachAttValue2(html, attNewList, outHtml);
}

void NmWebNoteHandler::UpdateAttModifyTimeField(const QString& noteGuid,
    std::vector<NewAttachFile>& attList, const std::map<QString, QString>& modifyCache)
{
    noteattach::UpdateAttModifyTimeField(noteGuid, attList, modifyCache);
}

QString NmWebNoteHandler::GetOrigNameFromJson(const std::string& json)
{
    return noteattach::GetOrigNameFromJson(json);
}

QString NmWebNoteHandler::FormatOrigNameToJson(const QString& origName)
{
    return noteattach::FormatOrigNameToJson(origName);
}

int NmWebNoteHandler::IsPicFileType(const QString& name)
{
    return noteattach::IsPicFileType(name);
}

QString NmWebNoteHandler::FormatCurTime()
{
    return attachstore::FormatCurTime();
}

QString NmWebNoteHandler::FormatFileInfo(long size, const QString& time)
{
    return attachstore::FormatFileInfo(size, time);
}

int NmWebNoteHandler::GenerateFileThumb(FILE_TYPE type, const QString& fileName,
    const QString& fileInfo, const QString& outPath, int* fileSize)
{
    return attachstore::GenerateFileThumb(type, fileName, fileInfo, outPath, fileSize);
}

bool NmWebNoteHandler::path_is_folder(const QString& path)
{
    return ::path_is_folder(path);
}

QString NmWebNoteHandler::extract_foldername(const QString& path)
{
    return ::extract_foldername(path);
}

int NmWebNoteHandler::NoteHtmlContentToMhtFile(const QString& html, const QString& mhtPath)
{
    return notestore::NoteHtmlContentToMhtFile(html, mhtPath);
}

int NmWebNoteHandler::NoteHtmlFileToMhtFile(const QString& htmlPath, const QString& mhtPath)
{
    return notestore::NoteHtmlFileToMhtFile(htmlPath, mhtPath);
}

int NmWebNoteHandler::NoteHtmlContentToMhtFileWithPictures(
    const QString& html, const QString& mhtPath)
{
    return notestore::NoteHtmlContentToMhtFileWithPictures(html, mhtPath);
}

int NmWebNoteHandler::HtmlConvert(const QString& html, QString& converted)
{
    return notestore::HtmlConvert(html, converted);
}

int NmWebNoteHandler::HtmlToMht(const QString& html, const QString& mhtPath)
{
    return notestore::HtmlToMht(html, mhtPath);
}
