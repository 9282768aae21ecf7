#include "kit/RunDirs.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <unistd.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The engine refuses to start as root with its sandbox. Tests alone may run that way.
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    const RunDirs dirs;
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
