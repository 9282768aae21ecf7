#include <nomareditor/AppDirs.h>

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

int main(int argc, char* argv[])
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The engine refuses to start as root with its sandbox. Tests alone may run that way.
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    // Store, log and what Qt remembers for the user: nothing of whoever runs the tests.
    const QTemporaryDir dir;
    qputenv("XDG_CONFIG_HOME", dir.path().toLocal8Bit());
    SetAppDir(dir.path());
    SetInstallDir(QStringLiteral(NOMAR_TEST_INSTALL_DIR));
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
