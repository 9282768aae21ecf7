// What a process costs: time to its window and to its page, and memory of a long note. Each
// measurement is a process of its own, bench_probe, which says on its output how far it is.

#include "Figure.h"
#include "SampleNote.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace {

using namespace bench;

constexpr qsizetype kLongNote = 10 << 20;

class Probe {
public:
    explicit Probe(const QString& arguments)
        : m_start(std::chrono::steady_clock::now())
        , m_output(popen(commandLine(arguments).constData(), "r"), pclose)
    {
    }

    /// Waits for the line that begins with \a word and returns what follows it.
    QByteArray waitFor(const QByteArray& word)
    {
        char line[200];
        while (m_output && std::fgets(line, sizeof line, m_output.get())) {
            if (QByteArray(line).startsWith(word))
                return QByteArray(line).mid(word.size()).trimmed();
        }
        throw std::runtime_error("the probe never said " + word.toStdString());
    }

    /// Seconds from the start of the process to the line \a word.
    double secondsTo(const QByteArray& word)
    {
        waitFor(word);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    static QByteArray commandLine(const QString& arguments)
    {
        const QString probe =
            QCoreApplication::applicationDirPath() + QStringLiteral("/bench_probe ");
        return QFile::encodeName(QStringLiteral("exec ") + probe + arguments);
    }

    std::chrono::steady_clock::time_point m_start;
    std::unique_ptr<FILE, int (*)(FILE*)> m_output;
};

Side startSide(const char* subject, const char* word)
{
    return [=] {
        return Probe(QStringLiteral("start ") + QLatin1StringView(subject)).secondsTo(word);
    };
}

Side memorySide(const char* subject, const QString& noteFile)
{
    return [=] {
        Probe probe(QStringLiteral("memory %1 %2").arg(QLatin1StringView(subject), noteFile));
        return probe.waitFor("bytes").toDouble();
    };
}

const Registration start{
    "start", [] {
        return std::vector<Figure>{
            atMost("start to window, against an empty widget", 1.3, startSide("editor", "mapped"),
                startSide("widget", "mapped"), 9),
            atMost("start to message 8005, against a bare view loaded", 1.15,
                startSide("editor", "ready"), startSide("view", "loaded"), 9)};
    }};

const Registration memory{"memory", [] {
                              QTemporaryDir dir;
                              const QString path = dir.filePath(QStringLiteral("note.html"));
                              QFile file(path);
                              if (!file.open(QIODevice::WriteOnly)
                                  || file.write(sampleNote(kLongNote)) < kLongNote || !file.flush())
                                  throw std::runtime_error("cannot write the note");
                              return std::vector<Figure>{atMost(
                                  "memory of a note of 10 MB, against all of it in a bare view",
                                  0.4, memorySide("editor", path), memorySide("view", path))};
                          }};

} // namespace
