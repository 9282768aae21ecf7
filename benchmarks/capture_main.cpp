#include "Figure.h"

#include <QApplication>

// The benchmarks of the screen capture. Painting is measured in this process alone, with no window
// system behind it; what a desktop has to do with it, on displays that the benchmarks start
// (capture_display.h).
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return bench::run(argc, argv);
}
