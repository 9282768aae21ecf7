#include "kit/FakePage.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "attachfiles/SyncFileModifyArg.h"
#include "editor/LiveControl.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// A page that shows what `html` and `text` hold and takes what it is given.
constexpr auto plainPage = R"js(
    let html = '', text = '';
    answer = (method, argument) => {
        if (method === 'SetEditorContent') html = argument;
        return ok(method === 'GetEditorContent' ? {ehtml: html, etext: text} : {});
    };
)js";

struct Control : ::testing::Test {
    std::unique_ptr<FakePage> fake;
    std::unique_ptr<Bench> bench;
    LogLines log;

    void start(const char* script = plainPage, bool withHost = true)
    {
        fake = std::make_unique<FakePage>(QString::fromUtf8(script));
        bench = std::make_unique<Bench>(withHost);
        ASSERT_TRUE(bench->waitReady());
    }
    TestControl& control() { return *bench->control; }
    RecordingHost& host() { return bench->host; }
    void type(const QString& html)
    {
        bench->js(QStringLiteral("html = '%1'; text = 'text of ' + html; 1").arg(html));
    }
    QString newNote(int readOnly = 0)
    {
        QString guid;
        control().NewEditor(guid, readOnly);
        return guid;
    }
    /// Files a text and gives the name of its file.
    static QString stored(QString html, NOTE_HTML_VER_NUMBER version)
    {
        GetAttachmentDir();
        NewAttachFile record;
        if (version >= NOTE_HTML_VER_2) {
            EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), 1);
            return record.fileName;
        }
        // An old version is never written anew: a file of one is made by hand.
        const QString name = CreateGuidString() + QStringLiteral(".html");
        QFile file(GetAttachmentDir() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            QStringLiteral("<!--{\"ver_number\":%1}-->%2").arg(int(version)).arg(html).toUtf8());
        return name;
    }
    static QStringList noteFiles()
    {
        return QDir(GetAttachmentDir()).entryList({QStringLiteral("*.html")}, QDir::Files);
    }
    QStringList calls(const QString& method)
    {
        QStringList of;
        for (const QVariant& call : bench->js(QStringLiteral("calls")).toList())
            if (call.toString().startsWith(method + u' '))
                of << call.toString().mid(method.size() + 1);
        return of;
    }
    void loseFocus(Qt::FocusReason reason = Qt::OtherFocusReason)
    {
        QFocusEvent out(QEvent::FocusOut, reason);
        QCoreApplication::sendEvent(bench->input(), &out);
    }
    void pressKey(int key)
    {
        QTest::keyPress(bench->input(), Qt::Key(key), Qt::ControlModifier);
        QTest::keyRelease(bench->input(), Qt::Key(key), Qt::ControlModifier);
    }
};

} // namespace

// --- Becoming ready ---

TEST_F(Control, TheFirstCompletionSendsTheLimitAndTellsTheHostOnce)
{
    start();
    EXPECT_EQ(bench->window.readies, 1);
    EXPECT_EQ(calls(QStringLiteral("SetEditorMaxChars")), QStringList{QStringLiteral("{\"size\":10000 }")});
    EXPECT_EQ(control().docComplete(), 1);
    EXPECT_NE(control().oldWndProc(), nullptr);
    EXPECT_EQ(control().monitor().MsgWnd(), &control());
    EXPECT_EQ(control().monitor().MsgId(), 2224u);
    EXPECT_TRUE(calls(QStringLiteral("SetEditorMode")).isEmpty()) << "the page starts in edit mode";
}

TEST_F(Control, ALaterCompletionDoesNotCount)
{
    start();
    Q_EMIT bench->page()->loadFinished(true);
    EXPECT_TRUE(waitFor([&] { return calls(QStringLiteral("SetEditorMaxChars")).size() == 1; }));
    EXPECT_EQ(bench->window.readies, 1);
}

TEST_F(Control, WithoutABrowserWindowNothingIsHooked)
{
    TestControl control;
    control.ModifyIEWndProc();
    EXPECT_EQ(control.oldWndProc(), nullptr);
}

TEST_F(Control, ALoadBeforeReadyLeavesThePageEmptyAndALaterSaveFilesAnEmptyText)
{
    const QString name = stored(QStringLiteral("<p>early</p>"), NOTE_HTML_VER_2);
    fake = std::make_unique<FakePage>(QString::fromUtf8(plainPage));
    bench = std::make_unique<Bench>();
    control().LoadEditor(QStringLiteral("g"), {name}, {}, 0);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>early</p>"));
    EXPECT_EQ(log.take(),
        QStringList{QStringLiteral("设置笔记编辑器内容，js方法调用失败！，ErrMsg:unknow error ！")});
    ASSERT_TRUE(bench->waitReady());
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(control().lastHtml(), QString());
}

