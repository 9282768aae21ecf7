// undisplayed OUT.bmp: draws a card without an application object, with one that knows no display,
// and with one that does. Prints each result, followed by whether there was a file.

#include "attachstore/Card.h"

#include <QFile>
#include <QGuiApplication>

#include <cstdio>

namespace {

void draw(const QString& path)
{
    const int drawn = attachstore::GenerateFileThumb(
        FT_PDF, QStringLiteral("a.pdf"), QStringLiteral("1B"), path, nullptr);
    std::printf("%d %d\n", drawn, QFile::exists(path) ? 1 : 0);
}

} // namespace

int main(int argc, char** argv)
{
    const QString path = QString::fromLocal8Bit(argv[1]);
    draw(path);
    {
        const QCoreApplication application(argc, argv);
        draw(path);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    draw(path);
    return 0;
}
