// Copy, cut and paste with real keys in the page that users see, over the clipboard of the process.

#include "clipdrag/Board.h"
#include "kit/Answers.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "attachstore/FileRecord.h"
#include "support/Paths.h"

#include <QBuffer>
#include <QDir>
#include <QShortcut>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class CopyPaste : public ::testing::Test {
protected:
    Bench bench;
    QTemporaryDir dir;
    QString guid;
    LogLines log;

    void SetUp() override
    {
        QGuiApplication::clipboard()->clear();
        ASSERT_TRUE(bench.waitReady());
        newNote();
    }

    TestControl& control() { return *bench.control; }
    NmWebNoteHandler& handler() { return control().Handler(); }

    void newNote()
    {
        control().NewEditor(guid, 0);
        ASSERT_TRUE(waitFor([&] { return bench.inNote(QStringLiteral("!!doc.body")).toBool(); }));
        settle();
        focus();
    }
    /// Until the posted clearing of the page's cache has been handled.
    void settle()
    {
        bool done = false;
        QTimer::singleShot(0, &control(), [&] { done = true; });
        waitFor([&] { return done; });
    }
    void setNote(const QString& html)
    {
        handler().SetEditorHtml(html);
        ASSERT_TRUE(waitFor([&] { return !noteText().isEmpty(); }));
        focus();
    }
    QString file(const QString& name, const QByteArray& content = "content")
    {
        QFile made(dir.filePath(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(content);
        return made.fileName();
    }
    void attach(const QStringList& names)
    {
        std::vector<DropFileInfo> list;
        for (const QString& name : names)
            list.push_back(*attachstore::RecordOfPath(file(name)));
        handler().AddDropFileToEditor(list);
    }
    /// Puts the caret to the end of the note.
    void focus()
    {
        control().activateWindow();
        bench.input()->setFocus();
        bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), "
                                    "doc.getSelection().selectAllChildren(doc.body), "
                                    "doc.getSelection().collapseToEnd(), 1)"));
    }
    void select(const QString& selector = QStringLiteral("body"))
    {
        focus();
        bench.inNote(QStringLiteral("(doc.getSelection().selectAllChildren("
                                    "doc.querySelector('%1')), 1)")
                         .arg(selector));
    }
    void press(int key) { QTest::keyClick(bench.input(), Qt::Key(key), Qt::ControlModifier); }

    QString noteText()
    {
        return bench.inNote(QStringLiteral("doc.body.textContent")).toString().trimmed();
    }
    int count(const QString& selector)
    {
        return bench.inNote(QStringLiteral("doc.querySelectorAll('%1').length").arg(selector))
            .toInt();
    }
    QString workingCopy(const QString& name)
    {
        return GetAttachFilePath(guid, QStringLiteral("x"), name);
    }
    static QString clipboardText() { return board::held() ? board::held()->text() : QString(); }
    bool waitForFiles()
    {
        return waitFor([] { return board::held() && !board::paths().isEmpty(); });
    }
};

const QString aTxt = QStringLiteral("a.txt");
const QString bPdf = QStringLiteral("b.pdf");

} // namespace

// --- Copy ---

TEST_F(CopyPaste, TwoCopiedAttachmentsBecomeFilesOnTheClipboard)
{
    attach({aTxt, bPdf});
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitForFiles());
    EXPECT_EQ(board::paths(), QStringList({workingCopy(aTxt), workingCopy(bPdf)}));
    EXPECT_TRUE(board::held()->hasFormat(clipdrag::kGnomeCopiedFiles));
    EXPECT_FALSE(board::held()->hasFormat(QStringLiteral("text/html")));
}

TEST_F(CopyPaste, CopiedTextIsWhatTheBrowserWrote)
{
    setNote(QStringLiteral("<p>some words</p>"));
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitFor([] { return clipboardText().contains(QStringLiteral("some words")); }));
    EXPECT_TRUE(board::held()->hasFormat(QStringLiteral("text/html")));
}

TEST_F(CopyPaste, CopiedTextWithAnAttachmentIsWhatTheBrowserWrote)
{
    setNote(QStringLiteral("<p>some words</p>"));
    attach({aTxt});
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitFor([] { return clipboardText().contains(QStringLiteral("some words")); }));
    EXPECT_TRUE(board::fragment().contains(QStringLiteral("nm_exdata")));
    EXPECT_TRUE(board::paths().isEmpty());
}

TEST_F(CopyPaste, AReadOnlyNoteIsCopiedFromLikeAnyOther)
{
    attach({aTxt});
    control().SetReadOnly(1);
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitForFiles());
    EXPECT_EQ(board::paths(), QStringList{workingCopy(aTxt)});
}

TEST_F(CopyPaste, ACopyOfNothingLooksAtTheOldContent)
{
    attach({aTxt});
    QString html, text;
    handler().GetEditorContent(html, text);
    board::putHtml(html);
    focus();
    press(Qt::Key_C);
    ASSERT_TRUE(waitForFiles());
    EXPECT_EQ(board::paths(), QStringList{workingCopy(aTxt)});
}

