#pragma once

#include <QProcess>
#include <QSize>
#include <QTemporaryDir>

#include <memory>

namespace bench {

/// An X display of the benchmark's own, without a window manager, and a private session bus for the
/// programs on it. Throws std::runtime_error where either cannot be started.
class OwnDisplay {
public:
    explicit OwnDisplay(const QSize& size);
    ~OwnDisplay();
    OwnDisplay(const OwnDisplay&) = delete;
    OwnDisplay& operator=(const OwnDisplay&) = delete;

    /// A program on this display, not yet started. It has a home of its own, which is `home()`.
    std::unique_ptr<QProcess> program(const QString& path, const QStringList& arguments) const;
    QString home() const { return m_home.path(); }

    /// Waits until a window as large as the screen is mapped, other than those that were mapped
    /// when the last wait ended.
    void waitForOverlay();
    /// Waits until no such window is left.
    void waitForNoOverlay();
    /// Moves the real pointer, buttons included, with xdotool's own words.
    void drive(const QStringList& words) const;

    /// The seconds of processor time that the X server and `process` have used.
    double processorTime(const QProcess& process) const;

private:
    bool isOverlayMapped() const;

    QSize m_size;
    QTemporaryDir m_home;
    QProcess m_server, m_bus;
    QString m_name, m_busAddress;
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

/// Ends a program and waits for its end.
void end(QProcess& process);

} // namespace bench
