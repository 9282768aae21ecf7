#include "Tour.h"

#include "TestDisplay.h"
#include "Wait.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QJsonArray>
#include <QPixmap>
#include <QScreen>

#include <algorithm>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s).replace(u'\n', u"\\n"_s)
        + u'\'';
}

/// The colours of a dark desktop, as one kind of desktop keeps them.
void writeDarkColours(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    for (const char* group : {"Button", "Tooltip", "Window", "View"})
        file.write(QByteArray("[Colors:") + group
            + "]\nBackgroundNormal=35,37,41\nForegroundNormal=228,230,233\n");
    file.write("[Colors:Selection]\nBackgroundNormal=63,111,196\nForegroundNormal=255,255,255\n");
}

} // namespace

Tour::Tour(const QString& hostProgram, const QString& shotDir)
    : host(hostProgram)
    , records(m_dir.filePath(u"notes"_s))
    , m_shotDir(shotDir)
{
    QDir().mkpath(shotDir);
    // Stands in for the desktop's program that opens files.
    QDir().mkpath(m_dir.filePath(u"Desktop"_s));
    QDir().mkpath(m_dir.filePath(u"bin"_s));
    QFile opener(m_dir.filePath(u"bin/xdg-open"_s));
    if (opener.open(QIODevice::WriteOnly))
        opener.write("#!/bin/sh\nprintf '%s\\n' \"$@\" >>\"$NOMAR_OPENED\"\n");
    opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool Tour::run(const char* name, const std::function<void(Tour&)>& step)
{
    QElapsedTimer timer;
    timer.start();
    QByteArray fault;
    try {
        step(*this);
    } catch (const StepFailure& failure) {
        fault = failure.what();
        shot(u"failed"_s);
    }
    std::printf("%-6s %6.2f s  %s\n", fault.isEmpty() ? "ok" : "FAILED",
        double(timer.elapsed()) / 1000, name);
    if (!fault.isEmpty())
        std::printf("       %s\n", fault.constData());
    std::fflush(stdout);
    return fault.isEmpty();
}

void Tour::startHost(const QString& language, bool dark)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, m_dir.filePath(u"bin"_s) + u':' + environment.value(u"PATH"_s));
    environment.insert(u"NOMAR_OPENED"_s, m_dir.filePath(u"opened"_s));
    environment.remove(u"XDG_CURRENT_DESKTOP"_s);
    if (dark) {
        writeDarkColours(m_dir.filePath(u"kdeglobals"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, m_dir.path());
        environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
        environment.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    }
    host.start(appDir(), language, environment);
    if (!tools.attach(host.port()))
        throw StepFailure("no page: " + host.complaints().toStdString());
    expectPage(
        u"typeof jsProcessor === 'function' && !!document.querySelector('iframe.ke-edit-iframe')"_s);
    expect(u"the window is on the screen"_s, [this] { return !window().isEmpty(); });
    m_pageOrigin.reset();
}

void Tour::quitHost()
{
    key(u"ctrl+q"_s);
    const bool ended = host.waitForEnd();
    tools.detach();
    if (!ended)
        throw StepFailure("the host did not end well: " + host.complaints().toStdString());
}

