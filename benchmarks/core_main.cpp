#include "Figure.h"

#include <QGuiApplication>

// The benchmarks that need neither a display nor a browser. Cards are text drawn by the platform.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    return bench::run(argc, argv);
}
