// Message 2224 at the control, step by step, on a page of the test's own.

#include "attachfiles/AttachFileWatcher.h"
#include "editor/Changing.h"
#include "editor/ControlFixture.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageBox>
#include <QTimer>

using namespace changing;

namespace {

const QString kPicture = QStringLiteral("p.png");
const QString kThumbFailed =
    QStringLiteral("[ERROR] CNomarEditorImpl::DoAttachFileModify 生成附件缩略图失败！");
const QString kCopyFailed =
    QStringLiteral("[ERROR] CNomarEditorImpl::GenerateThumbPic copy file fald ! ");

/// A page that holds a text with the element, and changes it as the real one does.
constexpr auto modifyingPage = R"js(
    let html = '';
    answer = (method, argument) => {
        if (method === 'SetEditorContent') html = argument;
        if (method === 'ModifyAttachAtrr') {
            const a = JSON.parse(argument);
            html = html.replace(/class="[^"]*"/, () => 'class="' + a.ClassValue + '"')
                       .replace(/src="[^"]*"/, () => 'src="' + a.SrcValue + '"');
        }
        return ok(method === 'GetEditorContent' ? {ehtml: html, etext: 'text'} : {});
    };
)js";

/// The same without the change, which takes it a while.
constexpr auto slowPage = R"js(
    let html = '';
    answer = (method, argument) => {
        if (method === 'SetEditorContent') html = argument;
        if (method === 'ModifyAttachAtrr') {
            const end = performance.now() + 200;
            while (performance.now() < end);
        }
        return ok(method === 'GetEditorContent' ? {ehtml: html, etext: ''} : {});
    };
)js";

class AttachFileModify : public Control {
protected:
    /// Opens a note with one attachment and gives its GUID.
    QString open(const QString& origName, const char* script = modifyingPage, bool withHost = true)
    {
        start(script, withHost);
        const QString guid = newNote();
        control().SetEditorText(
            element(QStringLiteral("old.x"), QStringLiteral("old.bmp"), origName), NOTE_HTML_VER_2,
            0);
        log.take();
        return guid;
    }
    /// Hands the control a change of the open note, and opens another note while the page is told.
    void openAnotherDuring(SyncFileModifyArg& arg)
    {
        QString second;
        QTimer::singleShot(0, bench->control, [&] { control().NewEditor(second, 0); });
        control().OnAttachFileModify(&arg);
        EXPECT_EQ(control().Handler().GetCurNoteGuid(), second);
    }
    void expectNothingShown() { EXPECT_EQ(QApplication::activeModalWidget(), nullptr); }
};

} // namespace

TEST_F(AttachFileModify, WithoutARecordTheMessageIsRefused)
{
    TestControl control;
    EXPECT_EQ(control.OnAttachFileModify(nullptr), 1);
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(AttachFileModify, AMessageWithoutARecordDoesNothing)
{
    open(kPicture);
    QCoreApplication::postEvent(bench->control, new WindowMessage(WM_ATTACH_FILE_MODIFY));
    QCoreApplication::sendPostedEvents(bench->control);
    EXPECT_EQ(log.take(), QStringList());
    EXPECT_EQ(calls(QStringLiteral("ModifyAttachAtrr")), QStringList());
}

TEST_F(AttachFileModify, TheOpenNoteNamesTheNewContentAndIsSaved)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "new");
    EXPECT_EQ(control().OnAttachFileModify(&arg), 0);
    const QString name = arg.fileMd5 + QStringLiteral(".png");
    ASSERT_EQ(host().saves.size(), 1u);
    const auto& files = host().saves[0].files;
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[1].fileName, name);
    EXPECT_EQ(files[1].origName, kPicture);
    EXPECT_EQ(files[2].fileName, name);
    EXPECT_EQ(textOf(files[0].filePath), element(name, name, kPicture));
    EXPECT_TRUE(IsFileExist(GetAttachmentDir() + u'/' + name));
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(AttachFileModify, ThePageIsToldOnceWithDoubledSeparators)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "new");
    control().OnAttachFileModify(&arg);
    const QString name = QStringLiteral("userdata\\\\attachment\\\\%1.png").arg(arg.fileMd5);
    EXPECT_EQ(calls(QStringLiteral("ModifyAttachAtrr")),
        QStringList(
            QStringLiteral("{\"nm_exdata\":%1,\"ClassValue\":\"%2\",\"SrcValue\":\"../%2\"}")
                .arg(noteattach::FormatOrigNameToJson(kPicture), name)));
}

