// The capture on a display, and flameshot on the same one.

#include "Figure.h"
#include "capture_display.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <chrono>
#include <stdexcept>

namespace {

using namespace bench;

constexpr int kWaitMs = 20000;
constexpr int kMoves = 300;
constexpr int kPauseMs = 300;

QString probePath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/capture_probe");
}

void waitForLine(QProcess& process, const QByteArray& line)
{
    while (process.canReadLine() || process.waitForReadyRead(kWaitMs)) {
        if (process.readLine().trimmed() == line)
            return;
    }
    throw std::runtime_error("the probe did not say " + line.toStdString());
}

void enter(QProcess& process)
{
    process.write("\n");
    process.waitForBytesWritten();
}

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Our capture in a program that runs already.
class Ours {
public:
    explicit Ours(OwnDisplay& display)
        : m_display(display)
        , m_process(display.program(probePath(), {}))
    {
        m_process->start();
        waitForLine(*m_process, "ready");
    }
    ~Ours() { end(*m_process); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    double open()
    {
        const auto start = std::chrono::steady_clock::now();
        enter(*m_process);
        waitForLine(*m_process, "painted");
        return secondsSince(start);
    }
    void close()
    {
        enter(*m_process);
        m_display.waitForNoOverlay();
    }
    const QProcess& process() const { return *m_process; }

private:
    OwnDisplay& m_display;
    std::unique_ptr<QProcess> m_process;
};

/// The peer, which has no running program to start in: each capture is a process.
class Flameshot {
public:
    explicit Flameshot(OwnDisplay& display)
        : m_display(display)
    {
        QFile settings(display.home() + QStringLiteral("/flameshot/flameshot.ini"));
        QDir(display.home()).mkpath(QStringLiteral("flameshot"));
        if (!settings.open(QIODevice::WriteOnly))
            throw std::runtime_error("no home for flameshot");
        settings.write("[General]\nshowHelp=false\nshowStartupLaunchMessage=false\n"
                       "showDesktopNotification=false\ncheckForUpdates=false\n");
    }

    double open()
    {
        m_process = m_display.program(QStringLiteral("flameshot"), {QStringLiteral("gui")});
        const auto start = std::chrono::steady_clock::now();
        m_process->start();
        m_display.waitForOverlay();
        return secondsSince(start);
    }
    void close()
    {
        end(*m_process);
        m_display.waitForNoOverlay();
    }
    const QProcess& process() const { return *m_process; }

private:
    OwnDisplay& m_display;
    std::unique_ptr<QProcess> m_process;
};

template <typename Capture> double timeToOpen(Capture& capture)
{
    const double time = capture.open();
    QThread::msleep(kPauseMs);
    capture.close();
    return time;
}

/// The processor time of the capture and the X server while a selection is drawn.
template <typename Capture> double costOfMoves(OwnDisplay& display, Capture& capture)
{
    const auto to = [](int x, int y) {
        return QStringList{QStringLiteral("mousemove"), QString::number(x), QString::number(y)};
    };
    QStringList words;
    for (int i = 0; i < kMoves; ++i)
        words << to(802 + 3 * i, 502 + i) << QStringLiteral("sleep") << QStringLiteral("0.004");
    capture.open();
    QThread::msleep(kPauseMs);
    display.drive(to(800, 500) + QStringList{QStringLiteral("mousedown"), QStringLiteral("1")});
    QThread::msleep(kPauseMs);
    const double before = display.processorTime(capture.process());
    display.drive(words);
    QThread::msleep(kPauseMs);
    const double cost = display.processorTime(capture.process()) - before;
    display.drive({QStringLiteral("mouseup"), QStringLiteral("1")});
    capture.close();
    return cost;
}

/// A line that the probe of the memory prints, in bytes.
double addedMemory(OwnDisplay& display, const QByteArray& name)
{
    const auto process = display.program(probePath(), {QStringLiteral("memory")});
    process->start();
    if (!process->waitForFinished(kWaitMs))
        throw std::runtime_error("the probe did not end");
    for (const QByteArray& line : process->readAllStandardOutput().split('\n')) {
        if (line.startsWith(name + ' '))
            return line.mid(name.size() + 1).toDouble();
    }
    throw std::runtime_error("the probe could not measure");
}

std::vector<Figure> onScreen(const QSize& size)
{
    const std::string of =
        ", " + std::to_string(size.width()) + " by " + std::to_string(size.height()) + ", ";
    OwnDisplay display(size);
    Ours ours(display);
    Flameshot flameshot(display);
    std::vector<Figure> figures{
        atMost(
            "call to painted capture" + of + "against flameshot to its mapped overlay", 1.0,
            [&] { return timeToOpen(ours); }, [&] { return timeToOpen(flameshot); }),
        atMost(
            "processor time of 300 moves" + of + "against flameshot", 0.7,
            [&] { return costOfMoves(display, ours); },
            [&] { return costOfMoves(display, flameshot); })};
    const double frame = 4.0 * size.width() * size.height();
    figures.push_back(atMost(
        "memory of the capture" + of + "in frames", 3.0,
        [&] { return addedMemory(display, "steady"); }, [=] { return frame; }));
    figures.push_back(atMost(
        "memory of the capture at its peak" + of + "in frames", 4.0,
        [&] { return addedMemory(display, "peak"); }, [=] { return frame; }));
    return figures;
}

const Registration fullHd{"capture, 1920 by 1080", [] { return onScreen({1920, 1080}); }};
const Registration ultraHd{"capture, 3840 by 2160", [] { return onScreen({3840, 2160}); }};

} // namespace
