#include "Figure.h"

#include <QCoreApplication>

// The benchmarks that need neither a display nor a browser.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    return bench::run(argc, argv);
}