QString Tour::openedByDesktop() const
{
    QFile file(m_dir.filePath(u"opened"_s));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString Tour::xdotool(const QStringList& arguments)
{
    return QString::fromUtf8(runTool(u"xdotool"_s, arguments)).trimmed();
}

QString Tour::window()
{
    return xdotool({u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"nomarhost"_s})
        .section(u'\n', 0, 0);
}

QPoint Tour::pageOrigin()
{
    if (m_pageOrigin)
        return *m_pageOrigin;
    // The page tells where it lies on the screen with the first move of the mouse over it.
    page(u"addEventListener('mousemove', e => globalThis.tourOrigin"
         " = [e.screenX - e.clientX, e.screenY - e.clientY])"_s);
    QJsonArray origin;
    expect(u"the page sees the mouse"_s, [&] {
        moveInWindow(-60, 70);
        moveInWindow(-63, 72);
        origin = page(u"globalThis.tourOrigin"_s).toArray();
        return origin.size() == 2;
    });
    m_pageOrigin = QPoint(origin[0].toInt(), origin[1].toInt());
    return *m_pageOrigin;
}

QRect Tour::windowPlace()
{
    return placeOf(window());
}

QRect Tour::activeWindowPlace()
{
    const QString active = xdotool({u"getactivewindow"_s});
    return active.isEmpty() ? QRect() : placeOf(active);
}

QRect Tour::placeOf(const QString& window)
{
    QMap<QString, int> place;
    for (const QString& line : xdotool({u"getwindowgeometry"_s, u"--shell"_s, window}).split(u'\n'))
        place[line.section(u'=', 0, 0)] = line.section(u'=', 1).toInt();
    return {place[u"X"_s], place[u"Y"_s], place[u"WIDTH"_s], place[u"HEIGHT"_s]};
}

void Tour::moveInWindow(int x, int y)
{
    const int fromLeft = x < 0 ? windowPlace().width() + x : x;
    xdotool(
        {u"mousemove"_s, u"--window"_s, window(), QString::number(fromLeft), QString::number(y)});
}

void Tour::clickInWindow(int x, int y)
{
    moveInWindow(x, y);
    xdotool({u"click"_s, u"1"_s});
}

void Tour::key(const QString& keys)
{
    xdotool({u"key"_s, u"--clearmodifiers"_s, keys});
}

void Tour::type(const QString& text)
{
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            key(u"Return"_s);
        if (!lines[i].isEmpty())
            xdotool({u"type"_s, u"--delay"_s, u"25"_s, u"--"_s, lines[i]});
    }
}

void Tour::clickAt(QPoint screen, int times)
{
    xdotool({u"mousemove"_s, QString::number(screen.x()), QString::number(screen.y()), u"click"_s,
        u"--repeat"_s, QString::number(times), u"--delay"_s, u"40"_s, u"1"_s});
}

void Tour::moveBySteps(QPoint from, QPoint to)
{
    // As a hand does: whoever is under the pointer answers each of them.
    constexpr int steps = 10;
    for (int i = 1; i <= steps; ++i) {
        const QPoint at = from + (to - from) * i / steps;
        xdotool({u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"sleep"_s,
            u"0.1"_s});
    }
}

void Tour::pull(QPoint from, QPoint to)
{
    xdotool({u"mousemove"_s, QString::number(from.x()), QString::number(from.y()), u"mousedown"_s,
        u"1"_s});
    moveBySteps(from, to);
    // The last move before the release is a small one, as of a hand that has arrived.
    xdotool({u"mousemove_relative"_s, u"--"_s, u"-1"_s, u"0"_s, u"mousemove"_s,
        QString::number(to.x()), QString::number(to.y()), u"mouseup"_s, u"1"_s});
}

QPoint Tour::barPlace()
{
    constexpr int middle = 3;
    return pageOrigin()
        + QPoint(page(u"innerWidth"_s).toInt() / 2, page(u"innerHeight"_s).toInt() + middle);
}

void Tour::rightClickAt(QPoint screen)
{
    xdotool({u"mousemove"_s, QString::number(screen.x()), QString::number(screen.y()), u"click"_s,
        u"3"_s});
}

void Tour::clickElement(const QString& expression, int times)
{
    QJsonArray middle;
    expect(expression + u" is in sight"_s, [&] {
        // An element of the note is placed by its frame, one of the page by the page.
        middle = page(
            u"(() => { const e = %1; if (!e) return null; const r = e.getBoundingClientRect();"
            " const f = e.ownerDocument.defaultView.frameElement?.getBoundingClientRect() ?? {x: "
            "0, y: 0};"
            " return r.width ? [r.x + r.width / 2 + f.x, r.y + r.height / 2 + f.y] : null; })()"_s
                .arg(expression))
                     .toArray();
        return middle.size() == 2;
    });
    clickAt(
        pageOrigin() + QPoint(qRound(middle[0].toDouble()), qRound(middle[1].toDouble())), times);
}

