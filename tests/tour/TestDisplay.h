#pragma once

#include <QProcess>
#include <QTemporaryDir>

/// An X server with a window manager, for this process and those it starts. The desktop of the
/// person who starts the tour is never touched. Chinese characters of `typed` get keys of their
/// own, so that key events can type them.
class TestDisplay {
public:
    TestDisplay() = default;
    ~TestDisplay();
    TestDisplay(const TestDisplay&) = delete;
    TestDisplay& operator=(const TestDisplay&) = delete;

    /// Empty when it works, else what is missing. Sets DISPLAY for this process; call it before the
    /// application exists.
    QString start(const QString& typed);

private:
    bool mapKeys(const QString& typed);

    QTemporaryDir m_home;
    QProcess m_server;
    QProcess m_windowManager;
};

/// Runs a program to its end; its output, or what went wrong in `error`.
QByteArray runTool(const QString& program, const QStringList& arguments, QString* error = nullptr);