// --- Opening notes ---

TEST_F(Control, ANewNoteHasAGuidAnEmptyTextAndTheCurrentVersion)
{
    start();
    control().lastHtml() = QStringLiteral("old");
    const QString guid = newNote();
    EXPECT_EQ(guid.size(), 32);
    EXPECT_EQ(control().Handler().GetCurNoteGuid(), guid);
    EXPECT_EQ(control().lastHtml(), QString());
    EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    EXPECT_EQ(calls(QStringLiteral("SetEditorContent")), QStringList{QString()});
}

TEST_F(Control, TheModeReachesThePageBeforeTheText)
{
    start();
    newNote(1);
    const QStringList seen = bench->js(QStringLiteral("calls.slice(1).map(c => c.split(' ')[0]).join()"))
                                 .toString().split(u',');
    EXPECT_EQ(seen.mid(0, 2),
        QStringList({QStringLiteral("SetEditorMode"), QStringLiteral("SetEditorContent")}));
}

TEST_F(Control, ANewTextIsFollowedByClearingThePagesCache)
{
    start();
    newNote();
    EXPECT_TRUE(waitFor([&] { return calls(QStringLiteral("ClearEditorCache")).size() == 1; }));
    EXPECT_TRUE(bench->js(QStringLiteral("calls.at(-1)")).toString().startsWith(QStringLiteral("Clear")));
}

TEST_F(Control, PartsAreJoinedInOrderAndTheLastGivesTheVersion)
{
    start();
    const QString one = stored(QStringLiteral("<p>1</p>"), NOTE_HTML_VER_1);
    const QString two = stored(QStringLiteral("<p>2</p>"), NOTE_HTML_VER_2);
    control().LoadEditor(QStringLiteral("g"), {one, two}, {}, 0);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>1</p><p>2</p>"));
    EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    control().LoadEditor(QStringLiteral("g"), {two, one}, {}, 0);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>2</p><p>1</p>"));
    EXPECT_EQ(control().version(), NOTE_HTML_VER_1);
}

