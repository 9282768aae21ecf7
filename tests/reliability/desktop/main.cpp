#include "kit/RunDirs.h"
#include "tour/TestDisplay.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // A screen of its own: a clipboard and drags between programs are wanted.
    TestDisplay display;
    if (const QString missing = display.start({}); !missing.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(missing));
        return 2;
    }
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    const RunDirs dirs;
    return RUN_ALL_TESTS();
}
