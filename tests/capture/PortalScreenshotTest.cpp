#include "capture/PortalScreenshot.h"

#include "capture/ScreenPortal.h"
#include "kit/Print.h"
#include "kit/Wait.h"

#include <QCoreApplication>

using capture::PortalOutcome;
using capture::PortalScreenshot;

namespace {

class PortalShot : public ::testing::Test {
protected:
    ScreenPortal portal;
    QImage screen{64, 48, QImage::Format_RGB32};

    void SetUp() override { screen.fill(QColor(1, 2, 3)); }

    PortalScreenshot take(int patienceMs = 20'000)
    {
        return capture::TakePortalScreenshot(portal.client, patienceMs);
    }
    /// The portal answers each request so, before it has returned from the call.
    void willAnswer(uint code, const QVariantMap& results)
    {
        portal.act = [=, this](const QString& path) { portal.answer(path, code, results); };
    }
    QStringList files() const { return portal.dir.entryList(QDir::Files); }
};

} // namespace

TEST_F(PortalShot, IsReadAndItsFileDeleted)
{
    willAnswer(0, portal.picture(screen));
    const PortalScreenshot shot = take();
    EXPECT_EQ(shot.outcome, PortalOutcome::Taken);
    EXPECT_EQ(shot.image.convertToFormat(QImage::Format_RGB32), screen);
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(portal.asked, 1);
    EXPECT_EQ(portal.options.value(QStringLiteral("interactive")), false);
}

TEST_F(PortalShot, EachRequestHasATokenOfItsOwn)
{
    willAnswer(1, {});
    take();
    const QVariant first = portal.options.value(QStringLiteral("handle_token"));
    take();
    EXPECT_FALSE(first.toString().isEmpty());
    EXPECT_NE(portal.options.value(QStringLiteral("handle_token")), first);
}

TEST_F(PortalShot, WaitsForAUserWhoIsAsked)
{
    const QVariantMap results = portal.picture(screen);
    portal.act = [&](const QString& path) {
        QTimer::singleShot(50, &portal, [&, path] { portal.answer(path, 0, results); });
    };
    EXPECT_EQ(take().outcome, PortalOutcome::Taken);
}

TEST_F(PortalShot, IsCancelledByTheUser)
{
    willAnswer(1, {});
    const PortalScreenshot shot = take();
    EXPECT_EQ(shot.outcome, PortalOutcome::Cancelled);
    EXPECT_TRUE(shot.image.isNull());
}

TEST_F(PortalShot, FailsWhenThePortalEndsTheRequestOtherwise)
{
    willAnswer(2, portal.picture(screen));
    EXPECT_EQ(take().outcome, PortalOutcome::Failed);
}

TEST_F(PortalShot, FailsWithoutAService)
{
    portal.die();
    EXPECT_EQ(take().outcome, PortalOutcome::Failed);
}

TEST_F(PortalShot, FailsWithoutABus)
{
    EXPECT_EQ(capture::TakePortalScreenshot(QStringLiteral("no such connection")).outcome,
        PortalOutcome::Failed);
}

TEST_F(PortalShot, FailsWhenTheCallIsRefused)
{
    portal.refuses = true;
    EXPECT_EQ(take().outcome, PortalOutcome::Failed);
}

TEST_F(PortalShot, FailsWhenTheServiceDies)
{
    portal.act = [this](
                     const QString&) { QTimer::singleShot(0, &portal, [this] { portal.die(); }); };
    EXPECT_EQ(take().outcome, PortalOutcome::Failed);
    EXPECT_EQ(portal.asked, 1);
}

TEST_F(PortalShot, ARequestThatIsNeverAnsweredIsGivenUpAndClosed)
{
    EXPECT_EQ(take(100).outcome, PortalOutcome::Failed);
    EXPECT_TRUE(waitFor([&] { return portal.closed == 1; }));
}

TEST_F(PortalShot, RubbishIsNoPictureAndStaysWhereItIs)
{
    QFile text(portal.dir.filePath(QStringLiteral("notes.txt")));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("no picture");
    text.close();
    const QString uri = QStringLiteral("uri");
    const struct {
        const char* what;
        QVariantMap results;
    } cases[] = {
        {"nothing", {}},
        {"an empty address", {{uri, QString()}}},
        {"a number", {{uri, 7}}},
        {"a list", {{uri, QStringList{QStringLiteral("a"), QStringLiteral("b")}}}},
        {"no file", {{uri, QStringLiteral("file:///no/such/file.png")}}},
        {"a folder", {{uri, QUrl::fromLocalFile(portal.dir.path()).toString()}}},
        {"a text", {{uri, QUrl::fromLocalFile(text.fileName()).toString()}}},
        {"a path", {{uri, text.fileName()}}},
        {"the network", {{uri, QStringLiteral("http://127.0.0.1:1/a.png")}}},
    };
    for (const auto& [what, results] : cases) {
        willAnswer(0, results);
        const PortalScreenshot shot = take();
        EXPECT_EQ(shot.outcome, PortalOutcome::Failed) << what;
        EXPECT_TRUE(shot.image.isNull()) << what;
    }
    EXPECT_EQ(files(), QStringList{QStringLiteral("notes.txt")});
}

TEST_F(PortalShot, AnAnswerOfTheWrongShapeIsNone)
{
    portal.act = [this](const QString& path) {
        ScreenPortal::send(portal.portal, path, {QStringLiteral("zero")});
    };
    EXPECT_EQ(take(100).outcome, PortalOutcome::Failed);
}

TEST_F(PortalShot, AnswersOfOtherProgramsAreNotHeard)
{
    const QString name = QStringLiteral("intruder");
    const QDBusConnection other = QDBusConnection::connectToBus(portal.address(), name);
    const QVariantMap results = portal.picture(screen);
    portal.act = [&](const QString& path) {
        ScreenPortal::send(name, path, {1u, QVariantMap()});
        // Behind a call that has been answered, the bus has sent on what came before it.
        other.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("GetId")));
        portal.answer(path, 0, results);
    };
    EXPECT_EQ(take().outcome, PortalOutcome::Taken);
    QDBusConnection::disconnectFromBus(name);
}

TEST_F(PortalShot, APortalThatNamesAnotherRequestIsListenedToThere)
{
    portal.otherPath = QStringLiteral("/org/freedesktop/portal/desktop/request/old");
    const QVariantMap results = portal.picture(screen);
    // Nobody can know when the caller listens there: a user takes longer than that.
    QTimer again;
    QObject::connect(
        &again, &QTimer::timeout, [&] { portal.answer(portal.otherPath, 0, results); });
    portal.act = [&](const QString&) { again.start(10); };
    EXPECT_EQ(take().outcome, PortalOutcome::Taken);
}

TEST_F(PortalShot, EventsOfTheHostGoOnMeanwhile)
{
    struct Counter : QObject {
        int posted = 0;
        bool event(QEvent*) override
        {
            ++posted;
            return true;
        }
    } counter;
    portal.act = [&](const QString& path) {
        QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
        QTimer::singleShot(20, &portal, [&, path] { portal.answer(path, 1, {}); });
    };
    take();
    EXPECT_EQ(counter.posted, 1);
}
