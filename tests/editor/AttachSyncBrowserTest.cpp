// The whole way: a second process changes a file, the watcher tells, the real page and the host
// follow.

#include "attachfiles/AttachFileWatcher.h"
#include "editor/Changing.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "attachstore/FileRecord.h"
#include "support/Text.h"

#include <QApplication>
#include <QMessageBox>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace changing;

namespace {

const QString kName = QStringLiteral("报告.txt");

class AttachSync : public ::testing::Test {
protected:
    Bench bench;
    AttachFileWatcher watcher;
    QTemporaryDir dir;
    QString guid;
    std::map<QString, QString> noteFiles; ///< what the host knows: note to current file

    void SetUp() override
    {
        ASSERT_TRUE(bench.waitReady());
        bench.host.onSave = [this] {
            const RecordingHost::Save& save = bench.host.saves.back();
            noteFiles[save.guid] = save.files[0].filePath;
        };
        control().NewEditor(guid, 0);
        ASSERT_TRUE(waitFor([&] { return bench.inNote(QStringLiteral("!!doc.body")).toBool(); }));
        watcher.SetMsgReceiver(bench.control);
        watcher.SetNoteFileSource([this](const QString& note) {
            const auto found = noteFiles.find(note);
            return found == noteFiles.end() ? QString() : found->second;
        });
        bool isWatching = false;
        QObject::connect(
            &watcher, &AttachFileWatcher::Watching, bench.control, [&] { isWatching = true; });
        watcher.Start();
        ASSERT_TRUE(waitFor([&] { return isWatching; }));
        watcher.disconnect(bench.control);
    }

    TestControl& control() { return *bench.control; }

    void attach(const QString& name)
    {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("before");
        file.close();
        const auto record = attachstore::RecordOfPath(file.fileName());
        ASSERT_TRUE(record);
        control().Handler().AddDropFileToEditor({*record});
    }
    /// Runs a shell in the note's folder, as a second process.
    void sh(const QString& command)
    {
        QProcess shell;
        shell.setWorkingDirectory(GetAttachmentDir() + u'/' + guid);
        shell.start(QStringLiteral("/bin/bash"), {QStringLiteral("-ec"), command});
        ASSERT_TRUE(shell.waitForFinished());
        ASSERT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().constData();
    }
    QString digestNow() { return FileMd5(GetAttachFilePath(guid, QStringLiteral("x"), kName)); }
    QString classInNote()
    {
        return bench.inNote(QStringLiteral("doc.images[0]?.getAttribute('class') ?? ''"))
            .toString();
    }
    /// Waits until the page shows and the host has been handed what is on disk now.
    bool waitForSync()
    {
        const QString name = digestNow() + QStringLiteral(".txt");
        return waitFor([&] {
            return classInNote().endsWith(name) && !bench.host.saves.empty()
                && bench.host.saves.back().files.size() > 1
                && bench.host.saves.back().files[1].fileName == name;
        });
    }
};

} // namespace

TEST_F(AttachSync, AChangeElsewhereIsInThePageAndWithTheHost)
{
    attach(kName);
    control().SaveEditor();
    ASSERT_EQ(bench.host.saves.size(), 1u);
    const QString oldCard = bench.host.saves[0].files[2].fileName;
    sh(QStringLiteral("printf 'longer than before' > 报告.txt"));
    ASSERT_TRUE(waitForSync());
    EXPECT_EQ(bench.host.saves.size(), 2u);
    EXPECT_NE(bench.host.saves[1].files[2].fileName, oldCard);
    EXPECT_TRUE(waitFor([&] {
        return bench
            .inNote(QStringLiteral("doc.images[0].complete && doc.images[0].naturalWidth > 0"))
            .toBool();
    }));
}

TEST_F(AttachSync, TextThatIsBeingTypedAndTheNewContentAreBothKept)
{
    attach(kName);
    control().SaveEditor();
    control().activateWindow();
    bench.input()->setFocus();
    bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), 1)"));
    sh(QStringLiteral("printf 'while typing' > 报告.txt"));
    const QString name = digestNow() + QStringLiteral(".txt");
    int typed = 0;
    EXPECT_TRUE(waitFor([&] {
        QTest::keyClick(bench.input(), Qt::Key_X);
        ++typed;
        return classInNote().endsWith(name);
    }));
    control().SaveEditor();
    const RecordingHost::Save& save = bench.host.saves.back();
    EXPECT_EQ(save.text.count(u'x'), typed);
    EXPECT_EQ(save.files[1].fileName, name);
    EXPECT_TRUE(textOf(save.files[0].filePath).contains(name));
}

