// Files that become attachments in the page that users see: dropped, chosen, opened.

#include "kit/Answers.h"
#include "kit/FileLock.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "support/Paths.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <csignal>

namespace {

class Attaching : public ::testing::Test {
protected:
    Bench bench;
    QTemporaryDir dir;
    QMimeData data;
    QString guid;
    LogLines log;

    void SetUp() override
    {
        ASSERT_TRUE(bench.waitReady());
        control().NewEditor(guid, 0);
        ASSERT_TRUE(waitFor([&] { return bench.inNote(QStringLiteral("!!doc.body")).toBool(); }));
    }

    TestControl& control() { return *bench.control; }
    NmWebNoteHandler& handler() { return control().Handler(); }
    QWebEngineView* view() { return control().findChild<QWebEngineView*>(); }
    QWidget* frame() { return control().findChild<QWidget*>(QStringLiteral("hoverFrame")); }

    QString file(const QString& name, const QByteArray& content = "content")
    {
        QFile made(dir.filePath(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(content);
        return made.fileName();
    }
    void offer(const QStringList& paths)
    {
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
    }
    /// What the view answers to an event of a drag.
    template <typename Event> Qt::DropAction send(Qt::DropActions offered)
    {
        Event event(QPoint(200, 200), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view(), &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }
    Qt::DropAction enter(Qt::DropActions offered = Qt::CopyAction)
    {
        send<QDragEnterEvent>(offered);
        return send<QDragMoveEvent>(offered);
    }
    Qt::DropAction drop(Qt::DropActions offered = Qt::CopyAction)
    {
        return send<QDropEvent>(offered);
    }
    void leave()
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(view(), &event);
    }
    /// Opens a text, and puts the caret behind its third character by keys.
    void caretInto(const QString& html)
    {
        handler().SetEditorHtml(html);
        const QString count = QStringLiteral("doc.querySelectorAll('p').length");
        ASSERT_TRUE(waitFor(
            [&] { return bench.inNote(count).toInt() == int(html.count(QStringLiteral("<p>"))); }));
        control().activateWindow();
        bench.input()->setFocus();
        bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), 1)"));
        QTest::keyClick(bench.input(), Qt::Key_Home, Qt::ControlModifier);
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(bench.input(), Qt::Key_Right);
        ASSERT_TRUE(waitFor([&] {
            return bench.inNote(QStringLiteral("doc.getSelection().anchorOffset")).toInt() == 3;
        }));
    }
    QString nodesOfFirstParagraph()
    {
        return bench
            .inNote(QStringLiteral(
                "[...doc.querySelector('p').childNodes].map(n => n.nodeName).join()"))
            .toString();
    }
    bool allShown()
    {
        return bench
            .inNote(QStringLiteral("[...doc.images].every(i => i.complete && i.naturalWidth > 0)"))
            .toBool();
    }
};

QByteArray png()
{
    return QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDw"
        "ADhgGAWjR9awAAAABJRU5ErkJggg==");
}

} // namespace

