#pragma once

#include "support/AppDirs.h"

#include <QFile>
#include <QTemporaryDir>

/// The directories of one run of a test program: an empty place for the store, the log and what Qt
/// remembers for the user, so that nothing of one run is seen by another. Make it before the
/// application.
class RunDirs {
public:
    RunDirs()
    {
        SetAppDir(m_dir.path());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir.path()));
#ifdef NOMAR_TEST_INSTALL_DIR
        SetInstallDir(QStringLiteral(NOMAR_TEST_INSTALL_DIR));
#endif
    }

private:
    QTemporaryDir m_dir;
};