// --- Paste ---

TEST_F(CopyPaste, PastedFilesStandInTheNote)
{
    board::put(board::files({file(aTxt), file(bPdf)}));
    focus();
    press(Qt::Key_V);
    EXPECT_EQ(bench.attachmentNames(), QStringList({aTxt, bPdf})) << "before the key has returned";
}

TEST_F(CopyPaste, APastedBitmapStandsInTheNoteAndTheHtmlBesideItDoesNot)
{
    auto data = board::html(QStringLiteral("<p>beside it</p>"));
    data->setImageData(board::picture());
    board::put(std::move(data));
    focus();
    press(Qt::Key_V);
    ASSERT_EQ(bench.attachmentNames().size(), 1);
    EXPECT_TRUE(waitFor(
        [&] { return bench.inNote(QStringLiteral("doc.images[0].naturalWidth")).toInt() == 20; }));
    EXPECT_EQ(noteText(), QString());
}

TEST_F(CopyPaste, ForeignHtmlIsPastedByTheBrowser)
{
    board::putHtml(QStringLiteral("<p>from <b>elsewhere</b></p>"));
    focus();
    press(Qt::Key_V);
    EXPECT_TRUE(waitFor([&] { return noteText().contains(QStringLiteral("from elsewhere")); }));
    EXPECT_EQ(count(QStringLiteral("b")), 1);
}

TEST_F(CopyPaste, APictureInsideForeignHtmlBecomesAnAttachmentOfTheNote)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(board::picture().save(&buffer, "PNG"));
    board::putHtml(QStringLiteral("<p>before <img src=\"data:image/png;base64,%1\"> behind</p>")
                       .arg(QString::fromLatin1(png.toBase64())));
    focus();
    press(Qt::Key_V);
    ASSERT_TRUE(waitFor([&] { return noteText() == u"before  behind"; })) << qPrintable(noteText());
    EXPECT_TRUE(waitFor(
        [&] { return bench.inNote(QStringLiteral("doc.images[0].naturalWidth")).toInt() == 20; }));
    ASSERT_EQ(bench.attachmentNames().size(), 1);

    control().OnSave();
    ASSERT_FALSE(bench.host.saves.empty());
    const std::vector<NewAttachFile>& files = bench.host.saves.back().files;
    ASSERT_EQ(files.size(), 3U) << "the note, the attachment and what shows it";
    for (int i : {1, 2}) {
        QFile stored(files[i].filePath);
        ASSERT_TRUE(stored.open(QIODevice::ReadOnly)) << qPrintable(files[i].filePath);
        EXPECT_EQ(stored.readAll(), png);
    }
}

TEST_F(CopyPaste, AReadOnlyNoteTakesNothing)
{
    setNote(QStringLiteral("<p>as it was</p>"));
    control().SetReadOnly(1);
    board::put(board::files({file(aTxt)}));
    press(Qt::Key_V);
    select();
    press(Qt::Key_D);
    EXPECT_TRUE(bench.attachmentNames().isEmpty());
    EXPECT_EQ(noteText(), QStringLiteral("as it was"));
    EXPECT_EQ(board::paths().size(), 1) << "nothing was cut";
}

TEST_F(CopyPaste, OneAttachmentCopiedIsPastedAsAFileInAnyNote)
{
    attach({aTxt});
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitForFiles());
    focus();
    press(Qt::Key_V);
    EXPECT_EQ(bench.attachmentNames(), QStringList({aTxt, QStringLiteral("a(1).txt")}));
    newNote();
    press(Qt::Key_V);
    EXPECT_EQ(bench.attachmentNames(), QStringList{aTxt});
    EXPECT_TRUE(QFile::exists(workingCopy(aTxt)));
}

TEST_F(CopyPaste, TextWithAnAttachmentPastedInTheSameNoteStandsThereTwice)
{
    setNote(QStringLiteral("<p>words</p>"));
    attach({aTxt});
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitFor([] { return clipboardText().contains(QStringLiteral("words")); }));
    focus();
    press(Qt::Key_V);
    ASSERT_TRUE(waitFor([&] { return bench.attachmentNames().size() == 2; }));
    // The element keeps the old name, the copy has the new one.
    EXPECT_EQ(bench.attachmentNames(), QStringList({aTxt, aTxt}));
    EXPECT_TRUE(QFile::exists(workingCopy(QStringLiteral("a(1).txt"))));
    EXPECT_EQ(noteText().count(QStringLiteral("words")), 2);
}

TEST_F(CopyPaste, TextWithAnAttachmentPastedInAnotherNoteGivesNothing)
{
    setNote(QStringLiteral("<p>words</p>"));
    attach({aTxt});
    select();
    press(Qt::Key_C);
    ASSERT_TRUE(waitFor([] { return clipboardText().contains(QStringLiteral("words")); }));
    newNote();
    const Answers answers;
    press(Qt::Key_V);
    // A key behind it shows that the paste is over.
    QTest::keyClicks(bench.input(), QStringLiteral("x"));
    ASSERT_TRUE(waitFor([&] { return noteText().contains(u'x'); })) << qPrintable(noteText());
    EXPECT_EQ(noteText(), QStringLiteral("x"));
    EXPECT_TRUE(bench.attachmentNames().isEmpty());
    EXPECT_TRUE(answers.texts.isEmpty());
}

