#include "kit/RunDirs.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const RunDirs dirs;
    return RUN_ALL_TESTS();
}
