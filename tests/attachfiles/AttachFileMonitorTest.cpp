#include "attachfiles/AttachFileMonitor.h"

#include "kit/Print.h"
#include "support/Paths.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

/// The monitor with its protected operations in the open, and what gets through its filter.
class Monitor : public AttachFileMonitor {
public:
    using AttachFileMonitor::DoAttachFileSync;
    using AttachFileMonitor::GetAttachFileInfo;
    using AttachFileMonitor::GetAttachInfoFromPath;
    using AttachFileMonitor::GetAttachTotalSize;
    using AttachFileMonitor::GetNoteHtmlFileInfo;
};

AttachmentFile file(const QString& origName, int fileType, int fileSize, const QString& text1 = {})
{
    AttachmentFile made;
    made.origName = origName;
    made.fileType = fileType;
    made.fileSize = fileSize;
    made.text1 = text1;
    return made;
}

/// A receiver that counts the messages it gets.
class Receiver : public QWidget {
public:
    int messages = 0;

    bool event(QEvent* event) override
    {
        messages += int(event->type()) == 2224;
        return QWidget::event(event);
    }
};

} // namespace

TEST(AttachFileMonitorTest, StartSaysOneAndStopDoesNothing)
{
    AttachFileMonitor monitor;
    EXPECT_EQ(monitor.Start(), 1);
    monitor.Stop();
    EXPECT_EQ(monitor.Start(), 1);
}

TEST(AttachFileMonitorTest, NoEventSendsAMessage)
{
    Receiver receiver;
    AttachFileMonitor monitor;
    IFileMonitorNotify& notified = monitor;
    const QString path = GetAttachmentDir() + QStringLiteral("/guid/a.txt");
    notified.OnEvent(path, 3); // without a receiver
    monitor.SetMsgReceiver(&receiver, 2224);
    for (const quint32 action : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 0xFFFFFFFFu})
        for (const QString& each :
            {path, path + QStringLiteral(".TMP"), QStringLiteral("nodot"), QString()})
            notified.OnEvent(each, action);
    QCoreApplication::processEvents();
    EXPECT_EQ(receiver.messages, 0);
}

TEST(AttachFileMonitorTest, AReceiverThatIsGoneIsNone)
{
    AttachFileMonitor monitor;
    {
        QWidget widget;
        monitor.SetMsgReceiver(&widget, 2224);
        EXPECT_EQ(monitor.MsgWnd(), &widget);
    }
    EXPECT_EQ(monitor.MsgWnd(), nullptr);
    EXPECT_EQ(monitor.MsgId(), 2224u);
    static_cast<IFileMonitorNotify&>(monitor).OnEvent(QStringLiteral("a"), 3);
}

TEST(AttachFileMonitorTest, ACopyHasTheSameReceiverAndNumber)
{
    QWidget widget;
    AttachFileMonitor monitor, other;
    monitor.SetMsgReceiver(&widget, 7);
    const AttachFileMonitor copy(monitor);
    other = monitor;
    monitor.SetMsgReceiver(nullptr, 0);
    for (const AttachFileMonitor* each : {&copy, static_cast<const AttachFileMonitor*>(&other)}) {
        EXPECT_EQ(each->MsgWnd(), &widget);
        EXPECT_EQ(each->MsgId(), 7u);
    }
}

TEST(AttachFileMonitorTest, APathOfAWorkingCopyGivesItsNoteAndItsName)
{
    Monitor monitor;
    QString folder = QStringLiteral("f"), name = QStringLiteral("n");
    monitor.GetAttachInfoFromPath(
        GetAttachmentDir() + QStringLiteral("/0123.bmp"), folder, name); // in the store's root
    EXPECT_EQ(folder + name, QStringLiteral("fn"));
    monitor.GetAttachInfoFromPath(
        GetAttachmentDir() + QStringLiteral("/guid/报告.docx"), folder, name);
    EXPECT_EQ(folder, QStringLiteral("guid"));
    EXPECT_EQ(name, QStringLiteral("报告.docx"));
    monitor.DoAttachFileSync(GetAttachmentDir() + QStringLiteral("/guid/报告.docx"));
}

TEST(AttachFileMonitorTest, TheFirstRecordOfANameIsFoundExactly)
{
    Monitor monitor;
    const std::vector<AttachmentFile> list{file(QStringLiteral("a.txt"), 2, 1),
        file(QStringLiteral("b.txt"), 2, 2, QStringLiteral("first")),
        file(QStringLiteral("b.txt"), 2, 3, QStringLiteral("second"))};
    AttachmentFile out = file(QStringLiteral("as before"), 9, 9);
    EXPECT_EQ(monitor.GetAttachFileInfo(list, QStringLiteral("B.txt"), out), 0);
    EXPECT_EQ(monitor.GetAttachFileInfo({}, QStringLiteral("b.txt"), out), 0);
    EXPECT_EQ(out.origName, QStringLiteral("as before"));
    EXPECT_EQ(monitor.GetAttachFileInfo(list, QStringLiteral("b.txt"), out), 1);
    EXPECT_EQ(out.text1, QStringLiteral("first"));
    EXPECT_EQ(out.fileSize, 2);
}

TEST(AttachFileMonitorTest, TheFirstRecordOfTypeZeroIsTheNote)
{
    Monitor monitor;
    AttachmentFile out;
    EXPECT_EQ(monitor.GetNoteHtmlFileInfo({}, out), 0);
    EXPECT_EQ(monitor.GetNoteHtmlFileInfo({file(QStringLiteral("a"), 1, 1)}, out), 0);
    EXPECT_EQ(out.origName, QString());
    EXPECT_EQ(monitor.GetNoteHtmlFileInfo(
                  {file(QStringLiteral("a"), 2, 1), file(QStringLiteral("b"), 0, 1),
                      file(QStringLiteral("c"), 0, 1)},
                  out),
        1);
    EXPECT_EQ(out.origName, QStringLiteral("b"));
}

TEST(AttachFileMonitorTest, TheTotalLeavesTheNoteOutAndIsOf32Bits)
{
    Monitor monitor;
    EXPECT_EQ(monitor.GetAttachTotalSize({}), 0);
    EXPECT_EQ(monitor.GetAttachTotalSize({file({}, 0, 1000), file({}, 1, 20), file({}, 2, 3)}), 23);
    EXPECT_EQ(
        monitor.GetAttachTotalSize({file({}, 1, 0x7FFFFFFF), file({}, 2, 1)}), -long(0x80000000L));
    EXPECT_EQ(monitor.GetAttachTotalSize({file({}, 1, -5), file({}, 2, 3)}), -2);
}
