#include "kit/RunDirs.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

// For rooms' tests without a widget.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const RunDirs dirs;
    const QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
