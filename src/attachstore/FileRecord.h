#pragma once

#include "attachstore/DropFileInfo.h"

#include <QString>

#include <optional>

/// The record of a file on its way in, and the texts that belong to it.
namespace attachstore {

/// The record of the file or folder at `path` (native separators), or nothing if it is no folder
/// and cannot be opened for reading: what is missing, a link that leads nowhere, a FIFO, device or
/// socket, which are never waited for. A link stands for what it leads to. A file on disk may have
/// any name; the record's names are legal ones (`LegalName.h`). Nothing is logged.
///
/// The extension is a usable one: UsableExtension.
std::optional<DropFileInfo> RecordOfPath(const QString& path);

/// What stands behind the last dot of a name, in lower case: empty if the name ends with it, and
/// "unknow" if there is none.
QString GetFileStuffx(const QString& name);

/// An extension as it may stand behind a digest: "unknow" for one that would make no file name of
/// the store, as it is longer than 222 bytes or has a separator or NUL in it.
QString UsableExtension(const QString& extension);

/// Now as "%Y/%m/%d %H:%M".
QString FormatCurTime();

/// The second line of a card: the time, a blank, and the size as FormatFileSize has it. An empty
/// time stands for the present one. The size is narrowed to 32 bits with sign, so one of 2 GiB or
/// more is not told rightly.
QString FormatFileInfo(long size, const QString& time);

} // namespace attachstore
