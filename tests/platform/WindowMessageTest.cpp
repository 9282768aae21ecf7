#include "platform/WindowMessage.h"
#include "kit/Print.h"

#include <QCoreApplication>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

/// Counts how many of it live.
struct Record {
    explicit Record(int& count)
        : m_count(count)
    {
        ++m_count;
    }
    ~Record() { --m_count; }
    int& m_count;
};

class Receiver : public QWidget {
public:
    bool takes = true;
    std::unique_ptr<Record> taken;
    int seen = 0;

    bool event(QEvent* event) override
    {
        if (!IsPrivateMessage(*event))
            return QWidget::event(event);
        seen = int(event->type());
        if (takes)
            taken = static_cast<WindowMessage*>(event)->takeRecord<Record>();
        return true;
    }
};

void post(QWidget* to, int& alive)
{
    QCoreApplication::postEvent(
        to, WindowMessage::carrying(WM_ATTACH_FILE_MODIFY, std::make_unique<Record>(alive)));
}

} // namespace

TEST(WindowMessage, ItsTypeIsTheMessageNumber)
{
    EXPECT_EQ(int(WindowMessage(2224).type()), 2224);
    EXPECT_EQ(WindowMessage(WM_CLEAR_EDITOR_CACHE).message(), 2258);
    EXPECT_EQ(WindowMessage(WM_EDITOR_COPY).message(), 8004);
    EXPECT_EQ(WindowMessage(WM_EDITOR_READY).message(), 8005);
}

TEST(WindowMessage, TheReceiverOwnsTheRecordItTakes)
{
    int alive = 0;
    Receiver receiver;
    post(&receiver, alive);
    QCoreApplication::sendPostedEvents(&receiver);
    EXPECT_EQ(receiver.seen, 2224);
    EXPECT_EQ(alive, 1);
    receiver.taken.reset();
    EXPECT_EQ(alive, 0);
}

TEST(WindowMessage, ARecordThatNobodyTakesGoesWithTheMessage)
{
    int alive = 0;
    Receiver receiver;
    receiver.takes = false;
    post(&receiver, alive);
    QCoreApplication::sendPostedEvents(&receiver);
    EXPECT_EQ(alive, 0);
}

TEST(WindowMessage, AMessageThatIsNeverDeliveredLeaksNothing)
{
    int alive = 0;
    {
        Receiver receiver;
        post(&receiver, alive);
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(WindowMessage, ANullRecordIsTakenAsNull)
{
    const std::unique_ptr<WindowMessage> message(
        WindowMessage::carrying(WM_ATTACH_FILE_MODIFY, std::unique_ptr<Record>()));
    EXPECT_EQ(message->takeRecord<Record>(), nullptr);
}

TEST(WindowMessage, PostingToNobodyDoesNothing)
{
    PostWindowMessage(nullptr, WM_EDITOR_COPY);
    QCoreApplication::sendPostedEvents();
}
