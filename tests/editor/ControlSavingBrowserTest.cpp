#include "editor/ControlFixture.h"

TEST_F(Control, ASaveHandsTheHostTheNoteFileAndItsAttachments)
{
    start();
    const QString guid = newNote();
    const QString exData = NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("a.pdf"));
    type(QStringLiteral("<img nm_exdata=\\'%1\\' class=\"userdata\\\\attachment\\\\d.pdf\" "
                        "src=\"../userdata\\\\attachment\\\\c.bmp\">")
             .arg(exData));
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    const RecordingHost::Save& save = host().saves[0];
    EXPECT_EQ(save.guid, guid);
    EXPECT_TRUE(save.text.startsWith(QStringLiteral("text of ")));
    ASSERT_EQ(save.files.size(), 3u);
    EXPECT_EQ(save.files[0].fileType, 0);
    EXPECT_TRUE(IsFileExist(save.files[0].filePath));
    EXPECT_EQ(save.files[1].origName, QStringLiteral("a.pdf"));
    EXPECT_EQ(save.files[2].fileName, QStringLiteral("c.bmp"));
    for (const NewAttachFile& file : save.files)
        EXPECT_EQ(file.modifyTime.size(), 19);
    EXPECT_EQ(control().lastHtml().left(4), QStringLiteral("<img"));
}

TEST_F(Control, ARecordedTimeStaysAndTheOthersAreNow)
{
    start();
    newNote();
    control().Handler().RecordAttachModifyTime(
        QStringLiteral("d.pdf"), QStringLiteral("a.pdf"), QStringLiteral("2001-02-03 04:05:06"));
    type(QStringLiteral("<img nm_exdata=\\'%1\\' class=\"x\\\\d.pdf\" src=\"y/c.bmp\">")
             .arg(NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("a.pdf"))));
    control().SaveEditor();
    ASSERT_EQ(host().saves[0].files.size(), 3u);
    EXPECT_EQ(host().saves[0].files[1].modifyTime, QStringLiteral("2001-02-03 04:05:06"));
    EXPECT_NE(host().saves[0].files[2].modifyTime, QStringLiteral("2001-02-03 04:05:06"));
}

TEST_F(Control, FocusLossOfAnUnchangedNoteWritesNothingAndTellsNobody)
{
    start();
    newNote();
    type(QStringLiteral("<p>same</p>"));
    loseFocus();
    ASSERT_EQ(host().saves.size(), 1u);
    const QStringList before = noteFiles();
    loseFocus();
    loseFocus();
    EXPECT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(noteFiles(), before);
    EXPECT_EQ(calls(QStringLiteral("GetEditorContent")).size(), 3);
}

