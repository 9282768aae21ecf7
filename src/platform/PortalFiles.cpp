#include "platform/PortalFiles.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QMimeData>
#include <QVariantMap>

namespace {

constexpr int patienceMs = 2000;

// The second name is that of the first version of the interface.
constexpr QLatin1StringView keyTypes[] = {
    QLatin1StringView("application/vnd.portal.filetransfer"),
    QLatin1StringView("application/vnd.portal.files"),
};

QStringList ask(const QDBusConnection& bus, const QByteArray& key)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Documents"),
            QStringLiteral("/org/freedesktop/portal/documents"),
            QStringLiteral("org.freedesktop.portal.FileTransfer"), QStringLiteral("RetrieveFiles"));
    call << QString::fromUtf8(key) << QVariantMap();
    const QDBusMessage reply = bus.call(call, QDBus::Block, patienceMs);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0).toStringList()
                                                      : QStringList();
}

} // namespace

QByteArray portal::TransferKey(const QMimeData& data)
{
    for (const QLatin1StringView type : keyTypes) {
        // Some programs count the NUL at the end of a text.
        const QByteArray key(data.data(type).constData());
        if (!key.isEmpty())
            return key;
    }
    return QByteArray();
}

QStringList portal::RetrieveFiles(const QByteArray& key, const QString& connection)
{
    static QByteArray lastKey;
    static QStringList lastPaths;
    if (key == lastKey)
        return lastPaths;
    const QDBusConnection bus =
        connection.isEmpty() ? QDBusConnection::sessionBus() : QDBusConnection(connection);
    const QStringList paths = bus.isConnected() ? ask(bus, key) : QStringList();
    if (!paths.isEmpty()) {
        lastKey = key;
        lastPaths = paths;
    }
    return paths;
}