TEST_F(CopyPaste, APasteOverTheLimitIsTold)
{
    const QByteArray half(6 * 1024 * 1024, 'x');
    board::put(board::files({file(QStringLiteral("big.doc"), half)}));
    focus();
    press(Qt::Key_V);
    ASSERT_EQ(bench.attachmentNames(), QStringList{QStringLiteral("big.doc")});
    QString html, text;
    handler().GetEditorContent(html, text);
    board::putHtml(QStringLiteral("words") + html);
    const Answers answers;
    press(Qt::Key_V);
    EXPECT_EQ(answers.texts, QStringList{QStringLiteral("最大支持上传10M附件！")});
    EXPECT_EQ(bench.attachmentNames(), QStringList{QStringLiteral("big.doc")})
        << qPrintable(noteText());
}

// --- Cut and the other keys ---

TEST_F(CopyPaste, ControlDCutsTheSelection)
{
    setNote(QStringLiteral("<p>keep</p><p id=\"x\">cut me</p>"));
    select(QStringLiteral("#x"));
    press(Qt::Key_D);
    EXPECT_TRUE(waitFor([&] { return noteText() == u"keep"; })) << qPrintable(noteText());
    EXPECT_TRUE(waitFor([] { return clipboardText() == u"cut me"; }));
}

TEST_F(CopyPaste, ControlDTakesTheFocusToTheNote)
{
    setNote(QStringLiteral("<p>keep</p><p id=\"x\">cut me</p>"));
    select(QStringLiteral("#x"));
    QWidget other(&bench.window);
    other.show();
    other.setFocusPolicy(Qt::StrongFocus);
    other.setFocus();
    ASSERT_TRUE(other.hasFocus());
    EXPECT_EQ(handler().DoCtrlD(), S_OK);
    EXPECT_FALSE(other.hasFocus());
    EXPECT_TRUE(waitFor([&] { return noteText() == u"keep"; })) << qPrintable(noteText());
}

TEST_F(CopyPaste, AKeyThatWasUsedUpLeavesNothingToTheNextOne)
{
    setNote(QStringLiteral("<p>keep</p><p id=\"x\">cut me</p>"));
    board::put(board::files({file(aTxt)}));
    press(Qt::Key_V);
    ASSERT_EQ(bench.attachmentNames(), QStringList{aTxt});
    board::putHtml(QStringLiteral("<p>not asked for</p>"));
    QTest::keyClicks(bench.input(), QStringLiteral("typed"));
    ASSERT_TRUE(waitFor([&] { return noteText().contains(QStringLiteral("typed")); }))
        << qPrintable(noteText());
    EXPECT_FALSE(noteText().contains(QStringLiteral("not asked for")));
    select(QStringLiteral("#x"));
    press(Qt::Key_D);
    ASSERT_TRUE(waitFor([&] { return !noteText().contains(QStringLiteral("cut me")); }));
    QTest::keyClicks(bench.input(), QStringLiteral("more"));
    EXPECT_TRUE(waitFor([&] { return noteText().contains(QStringLiteral("more")); }))
        << qPrintable(noteText());
    EXPECT_TRUE(noteText().contains(QStringLiteral("keep")));
}

TEST_F(CopyPaste, KeysThatAreUsedUpDoNotReachThePage)
{
    focus();
    bench.js(QStringLiteral(
        "window.seen = []; document.querySelector('iframe.ke-edit-iframe').contentDocument"
        ".addEventListener('keydown', (e) => seen.push(e.key), true); 1"));
    for (const int key : {Qt::Key_O, Qt::Key_P, Qt::Key_N})
        press(key);
    QTest::keyClick(bench.input(), Qt::Key_F5);
    press(Qt::Key_F);
    ASSERT_TRUE(waitFor([&] { return bench.js(QStringLiteral("seen.includes('f')")).toBool(); }));
    const QStringList seen = bench.js(QStringLiteral("seen")).toStringList();
    for (const char* key : {"o", "p", "n", "F5"})
        EXPECT_FALSE(seen.contains(QString::fromLatin1(key))) << key;
}

TEST_F(CopyPaste, TheHostsOwnShortcutsStillWork)
{
    int created = 0, found = 0;
    QShortcut onNew(QKeySequence(QStringLiteral("Ctrl+N")), &bench.window);
    QShortcut onFind(QKeySequence(QStringLiteral("Ctrl+F")), &bench.window);
    QObject::connect(&onNew, &QShortcut::activated, [&] { ++created; });
    QObject::connect(&onFind, &QShortcut::activated, [&] { ++found; });
    focus();
    ASSERT_TRUE(waitFor([&] { return bench.input()->hasFocus(); }));
    press(Qt::Key_N);
    press(Qt::Key_F);
    EXPECT_TRUE(waitFor([&] { return created == 1 && found == 1; })) << created << ' ' << found;
}
