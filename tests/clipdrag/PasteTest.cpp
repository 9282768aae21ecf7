#include "clipdrag/Paste.h"

#include "clipdrag/Board.h"
#include "kit/AddingFixture.h"

#include "attachstore/EntryRules.h"
#include "noteattach/AttachList.h"
#include "platform/Result.h"

#include <QRegularExpression>

namespace {

const QString totalText = QStringLiteral("获取笔记编辑器附件总大小失败！");
const QString limitText = QStringLiteral("最大支持上传10M附件！");
const QString startComment = QStringLiteral("<!--StartFragment -->\r\n");

QByteArray readAll(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

} // namespace

/// A note with a text attachment "a.txt" and a clipboard to paste from.
struct Pasting : Adding {
    Paste paste{note, *adder, boxes};

    void SetUp() override
    {
        QGuiApplication::clipboard()->clear();
        adder->AddDropFileToEditor({record(file(QStringLiteral("a.txt"), "text"))});
        log.take();
        page.calls.clear();
        page.order.clear();
    }
    /// Lays a file into the note's folder as if its attachment had been deleted from the text, and
    /// gives the element that refers to it.
    QString deleted(const QString& name, const QByteArray& content = "content")
    {
        QFile out(noteFolder().filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return element(QStringLiteral("0123.") + name.section(u'.', -1), name);
    }
    /// Runs once, when the page is pulled for the nth time.
    void atPull(int n, std::function<void()> act)
    {
        page.onCall = [this, n, act = std::move(act)] {
            if (page.count(QStringLiteral("GetEditorContent")) == n)
                act();
        };
    }
    std::vector<NewAttachFile> listOf(const QString& html) const
    {
        std::vector<NewAttachFile> list;
        EXPECT_EQ(noteattach::ParseAttList(note.m_curNoteGuid, html, list, nullptr), 1);
        return list;
    }
};

struct DoCtrlV : Pasting { };
struct DoCopyClipboardFile : Pasting { };
struct DoCopyClipboardHtml : Pasting { };
struct DoCopyLogic : Pasting { };

// --- What the clipboard holds decides ---

TEST_F(DoCtrlV, AReadOnlyNoteLeavesEverythingToTheBrowser)
{
    note.m_readOnly = 1;
    board::put(board::files({file(QStringLiteral("b.txt"))}));
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    board::putHtml(QStringLiteral("text") + page.html);
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_EQ(copies(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(DoCtrlV, AnEmptyClipboardAndPlainTextAreTheBrowsers)
{
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    auto text = std::make_unique<QMimeData>();
    text->setText(QStringLiteral("plain"));
    board::put(std::move(text));
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCtrlV, FilesEnterTheNoteAndTheBrowserDoesNothing)
{
    board::put(board::files({file(QStringLiteral("b.txt")), file(QStringLiteral("c.pdf"))}));
    EXPECT_EQ(paste.DoCtrlV(), S_OK);
    EXPECT_EQ(added(), QStringList({QStringLiteral("b.txt"), QStringLiteral("c.pdf")}));
}

TEST_F(DoCtrlV, AListOfTooManyFilesIsToldAndUsedUp)
{
    auto data = std::make_unique<QMimeData>();
    const QByteArray line = QUrl::fromLocalFile(file(QStringLiteral("b.txt"))).toEncoded() + "\r\n";
    data->setData(QStringLiteral("text/uri-list"), line.repeated(1001));
    board::put(std::move(data));
    EXPECT_EQ(paste.DoCtrlV(), S_OK);
    EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("一次最多添加1000个文件！")});
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCtrlV, ABitmapBesideHtmlIsPastedAndTheHtmlIgnored)
{
    auto data = board::html(QStringLiteral("text") + page.html);
    data->setImageData(board::picture());
    board::put(std::move(data));
    EXPECT_EQ(paste.DoCtrlV(), S_OK);
    ASSERT_EQ(added().size(), 1);
    EXPECT_TRUE(added()[0].endsWith(QStringLiteral(".jpg"))) << qPrintable(added()[0]);
}

TEST_F(DoCtrlV, FilesComeBeforeABitmapAndBeforeHtml)
{
    auto data = board::files({file(QStringLiteral("b.txt"))});
    data->setImageData(board::picture());
    data->setHtml(QStringLiteral("<b>x</b>"));
    board::put(std::move(data));
    EXPECT_EQ(paste.DoCtrlV(), S_OK);
    EXPECT_EQ(added(), QStringList{QStringLiteral("b.txt")});
}

TEST_F(DoCtrlV, AWebAddressIsNoFile)
{
    auto data = std::make_unique<QMimeData>();
    data->setUrls({QUrl(QStringLiteral("https://example.org/a.txt"))});
    board::put(std::move(data));
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_TRUE(added().isEmpty());
}

TEST_F(DoCtrlV, ForeignHtmlIsTheBrowsersUntouched)
{
    const QString foreign = QStringLiteral("<p>web <img src=\"https://example.org/x.png\"></p>");
    board::putHtml(foreign);
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_EQ(board::fragment(), foreign);
    EXPECT_FALSE(board::held()->hasFormat(clipdrag::kHtmlFormat));
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCtrlV, HtmlWithAnAttachmentIsTakenOver)
{
    board::putHtml(QStringLiteral("text") + page.html);
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_EQ(copies(), QStringList({QStringLiteral("a(1).txt"), QStringLiteral("a.txt")}));
}

// --- Files and images ---

TEST_F(DoCopyClipboardFile, AFileThatIsGoneIsLeftToTheBrowser)
{
    board::put(board::files({dir.filePath(QStringLiteral("gone"))}));
    EXPECT_EQ(paste.DoCopyClipboardFile(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyClipboardFile, AnImageThatIsNoneIsLeftToTheBrowser)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(QStringLiteral("image/png"), "no picture");
    board::put(std::move(data));
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyClipboardFile, AnImageComesAsAJpegWhoseTemporaryFileIsDeleted)
{
    auto data = std::make_unique<QMimeData>();
    data->setImageData(board::picture());
    board::put(std::move(data));
    const QStringList before = QDir(GetTempDir()).entryList(QDir::Files);
    EXPECT_EQ(paste.DoCopyClipboardFile(), S_OK);
    EXPECT_EQ(added().size(), 1);
    EXPECT_EQ(QDir(GetTempDir()).entryList(QDir::Files), before);
}

TEST_F(DoCopyClipboardFile, ThePastedFileItselfStays)
{
    const QString path = file(QStringLiteral("b.txt"));
    board::put(board::files({path}));
    EXPECT_EQ(paste.DoCopyClipboardFile(), S_OK);
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(DoCopyClipboardFile, WhatMayNotEnterUsesTheKeyUpAndIsTold)
{
    board::put(board::files({dir.path()}));
    EXPECT_EQ(paste.DoCopyClipboardFile(), S_OK);
    EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("暂不支持文件夹粘贴！")});
}

// --- HTML ---

TEST_F(DoCopyClipboardHtml, AClipboardWithoutHtmlActsAsAnEmptyOne)
{
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyClipboardHtml, HtmlFormatThatMarksNoFragmentIsTheBrowsers)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(clipdrag::kHtmlFormat, "StartFragment:99\r\nEndFragment:98\r\n");
    board::put(std::move(data));
    EXPECT_EQ(paste.DoCtrlV(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyClipboardHtml, HtmlThatIsNoDocumentIsTheBrowsers)
{
    board::putHtml(QStringLiteral("<frameset>") + page.html);
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyClipboardHtml, InTheSameNoteACopyIsNumberedAndTheElementKeepsTheOldName)
{
    const QString html = QStringLiteral("<p>text</p>") + page.html;
    board::putHtml(html);
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    EXPECT_EQ(copies(), QStringList({QStringLiteral("a(1).txt"), QStringLiteral("a.txt")}));
    EXPECT_EQ(readAll(noteFolder().filePath(QStringLiteral("a(1).txt"))), "text");
    EXPECT_EQ(board::fragment(), startComment + html + QStringLiteral("\r\n"));
    EXPECT_EQ(board::held()->data(QStringLiteral("text/html")), html.toUtf8());
    EXPECT_TRUE(added().isEmpty()) << "the browser pastes the element";
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(DoCopyClipboardHtml, PastedAgainTheFragmentHasGrownByItsMarkers)
{
    board::putHtml(QStringLiteral("x") + page.html);
    paste.DoCopyClipboardHtml();
    const QString once = board::fragment();
    paste.DoCopyClipboardHtml();
    EXPECT_EQ(board::fragment(), startComment + once + QStringLiteral("\r\n"));
}

TEST_F(DoCopyClipboardHtml, InAnotherNoteNothingIsPastedAndNothingSaid)
{
    const QString html = QStringLiteral("text") + page.html;
    board::putHtml(html);
    note.m_curNoteGuid = CreateGuidString();
    EXPECT_EQ(paste.DoCopyClipboardHtml(), S_OK);
    EXPECT_EQ(board::fragment(), html);
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(DoCopyClipboardHtml, AFileOfThatNameInTheOtherNoteIsTakenForIt)
{
    const QString html = QStringLiteral("text") + page.html;
    note.m_curNoteGuid = CreateGuidString();
    page.html.clear();
    ASSERT_TRUE(QDir().mkpath(noteFolder().path()));
    deleted(QStringLiteral("a.txt"), "another");
    board::putHtml(html);
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    // With no name in the note the copy keeps its name, and so the file that stands there.
    EXPECT_EQ(copies(), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(readAll(noteFolder().filePath(QStringLiteral("a.txt"))), "another");
}

TEST_F(DoCopyClipboardHtml, SizesAndTimesOfWhatIsNewAreRecorded)
{
    board::putHtml(QStringLiteral("text") + deleted(QStringLiteral("b.doc"), "new content")
        + deleted(QStringLiteral("p.png"), "pixels"));
    const auto sizesBefore = note.m_attachSizeCache;
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    std::vector<std::pair<QString, quint64>> fresh;
    for (const auto& entry : note.m_attachSizeCache) {
        if (!sizesBefore.contains(entry.first))
            fresh.push_back(entry);
    }
    ASSERT_EQ(fresh.size(), 3u) << "a document, its card and a picture";
    static const QRegularExpression time(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"));
    for (const auto& [name, size] : fresh) {
        // Of the document's own file only the working copy lies in the store.
        const QString path = name.endsWith(QStringLiteral(".doc"))
            ? noteFolder().filePath(QStringLiteral("b.doc"))
            : GetAttachmentDir() + u'/' + name;
        EXPECT_EQ(qint64(size), QFileInfo(path).size()) << qPrintable(name);
        const QString second = name.endsWith(QStringLiteral(".doc")) ? QStringLiteral("b.doc")
            : name.endsWith(QStringLiteral(".png"))                  ? QStringLiteral("p.png")
                                                                     : name;
        const auto found = note.m_attachModifyCache.find(name + second);
        ASSERT_NE(found, note.m_attachModifyCache.end()) << qPrintable(name + second);
        EXPECT_TRUE(time.match(found->second).hasMatch());
    }
}

TEST_F(DoCopyClipboardHtml, AKnownNameLeavesBothBooksAlone)
{
    adder->AddDropFileToEditor({record(file(QStringLiteral("p.png"), "pixels"))});
    const auto sizes = note.m_attachSizeCache;
    const auto times = note.m_attachModifyCache;
    // The copy of a picture shares its stored file; a document's would get a card of its own.
    board::putHtml(
        QStringLiteral("text") + element(QStringLiteral("0.png"), QStringLiteral("p.png")));
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    EXPECT_TRUE(copies().contains(QStringLiteral("p(1).png")));
    EXPECT_EQ(note.m_attachSizeCache, sizes);
    EXPECT_EQ(note.m_attachModifyCache, times);
}

TEST_F(DoCopyClipboardHtml, ShownFilesAloneAreLeftToTheBrowser)
{
    const QString html =
        QStringLiteral("<img nm_exdata=\"{}\" src=\"../userdata\\attachment\\x.bmp\">");
    ASSERT_FALSE(listOf(html).empty());
    for (const NewAttachFile& shown : listOf(html))
        ASSERT_EQ(shown.isSrcFile, 1);
    board::putHtml(html);
    EXPECT_EQ(paste.DoCopyClipboardHtml(), E_NOTIMPL);
    EXPECT_EQ(board::fragment(), html);
}

TEST_F(DoCopyClipboardHtml, AFailureUsesTheKeyUpAndLeavesBooksAndClipboard)
{
    const QString html = deleted(QStringLiteral("b.txt")) + deleted(QStringLiteral("c.pdf"));
    board::putHtml(html);
    const auto sizes = note.m_attachSizeCache;
    atPull(2, [this] { QFile::remove(noteFolder().filePath(QStringLiteral("c.pdf"))); });
    EXPECT_EQ(paste.DoCopyClipboardHtml(), S_OK);
    EXPECT_EQ(board::fragment(), html);
    EXPECT_EQ(note.m_attachSizeCache, sizes);
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_FALSE(log.take().isEmpty()) << "the import tells why";
}

TEST_F(DoCopyClipboardHtml, AnotherNoteOpenedMeanwhileGetsNothing)
{
    for (const int pull : {1, 2}) {
        const QString html = QStringLiteral("text") + page.html;
        board::putHtml(html);
        page.order.clear();
        const QString old = note.m_curNoteGuid;
        const QStringList copiesBefore = copies();
        atPull(pull, [this] { note.m_curNoteGuid = CreateGuidString(); });
        EXPECT_EQ(paste.DoCopyClipboardHtml(), S_OK);
        EXPECT_EQ(board::fragment(), html);
        EXPECT_TRUE(boxes.texts.isEmpty());
        page.onCall = nullptr;
        note.m_curNoteGuid = old;
        EXPECT_EQ(copies(), copiesBefore);
    }
}

TEST_F(DoCopyClipboardHtml, TheSameNoteLoadedAnewMeanwhileGetsNothing)
{
    board::putHtml(QStringLiteral("text") + page.html);
    atPull(1, [this] { ++note.m_loads; });
    EXPECT_EQ(paste.DoCopyClipboardHtml(), S_OK);
    EXPECT_EQ(copies(), QStringList{QStringLiteral("a.txt")});
}

// --- Taking attachments over ---

TEST_F(DoCopyLogic, TheResultTellsWhatEachAttachmentBecame)
{
    const QString html = page.html + deleted(QStringLiteral("p.png"), "pixels");
    CopyLogicResult result;
    ASSERT_EQ(paste.DoCopyLogic(listOf(html), result), 1);
    ASSERT_EQ(result.attNewList.size(), 2u);
    EXPECT_EQ(
        result.attNewList[0].oldExData, noteattach::FormatOrigNameToJson(QStringLiteral("a.txt")));
    EXPECT_EQ(result.attNewList[0].newExData,
        noteattach::FormatOrigNameToJson(QStringLiteral("a(1).txt")));
    const QString stored = QStringLiteral("1cb251ec0d568de6a929b520c4aed8d1.txt");
    ASSERT_EQ(result.fileSizeList.size(), 3u);
    EXPECT_EQ(result.fileSizeList[0].fileName, stored);
    EXPECT_EQ(result.fileSizeList[0].secondName, QStringLiteral("a(1).txt"));
    EXPECT_EQ(result.fileSizeList[0].fileSize, 4u);
    const CopiedFileSize& card = result.fileSizeList[1];
    EXPECT_EQ(card.fileName, result.attNewList[0].newSrcName);
    EXPECT_EQ(card.secondName, card.fileName);
    EXPECT_EQ(qint64(card.fileSize), QFileInfo(GetAttachmentDir() + u'/' + card.fileName).size());
    // A picture is its own shown file.
    EXPECT_EQ(result.fileSizeList[2].fileName, result.attNewList[1].newSrcName);
    EXPECT_EQ(result.fileSizeList[2].secondName, QStringLiteral("p.png"));
    EXPECT_EQ(result.fileSizeList[2].fileSize, 6u);
    EXPECT_TRUE(result.thumbAttList.empty());
}

TEST_F(DoCopyLogic, AnAttachmentWithAnExtensionTooLongForADigestIsTakenOver)
{
    const QString name = QStringLiteral("b.") + QString(240, u'x');
    adder->AddDropFileToEditor({record(file(name, "long"))});
    ASSERT_TRUE(copies().contains(name));
    CopyLogicResult result;
    ASSERT_EQ(paste.DoCopyLogic(listOf(page.html), result), 1);
    ASSERT_EQ(result.attNewList.size(), 2u);
    const QString numbered = QStringLiteral("b(1).") + QString(240, u'x');
    EXPECT_EQ(result.attNewList[1].newExData, noteattach::FormatOrigNameToJson(numbered));
    EXPECT_EQ(readAll(noteFolder().filePath(numbered)), "long");
    EXPECT_TRUE(result.fileSizeList[2].fileName.endsWith(QStringLiteral(".unknow")));
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(DoCopyLogic, AMissingAnEmptyAndANamelessFileEndItWithoutAMessage)
{
    const QString good = deleted(QStringLiteral("good.txt"));
    const QString cases[] = {
        element(QStringLiteral("1.txt"), QStringLiteral("gone.txt")),
        deleted(QStringLiteral("empty.txt"), QByteArray()),
        element(QStringLiteral("1.txt"), QStringLiteral("../good.txt")),
    };
    const QStringList before = copies();
    for (const QString& bad : cases) {
        CopyLogicResult result;
        EXPECT_EQ(paste.DoCopyLogic(listOf(good + bad), result), 0) << qPrintable(bad);
        EXPECT_TRUE(result.attNewList.empty());
    }
    EXPECT_EQ(copies(), before);
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(DoCopyLogic, AFileOfTwoGigabytesEndsItWithoutAMessage)
{
    const QString huge = deleted(QStringLiteral("huge.bin"));
    QFile file(noteFolder().filePath(QStringLiteral("huge.bin")));
    ASSERT_TRUE(file.resize(qint64(0x80000000))); // Holes: nothing is written.
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(huge), result), 0);
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyLogic, AFolderInTheFilesPlaceEndsIt)
{
    ASSERT_TRUE(noteFolder().mkdir(QStringLiteral("folder.txt")));
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(
                  listOf(element(QStringLiteral("1.txt"), QStringLiteral("folder.txt"))), result),
        0);
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(DoCopyLogic, ANoteOfExactlyTheLimitPassesAndOneByteMoreIsTold)
{
    const QString more = deleted(QStringLiteral("b.doc"), "7 bytes");
    page.html.clear();
    noteWeighs(attachstore::attachLimit - 7);
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(more), result), 1);
    EXPECT_TRUE(boxes.texts.isEmpty());

    page.html.clear();
    noteWeighs(attachstore::attachLimit - 6);
    EXPECT_EQ(paste.DoCopyLogic(listOf(more), result), 0);
    EXPECT_EQ(boxes.texts, QStringList{limitText});
}

TEST_F(DoCopyLogic, TheSizesOfAllFilesCountTogether)
{
    const QString two =
        deleted(QStringLiteral("b.doc"), "1234") + deleted(QStringLiteral("c.doc"), "5678");
    page.html.clear();
    noteWeighs(attachstore::attachLimit - 7);
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(two), result), 0);
    EXPECT_EQ(boxes.texts, QStringList{limitText});
}

TEST_F(DoCopyLogic, AnUnknownTotalIsToldAndLogged)
{
    page.html += element(QStringLiteral("unknown.doc"), QStringLiteral("报告.doc"));
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(deleted(QStringLiteral("b.txt"))), result), 0);
    EXPECT_EQ(boxes.texts, QStringList{totalText});
    EXPECT_EQ(log.take(),
        QStringList({QStringLiteral("[ERROR] 查询报告.doc附件大小失败！"),
            QStringLiteral("[ERROR] DoCopyLogic获取笔记编辑器附件总大小失败！")}));
}

TEST_F(DoCopyLogic, WhatWasTakenOverBeforeAFailureStays)
{
    const QString two = page.html + deleted(QStringLiteral("c.pdf"));
    atPull(2, [this] { QFile::remove(noteFolder().filePath(QStringLiteral("c.pdf"))); });
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic(listOf(two), result), 0);
    EXPECT_EQ(copies(), QStringList({QStringLiteral("a(1).txt"), QStringLiteral("a.txt")}));
    EXPECT_EQ(result.attNewList.size(), 1u);
}

TEST_F(DoCopyLogic, WithoutAttachmentsNothingIsTakenOver)
{
    CopyLogicResult result;
    EXPECT_EQ(paste.DoCopyLogic({}, result), 1);
    EXPECT_TRUE(result.attNewList.empty());
    EXPECT_TRUE(result.fileSizeList.empty());
}