TEST_F(Control, APartWithoutAMarkerPullsTheVersionDown)
{
    start();
    const QString name = CreateGuidString() + QStringLiteral(".html");
    QFile file(GetAttachmentDir() + u'/' + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<p>plain</p>");
    file.close();
    control().LoadEditor(
        QStringLiteral("g"), {stored(QStringLiteral("<p>2</p>"), NOTE_HTML_VER_2), name}, {}, 0);
    EXPECT_EQ(control().version(), NOTE_HTML_VER_0);
}

TEST_F(Control, NothingToLoadIsAnEmptyNoteOfTheCurrentVersion)
{
    start();
    for (const std::vector<QString>& files :
        {std::vector<QString>{}, {QString()}, {QStringLiteral("missing.html")},
            {stored(QString(), NOTE_HTML_VER_1)}, {QStringLiteral("../../outside.html")}}) {
        control().lastHtml() = QStringLiteral("old");
        control().LoadEditor(QStringLiteral("g"), files, {{QStringLiteral("a"), 1}}, 0);
        EXPECT_EQ(control().lastHtml(), QString());
        EXPECT_EQ(control().version(), NOTE_HTML_VER_2);
    }
    EXPECT_EQ(calls(QStringLiteral("SetEditorContent")), QStringList(5, QString()));
}

TEST_F(Control, SetEditorTextTakesTextVersionAndMode)
{
    start();
    control().SetEditorText(QStringLiteral("<p>t</p>"), NOTE_HTML_VER_1, 1);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>t</p>"));
    EXPECT_EQ(control().version(), NOTE_HTML_VER_1);
    EXPECT_EQ(control().Handler().IsReadOnly(), 1);
    QString html;
    control().GetLastHtml(html);
    EXPECT_EQ(html, QStringLiteral("<p>t</p>"));
}

// --- Saving ---

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
    control().Handler().RecordAttachModifyTime(QStringLiteral("d.pdf"), QStringLiteral("a.pdf"),
        QStringLiteral("2001-02-03 04:05:06"));
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
    EXPECT_TRUE(log.take().contains(
        QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!")));
    ASSERT_TRUE(block.remove());
    ASSERT_TRUE(QDir().rename(store + QStringLiteral("-away"), store));
    control().SaveEditor();
    EXPECT_EQ(host().saves.size(), 1u);
}

TEST_F(Control, AnUpgradeDuringASaveLeavesThePageBehind)
{
    start();
    const QString old
        = stored(QStringLiteral("<img class=\"userdata/attachment/abc.png\" src=\"x/abc.png\">"),
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
    EXPECT_TRUE(waitFor(
        [&] { return bench->js(QStringLiteral("keys.join()")).toString() == QStringLiteral("s,F4"); }))
        << qPrintable(bench->js(QStringLiteral("keys.join()")).toString());
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

// --- Messages and links ---

TEST_F(Control, AChangedAttachmentWithoutARecordIsRefused)
{
    TestControl control;
    EXPECT_EQ(control.OnAttachFileModify(nullptr), 1);
    SyncFileModifyArg arg;
    EXPECT_EQ(control.OnAttachFileModify(&arg), 0);
}

TEST_F(Control, AChangedAttachmentArrivesAsAMessage)
{
    start();
    QCoreApplication::postEvent(bench->control,
        WindowMessage::carrying(WM_ATTACH_FILE_MODIFY, std::make_unique<SyncFileModifyArg>()));
    QStringList lines;
    EXPECT_TRUE(waitFor([&] { return !(lines += log.take()).isEmpty(); }));
    EXPECT_TRUE(lines[0].contains(QStringLiteral("DoAttachFileModify")));
}

TEST_F(Control, TheCopyMessageReachesItsHandler)
{
    start();
    QCoreApplication::postEvent(bench->input(), new WindowMessage(WM_EDITOR_COPY));
    QStringList lines;
    EXPECT_TRUE(waitFor([&] { return !(lines += log.take()).isEmpty(); }));
    EXPECT_TRUE(lines[0].contains(QStringLiteral("HandleCopyNotify")));
}

TEST_F(Control, ALinkClickStaysOnThePage)
{
    start();
    bench->js(QStringLiteral("document.body.innerHTML += '<a id=a href=\"https://example.org\">x</a>';"
                             "document.getElementById('a').click(); 1"));
    EXPECT_EQ(bench->js(QStringLiteral("location.pathname.split('/').pop()")).toString(),
        QStringLiteral("index.html"));
}

TEST_F(Control, AMessageBoxOfThePageIsModalAndLetsPageCallsIn)
{
    start("window.ask = () => { CppProcessor('NmMessageBox', '{\"msg\":\"<b>你好</b>\"}', '');"
          " CppProcessor('DbClickAttachment', '{\"path\":\"x\"}', ''); }");
    const auto box = [] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); };
    QString text;
    QStringList openedMeanwhile;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (!box() || host().opened.isEmpty())
            return;
        text = box()->text();
        openedMeanwhile = host().opened;
        box()->accept();
    });
    watch.start(5);
    bench->js(QStringLiteral("ask(); 1")); // The box opens while this waits.
    EXPECT_TRUE(waitFor([&] { return !text.isEmpty(); }));
    EXPECT_EQ(text, QStringLiteral("<b>你好</b>"));
    EXPECT_EQ(openedMeanwhile, QStringList{QStringLiteral("|x|")});
}

TEST_F(Control, TheHookWithoutALiveControlKeepsInputFromTheBrowser)
{
    start();
    bench->js(QStringLiteral("window.keys = []; document.addEventListener('keydown', e => keys.push(e.key)); 1"));
    {
        TestControl second;
        EXPECT_EQ(g_editorImpl, &second);
    }
    EXPECT_EQ(g_editorImpl, nullptr);
    QTest::keyClick(bench->input(), Qt::Key_A);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, {});
    EXPECT_EQ(TestControl::IEHookWndProc(bench->input(), &key), 1);
    EXPECT_EQ(bench->js(QStringLiteral("keys.length")).toInt(), 0);
    g_editorImpl = bench->control;
}

// --- Export ---

TEST_F(Control, ExportOfANoteThatWasNeverSavedSaysThatItIsEmpty)
{
    TestControl control;
    QString error;
    EXPECT_FALSE(control.ExportWord(QStringLiteral("/tmp/x.mht"), error));
    EXPECT_EQ(error, QStringLiteral("笔记内容为空！"));
}

TEST_F(Control, RefreshWithoutABrowserDoesNothing)
{
    TestControl control;
    control.RefreshIE();
    start();
    bench->control->RefreshIE();
}
