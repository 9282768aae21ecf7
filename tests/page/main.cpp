#include <QApplication>

#include <gtest/gtest.h>

#include <unistd.h>

int main(int argc, char** argv)
{
    // The engine's own sandbox cannot be set up by root, who runs tests in containers.
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
