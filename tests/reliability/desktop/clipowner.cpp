// Owns the clipboard of the screen until it is ended: `argv[1]` is the type, `argv[2]` the file
// with the content. Says "ready" when it does, "asked" at each request for any form of it, and
// "gone" when another program has taken the clipboard over. Meant to be stopped or killed.

#include <QAbstractNativeEventFilter>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

#include <cstdio>

namespace {

void say(const char* word)
{
    std::puts(word);
    std::fflush(stdout);
}

// Sees what the X server sends, in its order.
class Requests : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override
    {
        // The core protocol's numbers; the highest bit tells who has sent it.
        constexpr int selectionClear = 29, selectionRequest = 30;
        const int kind = *static_cast<const unsigned char*>(message) & 0x7f;
        if (kind == selectionRequest)
            say("asked");
        else if (kind == selectionClear)
            say("gone");
        return false;
    }
};

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    QFile file(QString::fromLocal8Bit(argc == 3 ? argv[2] : ""));
    if (!file.open(QIODevice::ReadOnly))
        return 2;
    auto* data = new QMimeData;
    data->setData(QString::fromLatin1(argv[1]), file.readAll());
    QGuiApplication::clipboard()->setMimeData(data);
    Requests requests;
    app.installNativeEventFilter(&requests);
    QTimer::singleShot(0, [] { say("ready"); });
    return QGuiApplication::exec();
}