TEST_F(AttachFileModify, BothRecordsHaveTheTimeOfTheChange)
{
    const QString guid = open(QStringLiteral("a.b.JPG"));
    SyncFileModifyArg arg = changed(guid, QStringLiteral("a.b.JPG"), "time");
    const auto& book = control().Handler().GetAttachModifyCache();
    const QString name = arg.fileMd5 + QStringLiteral(".JPG");
    host().onSave = [&] { // the times are in the book before they are asked for
        EXPECT_TRUE(book.contains(name + arg.attachFile.origName));
        EXPECT_TRUE(book.contains(name));
    };
    control().OnAttachFileModify(&arg);
    host().onSave = nullptr;
    ASSERT_EQ(host().saves.size(), 1u);
    ASSERT_EQ(book.size(), 2u);
    EXPECT_EQ(host().saves[0].files[1].modifyTime, book.at(name + arg.attachFile.origName));
    EXPECT_EQ(host().saves[0].files[2].modifyTime, book.at(name));
}

TEST_F(AttachFileModify, ANameWithAQuoteInItsExtensionReachesThePageWhole)
{
    const QString name = QStringLiteral("a.j\"\tp"); // a working copy may be named almost anything
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "quote");
    arg.attachFile.origName = name;
    control().OnAttachFileModify(&arg);
    const QStringList told = calls(QStringLiteral("ModifyAttachAtrr"));
    ASSERT_EQ(told.size(), 1);
    const QJsonDocument json = QJsonDocument::fromJson(told[0].toUtf8());
    EXPECT_EQ(json[QStringLiteral("ClassValue")].toString(),
        QStringLiteral("userdata\\attachment\\%1.j\"\tp").arg(arg.fileMd5));
}

TEST_F(AttachFileModify, ThePictureThatIsShownAlreadyIsNoReasonToSave)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "same");
    control().OnAttachFileModify(&arg);
    control().OnAttachFileModify(&arg);
    EXPECT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(calls(QStringLiteral("ModifyAttachAtrr")).size(), 2);
}

TEST_F(AttachFileModify, TheBookOfSizesStaysAsItIs)
{
    const QString guid = open(kPicture);
    control().Handler().InitAttachFileSize(
        {{QStringLiteral("old.x"), 10}, {QStringLiteral("old.bmp"), 10}});
    quint64 total = 0;
    EXPECT_EQ(control().Handler().GetExistAttTotalSize(total), 1);
    SyncFileModifyArg arg = changed(guid, kPicture, "size");
    control().OnAttachFileModify(&arg);
    EXPECT_EQ(control().Handler().GetExistAttTotalSize(total), 0);
    control().Handler().InitAttachFileSize({{arg.fileMd5 + QStringLiteral(".png"), 4}});
    EXPECT_EQ(control().Handler().GetExistAttTotalSize(total), 1);
    EXPECT_EQ(total, 6u);
}

TEST_F(AttachFileModify, AFileThatCannotBeTakenIsTwoLinesAndNothingElse)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "gone");
    ASSERT_TRUE(QFile::remove(arg.filePath));
    const QStringList before = storeFiles();
    EXPECT_EQ(control().OnAttachFileModify(&arg), 0);
    EXPECT_EQ(log.take(), QStringList({kCopyFailed, kThumbFailed}));
    EXPECT_EQ(storeFiles(), before);
    EXPECT_EQ(calls(QStringLiteral("ModifyAttachAtrr")), QStringList());
    EXPECT_TRUE(host().saves.empty());
    expectNothingShown();
}

