#include "editor/NmWebNoteHandler.h"
#include "kit/LogLines.h"
#include "kit/Print.h"

#include "support/Paths.h"
#include "support/Text.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

DISPPARAMS arguments(const QStringList& texts)
{
    DISPPARAMS params;
    for (auto text = texts.rbegin(); text != texts.rend(); ++text)
        params.rgvarg.push_back(VARIANT::Text(*text));
    params.cArgs = unsigned(params.rgvarg.size());
    return params;
}

/// A host that writes down what it was told.
class Host : public INmEditorNotify {
public:
    QString opened;
    int OnSaveNote(const QString&, std::vector<NewAttachFile>&, const QString&) override
    {
        return 1;
    }
    int OnOpenAttachment(const QString& guid, const QString& file, const QString& orig) override
    {
        opened = guid + u'|' + file + u'|' + orig;
        return 0;
    }
};

/// The handler with its protected steps in the open.
class OpenHandler : public NmWebNoteHandler {
public:
    using NmWebNoteHandler::GetFileList;
    using NmWebNoteHandler::GetFileListFromClipboard;
    using NmWebNoteHandler::PreDrag;
};

/// A handler of a note of its own, without a page, and a file to add to it.
class HandlerWithAFile : public ::testing::Test {
protected:
    OpenHandler handler;
    QTemporaryDir dir;
    QMimeData data;
    LogLines log;

    void SetUp() override
    {
        GetAttachmentDir();
        handler.SetCurNoteGuid(CreateGuidString());
        QFile file(dir.filePath(QStringLiteral("a.txt")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("text");
        file.close();
        data.setUrls({QUrl::fromLocalFile(file.fileName())});
    }
    QString workingCopy(const QString& name = QStringLiteral("a.txt")) const
    {
        return GetAttachFilePath(handler.GetCurNoteGuid(), QStringLiteral("x"), name);
    }
    std::vector<DropFileInfo> files()
    {
        std::vector<DropFileInfo> list;
        handler.GetFileList(&data, list);
        EXPECT_EQ(list.size(), 1u);
        return list;
    }
};

/// The browser's own drop target.
class Target : public DropTarget {
public:
    int calls = 0;
    DragOrigin Origin() const override { return DragOrigin::OtherProcess; }
    long DragEnter(const QMimeData*, unsigned, QPoint, int*) override { return take(); }
    long DragOver(unsigned, QPoint, int*) override { return take(); }
    long DragLeave() override { return take(); }
    long Drop(const QMimeData*, unsigned, QPoint, int*) override { return take(); }

private:
    long take()
    {
        ++calls;
        return S_OK;
    }
};

} // namespace

TEST(NmWebNoteHandler, FunctionNamesMatchExactly)
{
    NmWebNoteHandler handler;
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("CppProcessor")), 1);
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("cppprocessor")), -1);
    EXPECT_EQ(handler.OnGetFunId(QString()), -1);
    handler.Init();
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("CppProcessor")), 1);
}

TEST(NmWebNoteHandler, OnlyItsOwnFunctionIsExecuted)
{
    NmWebNoteHandler handler;
    VARIANT result = VARIANT::Text(QStringLiteral("as it was"));
    QString exception = QStringLiteral("as it was");
    const DISPPARAMS params =
        arguments({QStringLiteral("WriteEditorLog"), QStringLiteral("{}"), QString()});
    EXPECT_EQ(handler.OnExecuteFun(2, params, result, exception), -1);
    EXPECT_EQ(handler.OnExecuteFun(1, params, result, exception), 0);
    EXPECT_EQ(result.bstrVal, QStringLiteral("as it was"));
    EXPECT_EQ(exception, QStringLiteral("as it was"));
}

TEST(NmWebNoteHandler, WriteEditorLogWithValidJsonWritesNoLine)
{
    NmWebNoteHandler handler;
    LogLines log;
    VARIANT result;
    QString exception;
    handler.OnCppProcessor(arguments({QStringLiteral("WriteEditorLog"),
                               QStringLiteral("{\"type\":\"error\",\"msg\":\"m\"}"), QString()}),
        result, exception);
    EXPECT_TRUE(log.take().isEmpty());
}

