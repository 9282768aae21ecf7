#include <QApplication>

#include <gtest/gtest.h>

#include <unistd.h>

int main(int argc, char** argv)
{
    // What the library turns on when it is loaded.
    QByteArray flags = "--enable-blink-features=HighlightAPI";
    // The engine's own sandbox cannot be set up by root, who runs tests in containers.
    if (geteuid() == 0)
        flags += " --no-sandbox";
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags);
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
