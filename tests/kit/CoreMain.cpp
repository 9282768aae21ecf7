#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // Cards are text drawn by the platform; no test of the core rooms needs a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
