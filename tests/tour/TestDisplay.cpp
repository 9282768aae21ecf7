#include "TestDisplay.h"

#include <QSet>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

QByteArray runTool(const QString& program, const QStringList& arguments, QString* error)
{
    QProcess process;
    process.start(program, arguments);
    const bool ok = process.waitForFinished(60'000) && process.exitCode() == 0;
    if (!ok && error)
        *error = program + u": "_s + process.errorString() + u' '
            + QString::fromUtf8(process.readAllStandardError());
    return process.readAllStandardOutput();
}

static void stop(QProcess& process)
{
    process.terminate();
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(3000);
    }
}

TestDisplay::~TestDisplay()
{
    stop(m_windowManager);
    stop(m_server);
}

QString TestDisplay::start(const QString& typed)
{
    // Whatever becomes of the tour, they go with it.
    for (QProcess* process : {&m_server, &m_windowManager})
        process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    // The server picks a free number and tells it when it takes connections.
    m_server.start(u"Xvfb"_s,
        {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x900x24"_s, u"-nolisten"_s, u"tcp"_s,
            u"-noreset"_s});
    while (m_server.waitForReadyRead(20'000) && !m_server.canReadLine())
        continue;
    const QByteArray number = m_server.readLine().trimmed();
    if (number.isEmpty())
        return u"Xvfb did not start: "_s + m_server.errorString();
    qputenv("DISPLAY", ":" + number);
    qputenv("QT_QPA_PLATFORM", "xcb");
    qunsetenv("WAYLAND_DISPLAY");

    // A home of its own: neither the menus and colours of the person's desktop nor their fonts of
    // choice have a say.
    qputenv("HOME", m_home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", m_home.path().toUtf8());
    if (!mapKeys(typed))
        return u"xmodmap is missing, or there are too few spare keys for the text"_s;
    m_windowManager.start(u"openbox"_s, {});
    QString error;
    for (int i = 0; i < 200; ++i) {
        error.clear();
        runTool(u"xdotool"_s, {u"get_num_desktops"_s}, &error);
        if (error.isEmpty())
            return {};
    }
    return u"openbox did not start: "_s + error;
}

bool TestDisplay::mapKeys(const QString& typed)
{
    // xdotool maps a missing character to a spare key at the moment of typing, and a client that
    // reads the new map too late types something else. Keys that are there from the beginning need
    // no such change.
    QStringList spare;
    for (const QByteArray& line : runTool(u"xmodmap"_s, {u"-pke"_s}).split('\n'))
        if (line.startsWith("keycode") && line.trimmed().endsWith('='))
            spare += QString::fromLatin1(line.mid(7).replace('=', "").trimmed());
    QSet<char32_t> mapped;
    QStringList changes;
    for (const char32_t c : typed.toStdU32String()) {
        if (c < 128 || mapped.contains(c))
            continue;
        if (spare.isEmpty())
            return false;
        mapped.insert(c);
        const QString name = u"U%1"_s.arg(uint(c), 4, 16, QChar(u'0')).toUpper();
        changes += {u"-e"_s, u"keycode %1 = %2 %2"_s.arg(spare.takeFirst(), name)};
    }
    QString error;
    runTool(u"xmodmap"_s, changes, &error);
    return error.isEmpty();
}
