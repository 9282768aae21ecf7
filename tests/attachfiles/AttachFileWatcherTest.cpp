// The messages of the watcher.

#include "attachfiles/AttachFileWatcher.h"

#include "attachfiles/StampText.h"
#include "attachfiles/SyncFileModifyArg.h"
#include "kit/Print.h"
#include "kit/Wait.h"
#include "platform/WindowMessage.h"
#include "support/FileMd5.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QDir>
#include <QEvent>
#include <QProcess>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

/// A receiver that keeps the records it gets.
class Receiver : public QWidget {
public:
    std::vector<SyncFileModifyArg> args;

    bool event(QEvent* event) override
    {
        if (int(event->type()) != WM_ATTACH_FILE_MODIFY)
            return QWidget::event(event);
        const auto arg = static_cast<WindowMessage*>(event)->takeRecord<SyncFileModifyArg>();
        args.push_back(*arg);
        return true;
    }
};

struct AttachFileWatcherTest : ::testing::Test {
    Receiver receiver;
    AttachFileWatcher watcher;
    const QString guid = CreateGuidString();
    const QString folder = GetAttachmentDir() + u'/' + guid;

    AttachFileWatcherTest()
    {
        QDir().mkdir(folder);
        write(QStringLiteral("before"));
        watcher.SetMsgReceiver(&receiver);
    }
    ~AttachFileWatcherTest() override { QDir(folder).removeRecursively(); }

    /// Writes the attachment by a second process.
    void write(const QString& content)
    {
        QProcess shell;
        shell.setWorkingDirectory(folder);
        shell.start(QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), QStringLiteral("printf '%1' > 报告.docx").arg(content)});
        ASSERT_TRUE(shell.waitForFinished());
        ASSERT_EQ(shell.exitCode(), 0);
    }
    void start()
    {
        bool isWatching = false;
        QObject::connect(
            &watcher, &AttachFileWatcher::Watching, &receiver, [&] { isWatching = true; });
        EXPECT_EQ(watcher.Start(), 1);
        EXPECT_EQ(watcher.Start(), 1);
        EXPECT_TRUE(waitFor([&] { return isWatching; }));
        watcher.disconnect(&receiver);
    }
    bool waitForMessages(std::size_t count)
    {
        return waitFor([&] { return receiver.args.size() >= count; });
    }
};

} // namespace

TEST_F(AttachFileWatcherTest, AChangeIsAMessageWithACompleteRecord)
{
    watcher.SetNoteFileSource([](const QString& note) { return u'/' + note; });
    start();
    write(QStringLiteral("after"));
    ASSERT_TRUE(waitForMessages(1));
    const SyncFileModifyArg& arg = receiver.args[0];
    EXPECT_EQ(arg.filePath, folder + QStringLiteral("/报告.docx"));
    EXPECT_EQ(arg.fileSize, 5);
    EXPECT_EQ(arg.noteGuid, guid);
    EXPECT_EQ(arg.attachFile.origName, QStringLiteral("报告.docx"));
    EXPECT_EQ(arg.fileMd5, FileMd5(arg.filePath));
    EXPECT_EQ(arg.secondFile.text1, u'/' + guid);
    EXPECT_EQ(arg.secondFile.reserved, 1);
    EXPECT_EQ(StampOfText(arg.secondFile.text2), FileStamp::of(arg.filePath));
}

TEST_F(AttachFileWatcherTest, WithoutASourceTheNotesFileIsNotSpokenOf)
{
    start();
    write(QStringLiteral("after"));
    ASSERT_TRUE(waitForMessages(1));
    EXPECT_EQ(receiver.args[0].secondFile.text1, QString());
    EXPECT_EQ(receiver.args[0].secondFile.reserved, 0);
}

TEST_F(AttachFileWatcherTest, AFileThatChangesTwiceSendsTwoMessagesTheLatestLast)
{
    start();
    write(QStringLiteral("one"));
    ASSERT_TRUE(waitForMessages(1));
    write(QStringLiteral("second"));
    ASSERT_TRUE(waitForMessages(2));
    EXPECT_EQ(receiver.args[0].fileSize, 3);
    EXPECT_EQ(receiver.args[1].fileSize, 6);
}

TEST_F(AttachFileWatcherTest, AStoppedWatcherTellsNothingAndAStartedOneGoesOn)
{
    start();
    watcher.Stop();
    watcher.Stop();
    write(QStringLiteral("unseen"));
    start();
    write(QStringLiteral("seen"));
    ASSERT_TRUE(waitForMessages(1));
    EXPECT_EQ(receiver.args[0].fileSize, 4);
}

TEST_F(AttachFileWatcherTest, AReceiverThatIsGoneIsNotSentTo)
{
    auto* gone = new Receiver;
    watcher.SetMsgReceiver(gone);
    int asked = 0;
    watcher.SetNoteFileSource([&](const QString&) {
        ++asked;
        return QString();
    });
    start();
    delete gone;
    write(QStringLiteral("one"));
    // A second watcher with a receiver shows that the change has been seen.
    AttachFileWatcher second;
    second.SetMsgReceiver(&receiver);
    bool isWatching = false;
    QObject::connect(&second, &AttachFileWatcher::Watching, [&] { isWatching = true; });
    second.Start();
    ASSERT_TRUE(waitFor([&] { return isWatching; }));
    write(QStringLiteral("third one"));
    ASSERT_TRUE(waitForMessages(1));
    EXPECT_EQ(asked, 0);
}

TEST_F(AttachFileWatcherTest, TheSourceThatWasSetLastIsAskedForTheCurrentFile)
{
    EXPECT_EQ(AttachFileWatcher::CurrentNoteFile(guid), std::nullopt);
    watcher.SetNoteFileSource([](const QString& note) { return note + QStringLiteral(" first"); });
    EXPECT_EQ(AttachFileWatcher::CurrentNoteFile(guid), guid + QStringLiteral(" first"));
    {
        AttachFileWatcher second;
        EXPECT_EQ(AttachFileWatcher::CurrentNoteFile(guid), guid + QStringLiteral(" first"));
        second.SetNoteFileSource([](const QString&) { return QStringLiteral("second"); });
        EXPECT_EQ(AttachFileWatcher::CurrentNoteFile(guid), QStringLiteral("second"));
    }
    EXPECT_EQ(AttachFileWatcher::CurrentNoteFile(guid), guid + QStringLiteral(" first"));
}
