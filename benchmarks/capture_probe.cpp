// capture_probe                  for each line on its input takes a picture of the screen and opens
//                                the capture, prints "painted" once its window is, and closes it
//                                with the next line
// capture_probe memory           opens the capture and prints "steady N" and "peak N", the bytes
//                                that it added and that it added at most
//
// A running program with a window, as a host of the note editor is.

#include "capture/NomarNoteScreenCapture.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QScreen>
#include <QSocketNotifier>
#include <QTest>

#include <cstdio>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

void say(const QByteArray& line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

class Capture : public NomarNoteScreenCapture {
public:
    using NomarNoteScreenCapture::NomarNoteScreenCapture;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        NomarNoteScreenCapture::paintEvent(event);
        if (m_isPainted)
            return;
        m_isPainted = true;
        // When this event has been handled, the picture is with the window system.
        QMetaObject::invokeMethod(
            this, [] { say("painted"); }, Qt::QueuedConnection);
    }

private:
    bool m_isPainted = false;
};

int openOnDemand()
{
    std::unique_ptr<Capture> capture;
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (!std::getline(std::cin, line))
            return QCoreApplication::quit();
        if (capture)
            return capture.reset();
        capture = std::make_unique<Capture>();
        capture->Create(nullptr);
    });
    say("ready");
    return QApplication::exec();
}

/// A line of /proc/self/status, in bytes.
double statusOf(const QByteArray& name)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("the system tells no memory");
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.simplified().split(' ').value(1).toDouble() * 1024;
    }
    throw std::runtime_error("the system tells no memory");
}

int measureMemory()
{
    // What any first window needs: fonts, icons, the connection.
    QImage small(300, 220, QImage::Format_RGB32);
    small.fill(Qt::gray);
    {
        NomarNoteScreenCapture first(small);
        first.Create(nullptr);
        QTest::qWait(300);
    }
    const double before = statusOf("VmRSS");
    // From here on the peak counts.
    QFile peak(QStringLiteral("/proc/self/clear_refs"));
    if (!peak.open(QIODevice::WriteOnly) || peak.write("5") != 1 || !peak.flush())
        throw std::runtime_error("the system forgets no peak");
    NomarNoteScreenCapture capture;
    if (!capture.Create(nullptr) || !QTest::qWaitForWindowExposed(&capture))
        return 1;
    QTest::qWait(500);
    say("steady " + QByteArray::number(statusOf("VmRSS") - before, 'f', 0));
    say("peak " + QByteArray::number(statusOf("VmHWM") - before, 'f', 0));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QLabel host(QStringLiteral("host"));
    host.resize(600, 400);
    host.show();
    if (!QTest::qWaitForWindowExposed(&host))
        return 1;
    return app.arguments().value(1) == QLatin1StringView("memory") ? measureMemory()
                                                                   : openOnDemand();
}