TEST_F(AttachSync, OfTwoChangesWithinASecondTheLatestStands)
{
    attach(kName);
    control().SaveEditor();
    sh(QStringLiteral("printf 'first change' > 报告.txt"));
    ASSERT_TRUE(waitForSync());
    sh(QStringLiteral("printf 'and a second' > x && mv x 报告.txt"));
    ASSERT_TRUE(waitForSync());
    EXPECT_EQ(bench.host.saves.size(), 3u);
}

TEST_F(AttachSync, AnAttachmentThatIsUnsavedInANewNoteFollowsToo)
{
    attach(kName);
    EXPECT_TRUE(bench.host.saves.empty());
    sh(QStringLiteral("printf 'no save was yet' > 报告.txt"));
    EXPECT_TRUE(waitForSync());
}

TEST_F(AttachSync, AFileThatIsDeletedOrBecomesAFolderLeavesTheNoteAsItIs)
{
    LogLines log;
    attach(kName);
    control().SaveEditor();
    const QString before = classInNote();
    sh(QStringLiteral("rm 报告.txt && mkdir 报告.txt && rmdir 报告.txt"));
    sh(QStringLiteral("printf back > 报告.txt"));
    ASSERT_TRUE(waitForSync());
    EXPECT_NE(classInNote(), before);
    EXPECT_EQ(bench.host.saves.size(), 2u);
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(AttachSync, ANoteThatIsNotOpenIsFiledWithTheNewContentAndTheOpenOneStays)
{
    control().Handler().SetEditorHtml(QStringLiteral("<p>kept text</p>"));
    attach(kName);
    control().SaveEditor();
    QString other;
    control().NewEditor(other, 0);
    const std::size_t saves = bench.host.saves.size();
    sh(QStringLiteral("printf 'changed while closed' > 报告.txt"));
    ASSERT_TRUE(waitFor([&] { return bench.host.saves.size() > saves; }));
    const RecordingHost::Save& save = bench.host.saves.back();
    EXPECT_EQ(save.guid, guid);
    ASSERT_EQ(save.files.size(), 3u);
    EXPECT_EQ(save.files[1].fileName, digestNow() + QStringLiteral(".txt"));
    EXPECT_TRUE(textOf(save.files[0].filePath).contains(QStringLiteral("kept text")));
    EXPECT_TRUE(save.text.contains(QStringLiteral("kept text")));
    EXPECT_EQ(control().Handler().GetCurNoteGuid(), other);

    // Opened again it shows the new content.
    control().LoadEditor(guid, {save.files[0].fileName}, {}, 0);
    EXPECT_TRUE(waitFor([&] { return classInNote().contains(save.files[1].fileName); }));
}

TEST_F(AttachSync, AddingAnotherFileFailsUntilTheHostBringsTheSizes)
{
    attach(kName);
    control().SaveEditor();
    sh(QStringLiteral("printf 'new size' > 报告.txt"));
    ASSERT_TRUE(waitForSync());

    QStringList boxes;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            boxes << box->text();
            box->accept();
        }
    });
    answer.start(5);
    attach(QStringLiteral("second.txt"));
    EXPECT_EQ(boxes, QStringList(QStringLiteral("获取笔记编辑器附件总大小失败！")));
    EXPECT_EQ(bench.inNote(QStringLiteral("doc.images.length")).toInt(), 1);

    std::map<QString, quint64> sizes;
    for (const NewAttachFile& file : bench.host.saves.back().files)
        sizes[file.fileName] = quint64(QFileInfo(file.filePath).size());
    control().Handler().InitAttachFileSize(sizes);
    attach(QStringLiteral("second.txt"));
    EXPECT_EQ(boxes.size(), 1);
    EXPECT_EQ(bench.inNote(QStringLiteral("doc.images.length")).toInt(), 2);
}

TEST_F(AttachSync, WhatTheLibraryWritesItselfComesToNothing)
{
    attach(kName);
    attach(QStringLiteral("other.txt"));
    control().SaveEditor();
    ASSERT_EQ(bench.host.saves.size(), 1u);
    // The change behind them shows that they have passed by.
    sh(QStringLiteral("printf 'a real change' > 报告.txt"));
    ASSERT_TRUE(waitForSync());
    EXPECT_EQ(bench.host.saves.size(), 2u);
}
