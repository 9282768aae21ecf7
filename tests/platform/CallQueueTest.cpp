#include "platform/CallQueue.h"
#include "kit/Print.h"

#include <QEventLoop>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

struct CallQueueTest : ::testing::Test {
    CallQueue queue;
    QStringList order;

    CallQueue::Call note(const char* what)
    {
        return [this, what] { order.append(QString::fromLatin1(what)); };
    }
    /// Runs the event loop until everything that was posted has run.
    void runAll()
    {
        QEventLoop loop;
        queue.post([&] { loop.quit(); });
        loop.exec();
    }
    QString seen() const { return order.join(u' '); }
};

} // namespace

TEST_F(CallQueueTest, APostedCallWaitsForTheEventLoop)
{
    queue.post(note("a"));
    EXPECT_EQ(seen(), QString());
    runAll();
    EXPECT_EQ(seen(), QStringLiteral("a"));
}

TEST_F(CallQueueTest, AMessageRunsAtOnceWhenNothingWaits)
{
    queue.runInOrder(note("a"));
    EXPECT_EQ(seen(), QStringLiteral("a"));
}

TEST_F(CallQueueTest, AMessageRunsBehindTheCallsThatWait)
{
    queue.post(note("call"));
    queue.runInOrder(note("message"));
    queue.post(note("call"));
    runAll();
    EXPECT_EQ(seen(), QStringLiteral("call message call"));
}

TEST_F(CallQueueTest, NothingRunsWhileAPageCallIsInFlight)
{
    {
        const CallQueue::Flight flight(queue);
        queue.post(note("call"));
        queue.runInOrder(note("message"));
        // A nested loop that lasts longer than the queue's own delay.
        QEventLoop loop;
        QTimer::singleShot(20, &loop, &QEventLoop::quit);
        loop.exec();
        EXPECT_EQ(seen(), QString());
    }
    EXPECT_EQ(seen(), QString());
    runAll();
    EXPECT_EQ(seen(), QStringLiteral("call message"));
}

TEST_F(CallQueueTest, FlightsNest)
{
    {
        const CallQueue::Flight outer(queue);
        {
            const CallQueue::Flight inner(queue);
        }
        EXPECT_TRUE(queue.inFlight());
    }
    EXPECT_FALSE(queue.inFlight());
}

TEST_F(CallQueueTest, AModalLoopInACallLetsLaterCallsIn)
{
    queue.post([&] {
        order.append(QStringLiteral("box"));
        QEventLoop box;
        queue.post([&] {
            order.append(QStringLiteral("meanwhile"));
            box.quit();
        });
        box.exec();
        order.append(QStringLiteral("dismissed"));
    });
    runAll();
    EXPECT_EQ(seen(), QStringLiteral("box meanwhile dismissed"));
}

TEST_F(CallQueueTest, ACallMayDestroyTheQueue)
{
    auto* mortal = new CallQueue;
    QEventLoop loop;
    mortal->post([&] {
        delete mortal;
        loop.quit();
    });
    mortal->post(note("never"));
    loop.exec();
    EXPECT_EQ(seen(), QString());
}
