#pragma once

#include "clipdrag/AttachFileInfo.h"

#include <QString>

#include <functional>
#include <vector>

/// What a host puts on the clipboard and takes off it. No note needs to be open, and what the
/// desktop's clipboard makes of it is not told.
namespace clipdrag {

/// Makes a note's HTML fit for other programs; 1, or 0 with `converted` not to be used.
using NoteConverter = std::function<int(const QString& html, QString& converted)>;

/// Puts a note's HTML on the clipboard, converted. The result is the converter's; 0 for an empty
/// text, with the clipboard as it was.
int OnCopyContent(const QString& noteHtml, const NoteConverter& convert);
/// The same for a note file; 0 if it cannot be read.
int OnCopyHtml(const QString& noteFilePath, const NoteConverter& convert);
/// Empties the clipboard, whoever filled it.
void ClearCopyData();

/// Puts those files on the clipboard that exist, under their paths on disk (`Paths.h`: a backslash
/// may stand for a separator); with none it stays as it is.
void AddAttachToClipboard(const std::vector<AttachFileInfo>& files);

} // namespace clipdrag
