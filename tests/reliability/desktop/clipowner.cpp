// Owns the clipboard of the screen until it is ended: `argv[1]` is the type, `argv[2]` the file
// with the content. Says "ready" when it does. Meant to be stopped or killed.

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    QFile file(QString::fromLocal8Bit(argc == 3 ? argv[2] : ""));
    if (!file.open(QIODevice::ReadOnly))
        return 2;
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(argv[1]), file.readAll());
    QGuiApplication::clipboard()->setMimeData(data);
    QTimer::singleShot(0, [] {
        std::puts("ready");
        std::fflush(stdout);
    });
    return QGuiApplication::exec();
}