TEST_F(Attaching, DroppedFilesStandInTheNoteAndAreFiledWithTheirRecords)
{
    offer({file(QStringLiteral("报告.txt")), file(QStringLiteral("b.pdf")),
        file(QStringLiteral("p.png"), png())});
    EXPECT_EQ(enter(), Qt::CopyAction);
    EXPECT_EQ(drop(), Qt::CopyAction);
    // Before the drop has returned.
    EXPECT_EQ(bench.attachmentNames(),
        QStringList(
            {QStringLiteral("报告.txt"), QStringLiteral("b.pdf"), QStringLiteral("p.png")}));
    EXPECT_TRUE(waitFor([&] { return allShown(); }));

    control().SaveEditor();
    ASSERT_EQ(bench.host.saves.size(), 1u);
    const std::vector<NewAttachFile>& files = bench.host.saves[0].files;
    ASSERT_EQ(files.size(), 7u);
    for (const NewAttachFile& saved : files) {
        EXPECT_FALSE(saved.modifyTime.isEmpty()) << qPrintable(saved.fileName);
        EXPECT_TRUE(QFile::exists(saved.isSrcFile || saved.fileType == 0
                ? GetAttachFilePath(guid, saved.fileName, QString())
                : saved.filePath))
            << qPrintable(saved.filePath);
    }
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(Attaching, ARemovedAttachmentIsFiledAwayAndUndoBringsItBack)
{
    offer({file(QStringLiteral("报告.txt")), file(QStringLiteral("b.pdf"))});
    enter();
    drop();
    control().SaveEditor();
    const std::vector<NewAttachFile> before = bench.host.saves.back().files;
    const NewAttachFile& report = before.at(1);
    EXPECT_EQ(handler().RemoveAttach(report.fileName, QStringLiteral("b.pdf")), 0);
    EXPECT_EQ(handler().RemoveAttach(report.fileName, report.origName), 1);
    EXPECT_EQ(handler().RemoveAttach(report.fileName, report.origName), 0);
    control().SaveEditor();
    EXPECT_EQ(bench.attachmentNames(), QStringList{QStringLiteral("b.pdf")});
    ASSERT_EQ(bench.host.saves.size(), 2u);
    EXPECT_EQ(bench.host.saves.back().files.size(), 3u);
    EXPECT_TRUE(QFile::exists(report.filePath));

    control().activateWindow();
    bench.input()->setFocus();
    bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), 1)"));
    QTest::keyClick(bench.input(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(
        waitFor([&] { return bench.attachmentNames().contains(QStringLiteral("报告.txt")); }));
    control().SaveEditor();
    EXPECT_EQ(bench.host.saves.back().files.size(), before.size());
}

TEST_F(Attaching, ADropThatProposesToMoveIsTakenAsACopy)
{
    offer({file(QStringLiteral("a.txt"))});
    EXPECT_EQ(enter(Qt::MoveAction | Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(drop(Qt::MoveAction | Qt::CopyAction), Qt::CopyAction);
    EXPECT_EQ(enter(Qt::MoveAction), Qt::IgnoreAction);
}

TEST_F(Attaching, AHoveringFileDragIsFramedAndATextDragIsNot)
{
    offer({file(QStringLiteral("a.txt"))});
    enter();
    ASSERT_TRUE(frame());
    EXPECT_EQ(frame()->geometry().size(), bench.input()->size());
    leave();
    EXPECT_FALSE(frame());
    enter();
    drop();
    EXPECT_FALSE(frame());

    data.clear();
    data.setText(QStringLiteral("text"));
    enter();
    EXPECT_FALSE(frame());
    leave();
}

TEST_F(Attaching, AReadOnlyNoteShowsThatItTakesNothing)
{
    control().SetReadOnly(1);
    offer({file(QStringLiteral("a.txt"))});
    EXPECT_EQ(enter(), Qt::IgnoreAction);
    ASSERT_TRUE(frame());
    leave();
    EXPECT_FALSE(frame());
    EXPECT_EQ(drop(), Qt::IgnoreAction);
    EXPECT_TRUE(bench.attachmentNames().isEmpty());
}

TEST_F(Attaching, ADragThatTheEngineDidNotSeeEnterDoesNotReachIt)
{
    data.setText(QStringLiteral("text"));
    enter();
    leave();
    control().SetReadOnly(1);
    // The kind of the last drag is in force: its moves go on to the engine, which has no drag.
    EXPECT_EQ(enter(), Qt::IgnoreAction);
    EXPECT_EQ(drop(), Qt::IgnoreAction);
    leave();
    control().SetReadOnly(0);
    EXPECT_TRUE(bench.inNote(QStringLiteral("doc.body.textContent.trim() === ''")).toBool());
}

TEST_F(Attaching, ADroppedFolderIsToldAndTheFilesBesideItAdded)
{
    offer({dir.path(), file(QStringLiteral("a.txt"))});
    enter();
    const Answers answers;
    EXPECT_EQ(drop(), Qt::CopyAction);
    EXPECT_EQ(answers.texts, QStringList{QStringLiteral("暂不支持文件夹粘贴！")});
    EXPECT_EQ(bench.attachmentNames(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(Attaching, ADroppedImageIsShown)
{
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    data.setImageData(image);
    enter();
    drop();
    ASSERT_EQ(bench.attachmentNames().size(), 1);
    EXPECT_TRUE(waitFor([&] { return allShown(); }));
    EXPECT_EQ(bench.inNote(QStringLiteral("doc.images[0].naturalWidth")).toInt(), 30);
}

TEST_F(Attaching, APictureThatIsNoneShowsThePlaceholder)
{
    offer({file(QStringLiteral("p.png"), "\x89PNG\r\n\x1a\nbroken")});
    enter();
    drop();
    ASSERT_EQ(bench.attachmentNames().size(), 1);
    EXPECT_TRUE(
        waitFor([&] { return bench.inNote(QStringLiteral("doc.images[0].complete")).toBool(); }));
    EXPECT_EQ(bench.inNote(QStringLiteral("doc.images[0].naturalWidth")).toInt(), 0);
}

TEST_F(Attaching, AttachmentsStandBehindEachOtherAtTheCaret)
{
    caretInto(QStringLiteral("<p>one two</p>"));
    offer({file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))});
    enter();
    drop();
    EXPECT_EQ(
        bench.attachmentNames(), QStringList({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    EXPECT_EQ(nodesOfFirstParagraph(), QStringLiteral("#text,IMG,IMG,#text"));
}

TEST_F(Attaching, ALongNotesParagraphStaysOne)
{
    caretInto(QStringLiteral("<p>one two</p>")
        + QStringLiteral("<p>some more of it</p>").repeated(10000));
    offer({file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))});
    enter();
    drop();
    EXPECT_EQ(nodesOfFirstParagraph(), QStringLiteral("#text,IMG,IMG,#text"));
}

TEST_F(Attaching, ADropWhileAPageCallIsInFlightIsTaken)
{
    offer({file(QStringLiteral("a.txt"))});
    enter();
    bool dropped = false;
    QTimer::singleShot(0, [&] {
        drop();
        dropped = true;
    });
    QString html, text;
    handler().GetEditorContent(html, text); // Its loop runs the timer.
    EXPECT_TRUE(waitFor([&] { return dropped; }));
    EXPECT_EQ(bench.attachmentNames(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(Attaching, ADropRightAfterTheRenderProcessDiedWaitsForThePage)
{
    offer({file(QStringLiteral("a.txt"))});
    enter();
    const qint64 pid = bench.page()->renderProcessPid();
    ASSERT_EQ(::kill(pid_t(pid), SIGKILL), 0);
    drop();
    ASSERT_TRUE(
        waitFor([&] { return bench.attachmentNames() == QStringList{QStringLiteral("a.txt")}; }));
}

TEST_F(Attaching, ThePagesButtonOpensTheDialogAndTheChosenFilesAreAdded)
{
    file(QStringLiteral("one.txt"));
    file(QStringLiteral("two.txt"));
    const Answers answers(Answers::choose(dir.path(), QStringLiteral("\"one.txt\" \"two.txt\"")));
    bench.js(QStringLiteral("CppProcessor('AddAttachment', 'no json', ''); 1"));
    EXPECT_TRUE(waitFor([&] {
        return bench.attachmentNames()
            == QStringList({QStringLiteral("one.txt"), QStringLiteral("two.txt")});
    }));
    EXPECT_TRUE(answers.texts.isEmpty());
}

TEST_F(Attaching, AChosenFileThatIsBeingEditedIsTold)
{
    const QString path = file(QStringLiteral("locked.txt"));
    const FileLock lock(path, FileLock::Exclusive);
    const Answers answers(Answers::choose(dir.path(), QStringLiteral("locked.txt")));
    bench.js(QStringLiteral("CppProcessor('AddAttachment', '', ''); 1"));
    EXPECT_TRUE(waitFor([&] { return !answers.texts.isEmpty(); }));
    EXPECT_EQ(answers.texts, QStringList{QStringLiteral("不能添加正在编辑的文件作为附件！")});
    EXPECT_TRUE(bench.attachmentNames().isEmpty());
}

TEST_F(Attaching, ANoteIsFullOnlyUpToItsLimitAcrossDrops)
{
    const QByteArray half(5 * 1024 * 1024, 'x');
    const Answers answers;
    for (const char* name : {"a.doc", "b.doc"}) {
        offer({file(QString::fromLatin1(name), half)});
        enter();
        drop();
    }
    // The first weighs its card too, so the second no longer fits.
    EXPECT_EQ(answers.texts, QStringList{QStringLiteral("最大支持上传10M附件！")});
    EXPECT_EQ(bench.attachmentNames(), QStringList{QStringLiteral("a.doc")});
}