void Tour::clickButton(const QString& label)
{
    clickElement(
        u"[...document.querySelectorAll('button')].find(b => b.offsetWidth"
        " && (b.querySelector('.menu-text')?.textContent ?? b.getAttribute('aria-label')) === %1)"_s
            .arg(quoted(label)));
}

void Tour::clickNote()
{
    clickElement(u"document.querySelector('iframe.ke-edit-iframe')"_s);
    key(u"ctrl+End"_s);
}

void Tour::clickRow(int row)
{
    const int rowHeight = QFontMetrics(QGuiApplication::font()).height() * 2 + 24;
    clickAt(pageOrigin() + QPoint(-100, rowHeight * row + rowHeight / 2));
}

QString Tour::desktopFile(const QString& name) const
{
    return m_dir.filePath(u"Desktop/"_s + name);
}

void Tour::drag(const QStringList& files, const QString& shotName)
{
    QProcess source;
    source.start(QCoreApplication::applicationDirPath() + u"/dragsource"_s,
        QStringList{u"--at"_s, u"4,830"_s} + files);
    const auto said = [&](const char* word) {
        return waitUntil([&] { return source.readAllStandardOutput().contains(word); });
    };
    if (!said("ready"))
        throw StepFailure("there is no window to drag from");
    const QPoint from(64, 860);
    const QPoint to = windowPlace().center() + QPoint(120, 40);
    xdotool({u"mousemove"_s, QString::number(from.x()), QString::number(from.y()), u"mousedown"_s,
        u"1"_s});
    moveBySteps(from, to);
    if (!shotName.isEmpty())
        shot(shotName);
    xdotool({u"mouseup"_s, u"1"_s});
    if (!said("copied"))
        throw StepFailure("the drop was not taken as a copy");
    source.terminate();
    source.waitForFinished();
}

void Tour::shot(const QString& name)
{
    const QString file =
        u"%1/%2-%3.png"_s.arg(m_shotDir).arg(++m_shots, 2, 10, QChar(u'0')).arg(name);
    screen().save(file);
}

QImage Tour::screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

QString Tour::noteText()
{
    return page(noteDocument + u".body.innerText"_s).toString();
}

bool Tour::isShown(QRgb colour)
{
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
    for (int y = 0; y < screen.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(screen.constScanLine(y));
        if (std::find(line, line + screen.width(), colour) != line + screen.width())
            return true;
    }
    return false;
}

void Tour::expect(const QString& what, const std::function<bool()>& holds, int milliseconds)
{
    if (!waitUntil(holds, milliseconds))
        throw StepFailure("it does not hold that " + what.toStdString());
}

void Tour::expectPage(const QString& expression)
{
    expect(expression, [&] { return page(u"Boolean(%1)"_s.arg(expression)).toBool(); });
}

void Tour::expectPainted()
{
    page(u"globalThis.tourPainted = false, requestAnimationFrame("
         "() => requestAnimationFrame(() => globalThis.tourPainted = true))"_s);
    expectPage(u"globalThis.tourPainted"_s);
}

void Tour::expectWindow(const QString& program, int count)
{
    expect(u"%1 has %2 windows"_s.arg(program).arg(count), [&] {
        const QString windows = xdotool({u"search"_s, u"--onlyvisible"_s, u"--class"_s, program});
        return windows.split(u'\n', Qt::SkipEmptyParts).size() == count;
    });
}

void Tour::expectText(const QString& text)
{
    QString found;
    const bool there = waitUntil([&] { return (found = noteText()).contains(text); });
    if (!there)
        throw StepFailure("the note does not hold \"" + text.toStdString() + "\" but \""
            + found.toStdString() + '"');
}

void Tour::expectFiled(const QString& title, const QString& text)
{
    QString fault;
    const bool filed = waitUntil([&] {
        const QString guid = records.note(title);
        fault = guid.isEmpty() ? u"the shelf has no note "_s + title
                               : records.faultOfNoteFile(guid, text);
        return fault.isEmpty();
    });
    if (!filed)
        throw StepFailure(fault.toStdString());
}