TEST(NmWebNoteHandler, ADoubleClickReachesTheHostWithTheStoredAndTheOriginalName)
{
    NmWebNoteHandler handler;
    Host host;
    handler.SetNotify(&host);
    handler.SetCurNoteGuid(QStringLiteral("g"));
    VARIANT result;
    QString exception;
    handler.OnCppProcessor(arguments({QStringLiteral("DbClickAttachment"),
                               QStringLiteral("{\"path\":\"userdata\\\\attachment\\\\d.pdf\"}"),
                               NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("报告.pdf"))}),
        result, exception);
    EXPECT_EQ(host.opened, QStringLiteral("g|d.pdf|报告.pdf"));
}

TEST(NmWebNoteHandler, ADoubleClickWithoutAHostIsIgnored)
{
    NmWebNoteHandler handler;
    handler.OnDblClickAttachment(QStringLiteral("a\\b"), QString());
}

TEST(NmWebNoteHandler, ARecordedTimeIsOverwrittenUnderItsKey)
{
    NmWebNoteHandler handler;
    handler.RecordAttachModifyTime(
        QStringLiteral("f"), QStringLiteral("o"), QStringLiteral("2026-01-01 00:00:00"));
    handler.RecordAttachModifyTime(
        QStringLiteral("f"), QStringLiteral("o"), QStringLiteral("2026-01-02 00:00:00"));
    EXPECT_EQ(handler.GetAttachModifyCache().size(), 1u);
    EXPECT_EQ(handler.GetAttachModifyCache().at(QStringLiteral("fo")),
        QStringLiteral("2026-01-02 00:00:00"));
}

TEST(NmWebNoteHandler, ACopyHasTheSameRecordOfItsOwn)
{
    NmWebNoteHandler handler;
    handler.SetCurNoteGuid(QStringLiteral("one"));
    NmWebNoteHandler copy(handler);
    copy.SetCurNoteGuid(QStringLiteral("two"));
    EXPECT_EQ(handler.GetCurNoteGuid(), QStringLiteral("one"));
    handler = copy;
    EXPECT_EQ(handler.GetCurNoteGuid(), QStringLiteral("two"));
    EXPECT_EQ(handler.OnGetFunId(QStringLiteral("CppProcessor")), 1);
}

TEST(NmWebNoteHandler, WithoutABrowserEveryPageCallFails)
{
    NmWebNoteHandler handler;
    LogLines log;
    handler.SetReadOnly(1);
    EXPECT_EQ(handler.IsReadOnly(), 0);
    QString html = QStringLiteral("kept"), text;
    EXPECT_EQ(handler.GetEditorContent(html, text), 1);
    EXPECT_EQ(html, QStringLiteral("kept"));
    EXPECT_EQ(handler.HandleClearEditorCacheNotify(), 0);
    EXPECT_EQ(log.take().size(), 2);
}

TEST(NmWebNoteHandler, MessagesItDoesNotKnowAreIgnored)
{
    NmWebNoteHandler handler;
    LogLines log;
    handler.WinMessageNotify(nullptr, 8, 0, 0);
    handler.WinMessageNotify(nullptr, 8005, 0, 0);
    EXPECT_TRUE(log.take().isEmpty());
}

TEST(NmWebNoteHandler, NativeMenusAreSuppressedAndAlertsLeftToTheBrowser)
{
    NmWebNoteHandler handler;
    EXPECT_EQ(handler.ShowContextMenu(), S_OK);
    EXPECT_EQ(handler.ShowMessage(QStringLiteral("x")), E_NOTIMPL);
}

