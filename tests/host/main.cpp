#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    // Qt SQL finds its driver through the application.
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