TEST_F(AttachFileModify, AFolderInTheFilesPlaceIsARefusedCopy)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "folder");
    ASSERT_TRUE(QFile::remove(arg.filePath) && QDir().mkdir(arg.filePath));
    control().OnAttachFileModify(&arg);
    EXPECT_EQ(log.take(), QStringList({kCopyFailed, kThumbFailed}));
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(AttachFileModify, APictureThatHasChangedAgainWaitsForItsNextMessage)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg first = changed(guid, kPicture, "first");
    first.secondFile.text2 = QStringLiteral("5 1"); // as it was digested, long ago
    SyncFileModifyArg second = changed(guid, kPicture, "second one");
    control().OnAttachFileModify(&first);
    EXPECT_FALSE(IsFileExist(GetAttachmentDir() + u'/' + first.fileMd5 + QStringLiteral(".png")));
    EXPECT_EQ(log.take(), QStringList({kCopyFailed, kThumbFailed}));
    control().OnAttachFileModify(&second);
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(host().saves[0].files[1].fileName, second.fileMd5 + QStringLiteral(".png"));
}

TEST_F(AttachFileModify, ARefusalOfThePageIsInTheLogAndTheSavePathStillRuns)
{
    const QString guid = open(kPicture,
        "answer = (m) => m === 'ModifyAttachAtrr'"
        " ? '{\"result\":false,\"errmsg\":\"no\"}'"
        " : ok(m === 'GetEditorContent' ? {ehtml: 'x', etext: 'x'} : {});");
    SyncFileModifyArg arg = changed(guid, kPicture, "refused");
    control().OnAttachFileModify(&arg);
    EXPECT_EQ(log.take(),
        QStringList(QStringLiteral("[ERROR] 修改附件class属性值失败，错误信息：\u6F6E")));
    EXPECT_EQ(host().saves.size(), 1u);
}

TEST_F(AttachFileModify, AMessageThatComesDuringAPageCallIsHandledBehindIt)
{
    const QString guid = open(kPicture);
    SyncFileModifyArg arg = changed(guid, kPicture, "during");
    const auto& book = control().Handler().GetAttachModifyCache();
    type(QStringLiteral("<p>typed</p>"));
    // Delivered while the save waits for the page.
    QCoreApplication::postEvent(bench->control,
        WindowMessage::carrying(WM_ATTACH_FILE_MODIFY, std::make_unique<SyncFileModifyArg>(arg)));
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(textOf(host().saves[0].files[0].filePath), QStringLiteral("<p>typed</p>"));
    EXPECT_TRUE(book.empty()); // of the change nothing was done yet
    EXPECT_TRUE(waitFor([&] { return !book.empty(); }));
    EXPECT_EQ(calls(QStringLiteral("ModifyAttachAtrr")).size(), 1);
}

// --- A note that is not open ---

