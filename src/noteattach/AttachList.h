#pragma once

#include "noteattach/NewAttachFile.h"

#include <QString>

#include <vector>

class HtmlDocument;

/// The attachments of a note, read from its HTML. docs/attachment-element.md tells the grammar.
/// All of these work on a text, not on the open note. What gives paths makes the note's folder in
/// the store when there is an attachment that belongs there; nothing else is changed.
namespace noteattach {

/// Appends one record per file that the document refers to, in order of first appearance, the
/// `class` record of an element ahead of its `src` record. `filePath` and `modifyTime` stay empty,
/// and the disk is not looked at. Throws std::bad_alloc alone; then `records` has those that were
/// found before.
void ListAttachments(const HtmlDocument& document, std::vector<NewAttachFile>& records);

/// Fills `attList` with those records and their paths; whatever it held before is gone.
/// `plainText`, if not null, receives the body's text as a person would read it, and stays as it
/// was if the document has no body. `origNames`, if not null, receives in addition what
/// ParseAttOrigFileNameList appends: one reading of the text then serves both. Returns 1, or 0
/// after a failure, which is logged; then rows of the unfinished scan may stand behind what the
/// list held before.
int ParseAttList(const QString& noteGuid, const QString& html, std::vector<NewAttachFile>& attList,
    QString* plainText, std::vector<QString>* origNames = nullptr);

/// Appends the original name of each attachment element that has one, repeated names repeated.
/// Returns 1, or 0 after a failure, which is logged.
int ParseAttOrigFileNameList(const QString& html, std::vector<QString>& origNames);

/// Appends the path of each attachment proper (not of shown files) that exists on disk. `plainText`
/// as for ParseAttList.
void GetAttachFileFromHtml(const QString& noteGuid, const QString& html,
    std::vector<QString>& filePaths, QString* plainText);

/// What stands behind the last separator of an attribute's path, slash and backslash alike: the
/// only part of `class` and `src` that matters.
QString LastComponent(const QString& notePath);

} // namespace noteattach
