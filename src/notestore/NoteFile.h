#pragma once

#include "notestore/NoteHtmlVersion.h"

#include <QString>

class OutputFile;

/// The bytes of a note file; docs/note-file.md tells the format. What NoteHtmlRW is made of.
namespace notestore {

/// Makes the file `path`, writes marker and text to it and leaves `file` open, to be flushed. 1 if
/// all of it was written; 0 if there is something of that name, or the file cannot be made, or a
/// write failed, and what was written so far is left to the caller.
int WriteHtmlFile(
    OutputFile& file, const QString& path, const QString& html, NOTE_HTML_VER_NUMBER version);

/// Sets `*version` to the number in a marker's JSON. It stays as it is if that is no JSON object,
/// and becomes 0 if the number is missing or none.
void ParseVerNumber(const QString& json, NOTE_HTML_VER_NUMBER* version);

/// Takes the marker off a file's text and gives its version, 0 without a marker.
QString TakeMarker(QString text, NOTE_HTML_VER_NUMBER* version);

} // namespace notestore
