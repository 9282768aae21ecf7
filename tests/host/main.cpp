#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Nothing of the desktop that runs the tests is to answer.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    // A dialog remembers where it was: not in the settings of whoever runs the tests.
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