TEST_F(Control, AMenuThatTakesTheKeyboardIsNoLossOfFocus)
{
    start();
    newNote();
    type(QStringLiteral("<p>menu</p>"));
    loseFocus(Qt::PopupFocusReason);
    loseFocus(Qt::MenuBarFocusReason);
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(Control, AReadOnlyNoteIsNeverAskedForItsText)
{
    start();
    newNote(1);
    loseFocus();
    control().SaveEditor();
    pressKey(Qt::Key_S);
    EXPECT_TRUE(calls(QStringLiteral("GetEditorContent")).isEmpty());
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(Control, ANewNoteWithAnEmptyPageIsNotFiled)
{
    start();
    newNote();
    const QStringList before = noteFiles();
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(noteFiles(), before);
}

TEST_F(Control, ALivePageThatFailsFilesAnEmptyText)
{
    start();
    newNote();
    type(QStringLiteral("<p>text</p>"));
    control().SaveEditor();
    for (const char* failure : {"answer = () => { throw 1; }", "answer = () => 'rubbish'",
             "answer = () => '{\"result\":false}'"}) {
        control().lastHtml() = QStringLiteral("<p>text</p>");
        host().saves.clear();
        bench->js(QString::fromLatin1(failure));
        control().SaveEditor();
        ASSERT_EQ(host().saves.size(), 1u) << failure;
        EXPECT_EQ(host().saves[0].text, QString());
        EXPECT_EQ(control().lastHtml(), QString());
    }
}

TEST_F(Control, AFirstSaveMakesTheStore)
{
    start();
    newNote();
    ASSERT_TRUE(QDir(GetAppDir() + QStringLiteral("userdata")).removeRecursively());
    type(QStringLiteral("<p>first</p>"));
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_TRUE(IsFileExist(host().saves[0].files[0].filePath));
}

TEST_F(Control, AHostThatRefusesIsAskedAgainWithTheSameFile)
{
    start();
    newNote();
    host().result = 0;
    type(QStringLiteral("<p>refused</p>"));
    loseFocus();
    const QStringList before = noteFiles();
    loseFocus();
    ASSERT_EQ(host().saves.size(), 2u);
    EXPECT_EQ(host().saves[0].files[0].fileName, host().saves[1].files[0].fileName);
    EXPECT_EQ(noteFiles(), before);
    EXPECT_EQ(control().lastHtml(), QString());
}

TEST_F(Control, WithoutAHostFilesAreWrittenAndTheTextNeverCountsAsSaved)
{
    start(plainPage, false);
    newNote();
    const int before = int(noteFiles().size());
    type(QStringLiteral("<p>no host %1</p>").arg(CreateGuidString()));
    control().SaveEditor();
    control().SaveEditor();
    EXPECT_EQ(noteFiles().size(), before + 1);
    EXPECT_EQ(control().lastHtml(), QString());
}

TEST_F(Control, AStoreThatCannotBeWrittenLeavesTheTextUnsavedForTheNextTime)
{
    start();
    newNote();
    type(QStringLiteral("<p>full</p>"));
    const QString store = GetAttachmentDir();
    ASSERT_TRUE(QDir().rename(store, store + QStringLiteral("-away")));
    QFile block(store);
    ASSERT_TRUE(block.open(QIODevice::WriteOnly));
    block.close();
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(control().lastHtml(), QString());
    EXPECT_TRUE(
        log.take().contains(QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!")));
    ASSERT_TRUE(block.remove());
    ASSERT_TRUE(QDir().rename(store + QStringLiteral("-away"), store));
    control().SaveEditor();
    EXPECT_EQ(host().saves.size(), 1u);
}

TEST_F(Control, AnUpgradeDuringASaveLeavesThePageBehind)
{
    start();
    const QString old =
        stored(QStringLiteral("<img class=\"userdata/attachment/abc.png\" src=\"x/abc.png\">"),
            NOTE_HTML_VER_1);
    control().LoadEditor(QStringLiteral("g"), {old}, {}, 0);
    type(QStringLiteral("<img class=\"userdata/attachment/abc.png\" src=\"x/abc.png\">edited"));
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    EXPECT_TRUE(control().lastHtml().contains(QStringLiteral("nm_exdata")));
    EXPECT_EQ(host().saves[0].files.size(), 3u);
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 2u);
    EXPECT_FALSE(control().lastHtml().contains(QStringLiteral("nm_exdata")));
    EXPECT_EQ(host().saves[1].files.size(), 1u);
}

TEST_F(Control, ControlSAndControlF4SaveAndStillReachThePage)
{
    start();
    newNote();
    bench->js(QStringLiteral("window.keys = []; document.addEventListener('keydown', e => "
                             "{ if (e.key !== 'Control') keys.push(e.key); });"
                             "document.getElementById('t').focus(); 1"));
    bench->input()->setFocus();
    for (const int key : {int(Qt::Key_S), int(Qt::Key_F4)}) {
        host().saves.clear();
        type(QStringLiteral("<p>%1</p>").arg(key));
        pressKey(key);
        EXPECT_EQ(host().saves.size(), 1u) << key;
    }
    EXPECT_TRUE(waitFor([&] {
        return bench->js(QStringLiteral("keys.join()")).toString() == QStringLiteral("s,F4");
    })) << qPrintable(bench->js(QStringLiteral("keys.join()")).toString());
}

TEST_F(Control, WithoutTheControlKeyNothingIsSaved)
{
    start();
    newNote();
    type(QStringLiteral("<p>x</p>"));
    QTest::keyClick(bench->input(), Qt::Key_S);
    QTest::keyClick(bench->input(), Qt::Key_F4);
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(Control, AHostThatOpensAnotherNoteWhileSavingKeepsBothApart)
{
    start();
    const QString first = newNote();
    type(QStringLiteral("<p>first</p>"));
    QString second;
    host().onSave = [&] {
        host().onSave = nullptr;
        control().NewEditor(second, 0);
    };
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(host().saves[0].guid, first);
    EXPECT_EQ(control().lastHtml(), QString()) << "the second note is new and unsaved";
    EXPECT_EQ(control().Handler().GetCurNoteGuid(), second);
}

TEST_F(Control, ANoteOpenedWhileThePageIsAskedDoesNotTakeTheTextOver)
{
    start();
    const QString first = newNote();
    type(QStringLiteral("<p>first</p>"));
    QString second;
    QTimer::singleShot(0, bench->control, [&] { control().NewEditor(second, 0); });
    control().SaveEditor();
    ASSERT_TRUE(waitFor([&] { return !second.isEmpty(); }));
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(host().saves[0].guid, first);
    EXPECT_TRUE(control().lastHtml().isEmpty() || control().Handler().GetCurNoteGuid() == first);
}
