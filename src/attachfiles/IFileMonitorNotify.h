#pragma once

#include "support/Export.h"

#include <QString>

/// Hears of events of the file system.
class NOMAR_EXPORT IFileMonitorNotify {
public:
    /// Something has happened to the file at `path`: 1 it was added, 2 removed, 3 modified, 4 it
    /// lost this name by a rename, 5 it got this name by one. The thread is the sender's choice.
    virtual void OnEvent(const QString& path, quint32 action) = 0;
    virtual ~IFileMonitorNotify();
};
