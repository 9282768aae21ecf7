#pragma once

#include "support/AppDirs.h"

#include <QTemporaryDir>

/// The directories of one run of a test program: an empty place for the store and the log, so that
/// nothing of one run is seen by another. Make it before anything is logged.
class RunDirs {
public:
    RunDirs()
    {
        SetAppDir(m_dir.path());
#ifdef NOMAR_TEST_INSTALL_DIR
        SetInstallDir(QStringLiteral(NOMAR_TEST_INSTALL_DIR));
#endif
    }

private:
    QTemporaryDir m_dir;
};
