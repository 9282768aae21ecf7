#include "clipdrag/PasteFixture.h"

struct DoCtrlV : Pasting { };
struct DoCopyClipboardFile : Pasting { };
struct DoCopyClipboardHtml : Pasting { };

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
