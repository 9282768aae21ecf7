#pragma once

#include "support/Export.h"

#include <QString>

/// Where the component finds its files.
///
/// Two directories matter, and both are by default the directory of the host's executable:
///   - the application directory holds what the component writes: the store `userdata/attachment`
///     and the log `NomarEditor.log`;
///   - the install directory holds what it only reads: `res` and `nmeditor`.
///
/// A host that is installed where it cannot write calls SetAppDir, and one whose data files do not
/// lie beside its executable calls SetInstallDir. Both must come before the first control is made
/// and before anything is logged: the log keeps the place it had at its first line.
///
/// The path may be given with or without a separator at its end, and a relative one is taken from
/// the working directory of the moment. An empty path brings the default back. The directory need
/// not exist. Callable from any thread.
NOMAR_EXPORT void SetAppDir(const QString& path);
NOMAR_EXPORT void SetInstallDir(const QString& path);

/// The directory that holds the store and the log, with a separator at its end.
NOMAR_EXPORT QString GetAppDir();

/// The directory that holds `res` and `nmeditor`, with a separator at its end.
NOMAR_EXPORT QString GetInstallDir();
