#include "Host.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTcpServer>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

static QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Host::~Host()
{
    kill();
}

void Host::start(
    const QString& appDir, const QString& language, const QProcessEnvironment& environment)
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    m_port = probe.serverPort();
    probe.close();

    QProcessEnvironment variables = environment;
    variables.insert(u"QTWEBENGINE_REMOTE_DEBUGGING"_s, QString::number(m_port));
    if (geteuid() == 0) // the engine's sandbox does not work for root
        variables.insert(u"QTWEBENGINE_DISABLE_SANDBOX"_s, u"1"_s);
    m_process.setProcessEnvironment(variables);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(m_program, {u"--app-dir"_s, appDir, u"--lang"_s, language});
    m_process.waitForStarted();
}

bool Host::waitForEnd(int milliseconds)
{
    return (!isRunning() || m_process.waitForFinished(milliseconds))
        && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

void Host::kill()
{
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

bool Host::killRenderProcess()
{
    QMap<qint64, qint64> parents;
    for (const QString& name : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        // "pid (name) state parent": the name may hold anything, blanks and brackets too.
        const QByteArray state = contentOf(u"/proc/%1/stat"_s.arg(name));
        const QByteArrayList fields = state.mid(state.lastIndexOf(')') + 2).split(' ');
        if (name.toLongLong() > 0 && fields.size() > 1)
            parents.insert(name.toLongLong(), fields[1].toLongLong());
    }
    // The engine forks them off helpers of its own: they come at least two generations after the
    // host and have no children.
    bool killed = false;
    for (auto process = parents.keyBegin(); process != parents.keyEnd(); ++process) {
        qint64 ancestor = parents.value(parents.value(*process));
        while (ancestor > 1 && ancestor != m_process.processId())
            ancestor = parents.value(ancestor);
        if (ancestor == m_process.processId() && parents.key(*process) == 0)
            killed |= ::kill(pid_t(*process), SIGKILL) == 0;
    }
    return killed;
}
