#pragma once

#include <QProcess>
#include <QString>

/// The sample host as a process.
class Host {
public:
    explicit Host(const QString& program)
        : m_program(program)
    {
    }
    ~Host();

    /// Starts it over the notes in `appDir`, its page open to debugging at port().
    void start(
        const QString& appDir, const QString& language, const QProcessEnvironment& environment);
    int port() const { return m_port; }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// False: it did not end in time, or crashed, or with an error.
    bool waitForEnd(int milliseconds = 15'000);
    void kill();

    /// Kills the process that draws the page. False: there was none.
    bool killRenderProcess();
    /// What it wrote to its standard error stream so far.
    QByteArray complaints() { return m_process.readAllStandardError(); }

private:
    const QString m_program;
    QProcess m_process;
    int m_port = 0;
};
