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

} // namespace attachstore
