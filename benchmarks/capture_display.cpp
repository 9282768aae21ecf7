#include "capture_display.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <xcb/xcb.h>

#include <cstdlib>
#include <stdexcept>

namespace bench {

namespace {

constexpr int kWaitMs = 20000;
constexpr double kNanosecond = 1e-9;

void start(QProcess& process, const QString& program, const QStringList& arguments)
{
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForStarted() || !process.waitForReadyRead(kWaitMs))
        throw std::runtime_error(program.toStdString() + " did not start");
}

/// All threads of a process.
double processorTimeOf(qint64 pid)
{
    double nanoseconds = 0;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(pid);
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks + QLatin1Char('/') + task + QStringLiteral("/schedstat"));
        if (file.open(QIODevice::ReadOnly))
            nanoseconds += file.readAll().split(' ').value(0).toDouble();
    }
    return nanoseconds * kNanosecond;
}

} // namespace

struct OwnDisplay::Connection {
    explicit Connection(const QString& name)
        : xcb(xcb_connect(name.toLatin1().constData(), nullptr))
    {
        if (xcb_connection_has_error(xcb))
            throw std::runtime_error("the display cannot be reached");
        root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
        const quint32 mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(xcb, root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(xcb);
    }
    ~Connection() { xcb_disconnect(xcb); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void waitForChange() { std::free(xcb_wait_for_event(xcb)); }

    xcb_connection_t* xcb;
    xcb_window_t root = 0;
};

OwnDisplay::OwnDisplay(const QSize& size)
    : m_size(size)
{
    start(m_server, QStringLiteral("Xvfb"),
        {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
            QStringLiteral("0"), QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height()),
            QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-noreset")});
    m_name = QLatin1Char(':') + QString::fromLatin1(m_server.readLine().trimmed());
    start(m_bus, QStringLiteral("dbus-daemon"),
        {QStringLiteral("--session"), QStringLiteral("--nofork"),
            QStringLiteral("--print-address=1")});
    m_busAddress = QString::fromLatin1(m_bus.readLine().trimmed());
    m_connection = std::make_unique<Connection>(m_name);
}

OwnDisplay::~OwnDisplay()
{
    m_connection.reset();
    end(m_bus);
    end(m_server);
}

std::unique_ptr<QProcess> OwnDisplay::program(
    const QString& path, const QStringList& arguments) const
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_name);
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_busAddress);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("HOME"), home());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home());
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    process->setProcessEnvironment(environment);
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setProgram(path);
    process->setArguments(arguments);
    return process;
}

bool OwnDisplay::isOverlayMapped() const
{
    xcb_connection_t* xcb = m_connection->xcb;
    auto* tree = xcb_query_tree_reply(xcb, xcb_query_tree(xcb, m_connection->root), nullptr);
    bool found = false;
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree) && !found; ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree)[i];
        auto* place = xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr);
        auto* state =
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr);
        found = place && state && state->map_state == XCB_MAP_STATE_VIEWABLE
            && QSize(place->width, place->height) == m_size;
        std::free(place);
        std::free(state);
    }
    std::free(tree);
    return found;
}

void OwnDisplay::waitForOverlay()
{
    while (!isOverlayMapped())
        m_connection->waitForChange();
}

void OwnDisplay::waitForNoOverlay()
{
    while (isOverlayMapped())
        m_connection->waitForChange();
}

void OwnDisplay::drive(const QStringList& words) const
{
    const auto xdotool = program(QStringLiteral("xdotool"), words);
    xdotool->start();
    if (!xdotool->waitForFinished(kWaitMs) || xdotool->exitCode() != 0)
        throw std::runtime_error("xdotool failed");
}

double OwnDisplay::processorTime(const QProcess& process) const
{
    return processorTimeOf(m_server.processId()) + processorTimeOf(process.processId());
}

void end(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(2000)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace bench
