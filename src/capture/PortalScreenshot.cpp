#include "capture/PortalScreenshot.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

#include <optional>

namespace capture {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

/// One request to the portal, from the call to its answer.
class Request : public QObject {
    Q_OBJECT

public:
    explicit Request(const QDBusConnection& bus)
        : m_bus(bus)
        , m_token(QStringLiteral("nomar%1").arg(QRandomGenerator::global()->generate()))
    {
    }

    PortalScreenshot run(int patienceMs)
    {
        // Before the call: the answer may be there before the call returns.
        const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
        listenAt(
            QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, m_token));
        QDBusServiceWatcher death(service, m_bus, QDBusServiceWatcher::WatchForUnregistration);
        connect(&death, &QDBusServiceWatcher::serviceUnregistered, this, [this] { end({}); });
        QTimer::singleShot(patienceMs, this, [this] { giveUp(); });
        ask();
        if (!m_result)
            m_loop.exec(QEventLoop::ExcludeUserInputEvents);
        return m_result.value_or(PortalScreenshot());
    }

public Q_SLOTS:
    void Response(uint code, const QVariantMap& results)
    {
        constexpr uint success = 0;
        constexpr uint cancelled = 1;
        if (code == success)
            end(read(results.value(QStringLiteral("uri")).toString()));
        else
            end({code == cancelled ? PortalOutcome::Cancelled : PortalOutcome::Failed, {}});
    }

private:
    void listenAt(const QString& path)
    {
        m_path = path;
        m_bus.connect(service, path, requestInterface, QStringLiteral("Response"), this,
            SLOT(Response(uint, QVariantMap)));
    }

    void ask()
    {
        QDBusMessage call = QDBusMessage::createMethodCall(service,
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Screenshot"), QStringLiteral("Screenshot"));
        const QVariantMap options{
            {QStringLiteral("handle_token"), m_token}, {QStringLiteral("interactive"), false}};
        call << QString() << options;
        auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
            if (reply.isError())
                end({});
            else if (reply.value().path() != m_path)
                listenAt(reply.value().path()); // as the first portals had it
        });
    }

    static PortalScreenshot read(const QString& uri)
    {
        const QString path = QUrl(uri).toLocalFile();
        const QImage image = path.isEmpty() ? QImage() : QImage(path);
        if (image.isNull())
            return {};
        QFile::remove(path);
        return {PortalOutcome::Taken, image};
    }

    void giveUp()
    {
        QDBusMessage close = QDBusMessage::createMethodCall(
            service, m_path, requestInterface, QStringLiteral("Close"));
        close.setAutoStartService(false);
        m_bus.send(close);
        end({});
    }

    void end(const PortalScreenshot& result)
    {
        if (!m_result)
            m_result = result;
        m_loop.quit();
    }

    QDBusConnection m_bus;
    const QString m_token;
    QString m_path;
    QEventLoop m_loop;
    std::optional<PortalScreenshot> m_result;
};

} // namespace

PortalScreenshot TakePortalScreenshot(const QString& connection, int patienceMs)
{
    const QDBusConnection bus =
        connection.isEmpty() ? QDBusConnection::sessionBus() : QDBusConnection(connection);
    return bus.isConnected() ? Request(bus).run(patienceMs) : PortalScreenshot();
}

} // namespace capture

#include "PortalScreenshot.moc"
