#pragma once

#include <QString>

namespace attachstore {

/// Takes the path of a working copy apart: `noteFolder` receives the GUID of its note and
/// `fileName` its name. Both stay as they are if the path is not one directly in a folder directly
/// in the store (GetAppDir and "userdata/attachment"), compared exactly. Either kind of separator
/// serves, in any mix. Nothing is looked for on the disk.
///
/// Kept: the store is looked for anywhere in the path, and whatever character stands behind it
/// counts as the separator.
void GetAttachInfoFromPath(const QString& path, QString& noteFolder, QString& fileName);

/// Whether a path counts as that of a file that is being written: its extension is "tmp", in
/// whatever case. Of a path without a dot the whole counts as extension.
bool IsTemporaryPath(const QString& path);

/// Whether an event of the file system, by its number (`attachfiles/IFileMonitorNotify.h`), is a
/// change of the file at `path`: it was modified (3) or got this name by a rename (5), and is not
/// one that is being written. A file that is added or goes has changed for no note.
bool IsChangeEvent(const QString& path, quint32 action);

} // namespace attachstore