TEST_F(AttachFileModify, AnotherNoteIsRewrittenFromItsFileAndHandedToTheHost)
{
    const QString opened = open(QStringLiteral("other.png"));
    const QString guid = CreateGuidString();
    SyncFileModifyArg arg = changed(guid, kPicture, "closed");
    arg.secondFile.text1 = filed(QStringLiteral("<p>一</p>")
        + element(QStringLiteral("o.png"), QStringLiteral("o.png"), kPicture));
    const QString lastHtml = control().lastHtml();
    EXPECT_EQ(control().OnAttachFileModify(&arg), 0);

    ASSERT_EQ(host().saves.size(), 1u);
    const RecordingHost::Save& save = host().saves[0];
    EXPECT_EQ(save.guid, guid);
    EXPECT_EQ(save.text, QStringLiteral("一"));
    ASSERT_EQ(save.files.size(), 3u);
    const QString name = arg.fileMd5 + QStringLiteral(".png");
    EXPECT_EQ(textOf(save.files[0].filePath),
        QStringLiteral("<p>一</p>") + element(name, name, kPicture));
    EXPECT_EQ(save.files[1].filePath, arg.filePath);
    // Of the open note nothing has changed.
    EXPECT_EQ(control().Handler().GetCurNoteGuid(), opened);
    EXPECT_EQ(control().lastHtml(), lastHtml);
    EXPECT_TRUE(control().Handler().GetAttachModifyCache().empty());
    EXPECT_EQ(calls(QStringLiteral("ModifyAttachAtrr")), QStringList());
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(AttachFileModify, WithoutAPathTheHostIsHandedAnEmptyText)
{
    open(kPicture);
    SyncFileModifyArg arg = changed(CreateGuidString(), kPicture, "nobody says");
    control().OnAttachFileModify(&arg);
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(host().saves[0].guid, arg.noteGuid);
    EXPECT_EQ(host().saves[0].text, QString());
    ASSERT_EQ(host().saves[0].files.size(), 1u);
    EXPECT_EQ(textOf(host().saves[0].files[0].filePath), QString());
}

TEST_F(AttachFileModify, ANoteThatTheHostDoesNotKnowIsLeftAlone)
{
    open(kPicture);
    SyncFileModifyArg arg = changed(CreateGuidString(), kPicture, "unknown");
    arg.secondFile.reserved = 1;
    const QStringList before = noteFiles();
    control().OnAttachFileModify(&arg);
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(noteFiles(), before);
}

TEST_F(AttachFileModify, ANoteThatCannotBeReadIsLeftAlone)
{
    open(kPicture);
    SyncFileModifyArg arg = changed(CreateGuidString(), kPicture, "unreadable");
    arg.secondFile.text1 = GetAttachmentDir() + QStringLiteral("/none.html");
    control().OnAttachFileModify(&arg);
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(log.take(),
        QStringList(
            QStringLiteral("[ERROR] CNomarEditorImpl::DoAttachFileModify 读取笔记内容失败！")));
}

TEST_F(AttachFileModify, WithoutAHostAnotherNoteIsStillFiled)
{
    open(kPicture, modifyingPage, false);
    SyncFileModifyArg arg = changed(CreateGuidString(), kPicture, "no host");
    arg.secondFile.text1 =
        filed(arg.noteGuid + element(QStringLiteral("h.png"), QStringLiteral("h.png"), kPicture));
    const qsizetype before = noteFiles().size();
    control().OnAttachFileModify(&arg);
    EXPECT_EQ(noteFiles().size(), before + 1);
}

TEST_F(AttachFileModify, TheHostIsAskedAgainSoThatASaveInBetweenIsNotLost)
{
    open(QStringLiteral("other.png"));
    SyncFileModifyArg arg = changed(CreateGuidString(), kPicture, "asked again");
    const QString before = element(QStringLiteral("q.png"), QStringLiteral("q.png"), kPicture);
    arg.secondFile.reserved = 1;
    arg.secondFile.text1 = filed(before);
    const QString saved = filed(before + QStringLiteral("<p>typed since</p>"));
    AttachFileWatcher watcher;
    watcher.SetNoteFileSource([&](const QString&) { return saved; });
    control().OnAttachFileModify(&arg);
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_TRUE(textOf(host().saves[0].files[0].filePath).contains(QStringLiteral("typed since")));
}

TEST_F(AttachFileModify, ANoteThatIsClosedWhileThePageIsToldGetsTheChangeInItsFile)
{
    const QString guid = open(kPicture, slowPage);
    SyncFileModifyArg arg = changed(guid, kPicture, "closing");
    arg.secondFile.reserved = 1;
    arg.secondFile.text1 =
        filed(element(QStringLiteral("c.png"), QStringLiteral("c.png"), kPicture));
    openAnotherDuring(arg);
    EXPECT_TRUE(control().Handler().GetAttachModifyCache().empty());
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(host().saves[0].guid, guid);
    EXPECT_EQ(host().saves[0].files[1].fileName, arg.fileMd5 + QStringLiteral(".png"));
}

TEST_F(AttachFileModify, ANoteThatIsClosedMeanwhileAndOfWhichNobodySaysTheFileIsLeftAlone)
{
    const QString guid = open(kPicture, slowPage);
    SyncFileModifyArg arg = changed(guid, kPicture, "left");
    openAnotherDuring(arg);
    EXPECT_TRUE(host().saves.empty());
}