TEST_F(HandlerWithAFile, ADragOfFilesNeverReachesTheBrowser)
{
    Target target;
    handler.m_defaultDropTarget = &target;
    int effect = Qt::CopyAction | Qt::MoveAction;
    EXPECT_EQ(handler.OnDragEnter(&data, 0, {}, &effect), S_OK);
    EXPECT_EQ(effect, Qt::CopyAction);
    EXPECT_EQ(handler.OnDragOver(0, {}, &effect), S_OK);
    EXPECT_EQ(handler.OnDrop(&data, 0, {}, &effect), S_OK);
    EXPECT_EQ(target.calls, 0);
    EXPECT_TRUE(QFile::exists(workingCopy()));
}

TEST_F(HandlerWithAFile, AHandlerThatSawNoDragRefusesTheDrop)
{
    Target target;
    handler.m_defaultDropTarget = &target;
    int effect = Qt::CopyAction;
    EXPECT_EQ(handler.OnDrop(&data, 0, {}, &effect), S_FALSE);
    EXPECT_EQ(target.calls, 0);
    EXPECT_FALSE(QFile::exists(workingCopy()));
}

TEST_F(HandlerWithAFile, ADragIsSortedByItsData)
{
    EXPECT_EQ(handler.PreDrag(&data, 0, {}, nullptr), DRAGE_OP_FILE);
    QMimeData text;
    text.setText(QStringLiteral("a"));
    EXPECT_EQ(handler.PreDrag(&text, 0, {}, nullptr), DRAGE_OP_DEFAULT);
}

TEST_F(HandlerWithAFile, ACopyHasTheDragInProgress)
{
    int effect = Qt::CopyAction;
    handler.OnDragEnter(&data, 0, {}, &effect);
    OpenHandler copy(handler), assigned;
    assigned = handler;
    EXPECT_EQ(copy.OnDragOver(0, {}, &effect), S_OK);
    EXPECT_EQ(assigned.OnDrop(&data, 0, {}, &effect), S_OK);
    EXPECT_TRUE(QFile::exists(workingCopy()));
}

TEST_F(HandlerWithAFile, AFileIsImportedForTheOpenNote)
{
    MAF_RESULT result;
    EXPECT_EQ(handler.MoveAttFile(files()[0], result), 1);
    EXPECT_EQ(result.attName, QStringLiteral("1cb251ec0d568de6a929b520c4aed8d1.txt"));
    EXPECT_TRUE(QFile::exists(workingCopy()));
    EXPECT_TRUE(handler.GetAttachModifyCache().empty());
}

TEST_F(HandlerWithAFile, AnAddedFileIsInTheBooksThoughThereIsNoPage)
{
    handler.AddDropFileToEditor(files());
    EXPECT_EQ(handler.GetAttachModifyCache().size(), 2u);
    const QStringList lines = log.take();
    ASSERT_FALSE(lines.isEmpty());
    EXPECT_EQ(lines.last(),
        QStringLiteral("添加附件到笔记编辑器，js方法调用失败！，ErrMsg:unknow error ！"));
    quint64 total = 7;
    EXPECT_EQ(handler.GetExistAttTotalSize(total), 1);
    EXPECT_EQ(total, 0u);
    std::vector<DropFileInfo> list = files();
    handler.DoAttSameName(list);
    EXPECT_EQ(list[0].origName, QStringLiteral("a.txt"));
}

TEST_F(HandlerWithAFile, ACaptureIsAddedAsAJpegWhoseTemporaryFileStays)
{
    QImage bitmap(20, 10, QImage::Format_RGB32);
    bitmap.fill(Qt::red);
    const QStringList before = QDir(GetTempDir()).entryList({QStringLiteral("*.jpg")});
    handler.OnScreenCaptureComplet(bitmap);
    const QStringList after = QDir(GetTempDir()).entryList({QStringLiteral("*.jpg")});
    ASSERT_EQ(after.size(), before.size() + 1);
    ASSERT_EQ(handler.GetAttachModifyCache().size(), 1u);
    const QString key = handler.GetAttachModifyCache().begin()->first;
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[0-9a-f]{32}\\.jpg[0-9a-f]{32}\\.jpg$"))
                    .match(key)
                    .hasMatch())
        << qPrintable(key);
}

