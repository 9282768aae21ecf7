#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/prctl.h>

/// A bus of this test's own.
class PrivateBus {
public:
    PrivateBus()
    {
        QFile config(m_dir.filePath(QStringLiteral("bus.conf")));
        EXPECT_TRUE(config.open(QIODevice::WriteOnly));
        config.write("<busconfig><listen>unix:tmpdir=" + QFile::encodeName(m_dir.path())
            + "</listen><policy context=\"default\"><allow send_destination=\"*\" "
              "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
              "</busconfig>");
        config.close();
        m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_daemon.start(QStringLiteral("dbus-daemon"),
            {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                QStringLiteral("--config-file=") + config.fileName()});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(20000))
            continue;
        m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
    }
    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    QString address() const { return m_address; }

private:
    QTemporaryDir m_dir;
    QProcess m_daemon;
    QString m_address;
};
