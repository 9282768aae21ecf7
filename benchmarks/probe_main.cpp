// bench_probe start widget|view|editor      prints "mapped", "loaded" or "ready" as it gets there
// bench_probe memory view|editor NOTE       prints "bytes N": what the note adds to an empty one
//
// One program for all, so that each side loads the same libraries.

#include "editor_page.h"
#include "editor_sides.h"
#include "probe_memory.h"

#include <nomareditor/AppDirs.h>
#include <nomareditor/WindowMessage.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTimer>
#include <QWindow>

#include <cstdio>

namespace {

void say(const char* word)
{
    std::puts(word);
    std::fflush(stdout);
}

class Window : public QWidget {
public:
    Window()
    {
        resize(1000, 700);
        // At the application, as a view of the engine makes Qt replace the native window it comes
        // into.
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose && watched == windowHandle()
            && windowHandle()->isExposed())
            say("mapped");
        return false;
    }

    bool event(QEvent* event) override
    {
        if (int(event->type()) == WM_EDITOR_READY) {
            say("ready");
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        }
        return QWidget::event(event);
    }
};

int startWidget()
{
    Window window;
    window.show();
    QTimer::singleShot(300, qApp, &QCoreApplication::quit);
    return QApplication::exec();
}

int startView(const QString& dir)
{
    const QString path = dir + QStringLiteral("/empty.html");
    QFile page(path);
    if (!page.open(QIODevice::WriteOnly))
        return 1;
    page.write("<!doctype html><title>empty</title><body>");
    page.close();
    QWebEngineView view;
    QObject::connect(&view, &QWebEngineView::loadFinished, [] {
        say("loaded");
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    });
    view.resize(1000, 700);
    view.load(QUrl::fromLocalFile(path));
    view.show();
    return QApplication::exec();
}

int startEditor(const QString& dir)
{
    SetAppDir(dir);
    Window window;
    auto* control = new CNomarEditorImpl;
    if (!control->Create(&window, window.rect(), 1, 0x50000000))
        return 1;
    window.show();
    const int result = QApplication::exec();
    delete control;
    return result;
}

int memoryOf(const QString& subject, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    const QByteArray html = file.readAll();
    const QString paragraphs = QStringLiteral("%1.getElementsByTagName('p').length === %2")
                                   .arg(bench::kNoteBody)
                                   .arg(html.count("<p>"));
    double added = 0;
    if (subject == QLatin1StringView("editor")) {
        bench::Editor& editor = bench::Editor::instance();
        const QString name = editor.store(html);
        editor.openEmpty();
        const double before = bench::settledMemory();
        editor.open(name);
        added = bench::settledMemory() - before;
        bench::Editor::close();
    } else {
        bench::BareView view;
        const double before = bench::settledMemory();
        view.assign(QString::fromUtf8(html));
        bench::waitForPaint(view.page(), paragraphs);
        added = bench::settledMemory() - before;
    }
    std::printf("bytes %.0f\n", added);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const QString what = arguments.value(1);
    const QString subject = arguments.value(2);
    if (what == QLatin1StringView("memory"))
        return memoryOf(subject, arguments.value(3));
    QTemporaryDir dir;
    if (subject == QLatin1StringView("widget"))
        return startWidget();
    if (subject == QLatin1StringView("view"))
        return startView(dir.path());
    return startEditor(dir.path());
}