TEST_F(HandlerWithAFile, ACaptureThatCannotBeSavedAddsNothingAndShowsNothing)
{
    handler.OnScreenCaptureComplet(QImage());
    EXPECT_TRUE(handler.GetAttachModifyCache().empty());
    EXPECT_EQ(log.take().size(), 2); // Two pulls without a page, and nothing else.
}

TEST_F(HandlerWithAFile, ImagesBecomeTemporaryFilesThatCanBeDeleted)
{
    std::vector<DropFileInfo> list = files();
    EXPECT_EQ(handler.SaveImage(nullptr, list), 0);
    const QImage null;
    EXPECT_EQ(handler.SaveImage(&null, list), 0);
    const QImage image(2, 2, QImage::Format_RGB32);
    EXPECT_EQ(handler.SaveImage(&image, list), 1);
    ASSERT_EQ(list.size(), 2u);
    handler.DelTempFileFromList(list);
    EXPECT_TRUE(QFile::exists(list[0].filePath));
    EXPECT_FALSE(QFile::exists(list[1].filePath));
}

TEST_F(HandlerWithAFile, TheClipboardsFilesAreListed)
{
    auto* offered = new QMimeData;
    offered->setUrls(data.urls());
    QGuiApplication::clipboard()->setMimeData(offered);
    std::vector<DropFileInfo> list;
    handler.GetFileListFromClipboard(list);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].fileName, QStringLiteral("a.txt"));
}

TEST_F(HandlerWithAFile, CopyAndPasteAreForwarded)
{
    QClipboard* const clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    EXPECT_EQ(handler.DoCtrlC(), E_NOTIMPL);
    EXPECT_EQ(handler.DoCtrlD(), S_OK);
    EXPECT_EQ(handler.DoCtrlV(), E_NOTIMPL);
    EXPECT_EQ(handler.DoCopyClipboardHtml(), E_NOTIMPL);
    NmWebNoteHandler::CopyLogicResult result;
    EXPECT_EQ(handler.DoCopyLogic({}, result), 1);
    handler.AddAttachToClipboard({{QString(), QString(), data.urls()[0].toLocalFile()}});
    EXPECT_EQ(clipboard->mimeData()->urls(), data.urls());
    EXPECT_EQ(handler.DoCopyClipboardFile(), S_OK);
    EXPECT_TRUE(QFile::exists(workingCopy()));
}

TEST_F(HandlerWithAFile, TheClipboardsHtmlIsReadAsThatOfTheOpenNote)
{
    auto* offered = new QMimeData;
    offered->setHtml(QStringLiteral("text<img class='userdata\\attachment\\0.txt' nm_exdata='%1'>")
                         .arg(NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("a.txt"))));
    QGuiApplication::clipboard()->setMimeData(offered);
    std::vector<NewAttachFile> list;
    QString plainText;
    handler.AnalyHtmlDataFromClipboard(list, plainText);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].filePath, workingCopy());
    EXPECT_EQ(plainText, QStringLiteral("text"));
}

TEST_F(HandlerWithAFile, ANoteGoesOnTheClipboardWithWholePathsToItsPictures)
{
    const QString html = QStringLiteral("文<img src=\"../userdata\\attachment\\p.png\">");
    EXPECT_EQ(NmWebNoteHandler::OnCopyContent(html), 1);
    const QString copied = QString::fromUtf8(
        QGuiApplication::clipboard()->mimeData()->data(QStringLiteral("text/html")));
    EXPECT_TRUE(copied.startsWith(u'文'));
    EXPECT_TRUE(copied.contains(GetAttachmentDir())) << qPrintable(copied);
    EXPECT_EQ(NmWebNoteHandler::OnCopyContent(QString()), 0);

    QFile note(dir.filePath(QStringLiteral("n.html")));
    ASSERT_TRUE(note.open(QIODevice::WriteOnly));
    note.write(html.toUtf8());
    note.close();
    NmWebNoteHandler::ClearCopyData();
    EXPECT_EQ(NmWebNoteHandler::OnCopyHtml(note.fileName()), 1);
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->data(QStringLiteral("text/html")),
        copied.toUtf8());
    EXPECT_EQ(NmWebNoteHandler::OnCopyHtml(dir.filePath(QStringLiteral("gone"))), 0);
}

