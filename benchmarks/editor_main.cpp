#include "Figure.h"
#include "editor_sides.h"

#include <QApplication>

// The benchmarks of the control and its page. They want a display that paints
// (scripts/with-display).
int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    // The windows of the benchmarks come and go; none of them is the end.
    QApplication::setQuitOnLastWindowClosed(false);
    const int result = bench::run(argc, argv);
    bench::Editor::close();
    return result;
}
