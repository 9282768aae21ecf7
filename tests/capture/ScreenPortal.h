#pragma once

#include "kit/PrivateBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QDir>
#include <QImage>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <functional>

/// A desktop portal on a bus of its own that takes pictures of no screen.
class ScreenPortal : public QDBusVirtualObject {
    PrivateBus m_bus; // made before all that uses them
    QTemporaryDir m_dir;

public:
    ScreenPortal()
    {
        EXPECT_TRUE(QDBusConnection::connectToBus(m_bus.address(), client).isConnected())
            << "dbus-daemon is missing";
        // Kept by its name alone: while anyone holds it, it lives.
        QDBusConnection server = QDBusConnection::connectToBus(m_bus.address(), portal);
        server.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
        server.registerVirtualObject(
            QStringLiteral("/org/freedesktop/portal/desktop"), this, QDBusConnection::SubPath);
    }
    ~ScreenPortal() override
    {
        die();
        QDBusConnection::disconnectFromBus(client);
    }

    /// The name of the connection that is to be asked with.
    const QString client = QStringLiteral("screenshot client");
    /// The name of the portal's own.
    const QString portal = QStringLiteral("portal");

    /// How it acts on a request, whose path is given. Without it the request is never answered.
    std::function<void(const QString& path)> act;
    /// What a request is told its path is; empty for the one that the caller expects.
    QString otherPath;
    bool refuses = false; ///< Answers the call with an error.

    int asked = 0;
    int closed = 0;
    QVariantMap options;
    QDir dir{m_dir.path()};

    void answer(const QString& path, uint code, const QVariantMap& results)
    {
        send(portal, path, {code, results});
    }
    /// Sends an answer of any shape on the connection of that name.
    static void send(const QString& from, const QString& path, const QVariantList& arguments)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal.setArguments(arguments);
        QDBusConnection(from).send(signal);
    }
    /// A picture in a file, as the portal hands it over.
    QVariantMap picture(const QImage& image, const QString& name = QStringLiteral("截屏 1.png"))
    {
        EXPECT_TRUE(image.save(dir.filePath(name)));
        return {{QStringLiteral("uri"), QUrl::fromLocalFile(dir.filePath(name)).toString()}};
    }
    void die() { QDBusConnection::disconnectFromBus(portal); }
    QString address() const { return m_bus.address(); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() == u"Close") {
            ++closed;
            return true;
        }
        if (message.member() != u"Screenshot")
            return false;
        ++asked;
        options = qdbus_cast<QVariantMap>(message.arguments().value(1));
        const QString sender = message.service().mid(1).replace(u'.', u'_');
        const QString path = otherPath.isEmpty()
            ? QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                  .arg(sender, options.value(QStringLiteral("handle_token")).toString())
            : otherPath;
        if (refuses) {
            connection.send(message.createErrorReply(QDBusError::AccessDenied, QString()));
            return true;
        }
        // Ahead of the reply: whoever waits must be listening by now.
        if (act)
            act(path);
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        return true;
    }
};