TEST(NmWebNoteHandler, WithoutABrowserEveryKeyIsLeftAlone)
{
    NmWebNoteHandler handler;
    const QKeyEvent key(QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier);
    EXPECT_EQ(handler.OnTranslateAccelerator(&key), E_NOTIMPL);
}

TEST(NmWebNoteHandler, FileOperationsAreForwarded)
{
    NmWebNoteHandler handler;
    EXPECT_EQ(handler.GetFileStuffx(QStringLiteral("a.TAR.GZ")), QStringLiteral("gz"));
    EXPECT_EQ(handler.GetFileStuffx(QStringLiteral("a")), QStringLiteral("unknow"));
    EXPECT_EQ(NmWebNoteHandler::FormatFileInfo(1536, QStringLiteral("2026/11/14 06:02")),
        QStringLiteral("2026/11/14 06:02 1.50KB"));
    QTemporaryDir dir;
    int size = 0;
    EXPECT_EQ(NmWebNoteHandler::GenerateFileThumb(FT_PDF, QStringLiteral("a.pdf"),
                  QStringLiteral("info"), dir.filePath(QStringLiteral("card")), &size),
        1);
    EXPECT_EQ(QFileInfo(dir.filePath(QStringLiteral("card"))).size(), size);
}

TEST(NmWebNoteHandler, ElementsOfATextAreRewritten)
{
    const QString exData = NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("a.txt"));
    const QString html = QStringLiteral("<p>x<img nm_exdata=\"%1\" class=\"c\" src=\"s/o\"></p>")
                             .arg(QString(exData).replace(u'"', QStringLiteral("&quot;")));
    QString bodyHtml, bodyText;
    EXPECT_EQ(NmWebNoteHandler::UpdateHtmlAttachAttr(html, QStringLiteral("a.txt"),
                  QStringLiteral("u\\new"), QStringLiteral("../new"), bodyHtml, bodyText),
        1);
    EXPECT_TRUE(bodyHtml.contains(QStringLiteral("class=\"u\\new\" src=\"../new\"")));
    EXPECT_EQ(bodyText, QStringLiteral("x"));

    const std::vector<NmWebNoteHandler::AttachNewAtt> rewrites{
        {exData, QStringLiteral("{}"), QStringLiteral("n.bmp")}};
    const std::string text = html.toStdString();
    std::string out;
    EXPECT_EQ(NmWebNoteHandler::UpdateAttachAttValue(text, rewrites, out), 1);
    EXPECT_NE(out.find("s/n.bmp"), std::string::npos);
    EXPECT_EQ(NmWebNoteHandler::UpdateAttachAttValue2(text, rewrites, out), 1);
    EXPECT_EQ(out, text);
}

TEST(NmWebNoteHandler, AnyOtherDragIsTheBrowsers)
{
    NmWebNoteHandler handler;
    Target target;
    handler.m_defaultDropTarget = &target;
    QMimeData text;
    text.setText(QStringLiteral("a"));
    int effect = Qt::CopyAction;
    EXPECT_EQ(handler.OnDragEnter(&text, 0, {}, &effect), S_OK);
    EXPECT_EQ(handler.OnDragOver(0, {}, &effect), S_OK);
    EXPECT_EQ(handler.OnDragLeave(), S_OK);
    EXPECT_EQ(handler.OnDrop(&text, 0, {}, &effect), S_OK);
    EXPECT_EQ(target.calls, 4);
}

TEST(NmWebNoteHandler, TheCurrentTimeHasNoSeconds)
{
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d$"))
                    .match(NmWebNoteHandler::FormatCurTime())
                    .hasMatch());
}
