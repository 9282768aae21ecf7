#include "platform/PortalFiles.h"

#include "kit/Print.h"
#include "kit/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QMimeData>
#include <QThread>
#include <QVariantMap>

#include <gtest/gtest.h>

/// Knows the files behind some keys, as the desktop's portal does.
class FakePortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileTransfer")
public:
    int asked = 0;
    bool answers = true;

public Q_SLOTS:
    QStringList RetrieveFiles(const QString& key, const QVariantMap&)
    {
        ++asked;
        if (!answers)
            setDelayedReply(true); // And none ever comes.
        else if (key != u"key")
            sendErrorReply(QDBusError::AccessDenied);
        return {QStringLiteral("/run/user/1/doc/a/报告.txt"), QStringLiteral("/run/user/1/doc/b")};
    }
};

namespace {

class PortalFiles : public ::testing::Test {
protected:
    PrivateBus bus;
    FakePortal service;
    QThread thread; // The call blocks this one.
    const QString client = QStringLiteral("client");
    const QString server = QStringLiteral("server");

    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << "dbus-daemon is missing";
        thread.start();
        service.moveToThread(&thread);
        ASSERT_TRUE(QDBusConnection::connectToBus(bus.address(), client).isConnected());
        QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), server);
        ASSERT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.portal.Documents")));
        ASSERT_TRUE(connection.registerObject(QStringLiteral("/org/freedesktop/portal/documents"),
            &service, QDBusConnection::ExportAllSlots));
    }
    void TearDown() override
    {
        QDBusConnection::disconnectFromBus(client);
        QDBusConnection::disconnectFromBus(server);
        thread.quit();
        thread.wait();
    }
};

} // namespace

TEST_F(PortalFiles, ComeForTheirKeyInOrder)
{
    EXPECT_EQ(portal::RetrieveFiles("key", client),
        QStringList(
            {QStringLiteral("/run/user/1/doc/a/报告.txt"), QStringLiteral("/run/user/1/doc/b")}));
}

TEST_F(PortalFiles, AreAskedForOnceForOneKey)
{
    // What another test has asked for with the same key is remembered too.
    const QStringList first = portal::RetrieveFiles("key", client);
    const int asked = service.asked;
    EXPECT_EQ(portal::RetrieveFiles("key", client), first);
    EXPECT_EQ(service.asked, asked);
}

TEST_F(PortalFiles, AnUnknownKeyHasNone)
{
    EXPECT_TRUE(portal::RetrieveFiles("another", client).isEmpty());
    EXPECT_EQ(service.asked, 1);
}

TEST_F(PortalFiles, APortalThatNeverAnswersIsNotWaitedForForEver)
{
    service.answers = false;
    EXPECT_TRUE(portal::RetrieveFiles("silent", client).isEmpty());
    EXPECT_EQ(service.asked, 1);
}

TEST_F(PortalFiles, WithoutABusThereAreNone)
{
    EXPECT_TRUE(portal::RetrieveFiles("unheard", QStringLiteral("no such connection")).isEmpty());
}

TEST(PortalKey, IsReadFromEitherTypeWithoutItsNul)
{
    QMimeData data;
    EXPECT_TRUE(portal::TransferKey(data).isEmpty());
    data.setData(QStringLiteral("application/vnd.portal.files"), "old");
    EXPECT_EQ(portal::TransferKey(data), "old");
    data.setData(QStringLiteral("application/vnd.portal.filetransfer"), QByteArray("new\0", 4));
    EXPECT_EQ(portal::TransferKey(data), "new");
}

#include "PortalFilesTest.moc"
