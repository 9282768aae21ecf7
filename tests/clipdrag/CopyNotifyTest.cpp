#include "clipdrag/CopyNotify.h"

#include "clipdrag/Board.h"
#include "kit/AddingFixture.h"
#include "kit/Wait.h"

#include <QCoreApplication>

#include <set>

namespace {

/// A note with two attachments, and a copy of something in it.
struct Copying : Adding {
    std::unique_ptr<CopyNotify> notify = std::make_unique<CopyNotify>(note);
    QString one = attachment(QStringLiteral("一.txt"));
    QString two = attachment(QStringLiteral("two.png"));

    void SetUp() override { QGuiApplication::clipboard()->clear(); }

    /// Adds a working copy and gives its element.
    QString attachment(const QString& name)
    {
        QDir().mkpath(noteFolder().path());
        QFile out(path(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("content");
        return element(QStringLiteral("0.") + name.section(u'.', -1), name);
    }
    QString path(const QString& name) const { return noteFolder().filePath(name); }
    QStringList both() const
    {
        return {path(QStringLiteral("一.txt")), path(QStringLiteral("two.png"))};
    }
    /// The delays of the timers that fire until the clipboard has files.
    std::set<int> delaysUntilFiles()
    {
        struct : QObject {
            std::set<int> seen;
            bool eventFilter(QObject* watched, QEvent* event) override
            {
                const auto* timer = qobject_cast<QTimer*>(watched);
                if (timer && event->type() == QEvent::Timer)
                    seen.insert(timer->interval());
                return false;
            }
        } delays;
        qApp->installEventFilter(&delays);
        EXPECT_TRUE(waitForFiles());
        return delays.seen;
    }
    bool waitForFiles()
    {
        return waitFor([] { return !board::paths().isEmpty(); });
    }
};

struct AfterACopy : Copying {
    /// What stands on the clipboard behind a look at that HTML: the paths, or the HTML.
    QStringList lookAt(const QString& html)
    {
        board::putHtml(html);
        clipdrag::CopyAttachmentsAsFiles(note.m_curNoteGuid);
        const QStringList paths = board::paths();
        return paths.isEmpty() ? QStringList{board::fragment()} : paths;
    }
};

} // namespace

// --- What becomes of it ---

TEST_F(AfterACopy, AttachmentsAloneBecomeTheirFiles)
{
    EXPECT_EQ(lookAt(one + two), both());
    EXPECT_TRUE(board::held()->hasFormat(clipdrag::kGnomeCopiedFiles));
    EXPECT_EQ(board::held()->data(clipdrag::kDropEffect), QByteArray("\1\0\0\0", 4));
    EXPECT_FALSE(board::held()->hasFormat(QStringLiteral("text/html"))) << "the browser's is gone";
    EXPECT_FALSE(board::held()->hasFormat(clipdrag::kHtmlFormat));
}

TEST_F(AfterACopy, WhiteSpaceAndMarkupAreNoText)
{
    EXPECT_EQ(lookAt(QStringLiteral("<p>&nbsp;%1</p>\n<p>\u200b%2<br></p>").arg(one, two)), both());
}

TEST_F(AfterACopy, TextStaysWhatTheBrowserWrote)
{
    const QString html = QStringLiteral("<p>text</p>");
    EXPECT_EQ(lookAt(html), QStringList{html});
}

TEST_F(AfterACopy, TextWithAttachmentsStaysWhatTheBrowserWrote)
{
    const QString html = one + QStringLiteral("<p>text</p>") + two;
    EXPECT_EQ(lookAt(html), QStringList{html});
    EXPECT_FALSE(board::held()->hasFormat(clipdrag::kHtmlFormat));
}

TEST_F(AfterACopy, APlainPictureStaysWhatTheBrowserWrote)
{
    const QString html = QStringLiteral("<img src=\"data:image/png;base64,AAAA\">");
    EXPECT_EQ(lookAt(html), QStringList{html});
}

TEST_F(AfterACopy, OneMissingFileCancelsAll)
{
    QFile::remove(path(QStringLiteral("two.png")));
    EXPECT_EQ(lookAt(one + two), QStringList{one + two});
}

TEST_F(AfterACopy, AttachmentsOfAnotherNoteStayWhatTheBrowserWrote)
{
    note.m_curNoteGuid = CreateGuidString();
    EXPECT_EQ(lookAt(one), QStringList{one});
}

TEST_F(AfterACopy, AHostileNameIsAMissingFile)
{
    const QString html = element(QStringLiteral("0.txt"), QStringLiteral("../一.txt"));
    EXPECT_EQ(lookAt(html), QStringList{html});
}

TEST_F(AfterACopy, AClipboardWithoutHtmlStaysAsItIs)
{
    auto text = std::make_unique<QMimeData>();
    text->setText(QStringLiteral("plain"));
    board::put(std::move(text));
    clipdrag::CopyAttachmentsAsFiles(note.m_curNoteGuid);
    EXPECT_EQ(board::held()->text(), QStringLiteral("plain"));
    EXPECT_TRUE(board::paths().isEmpty());
}

TEST_F(AfterACopy, TheClipboardsHtmlIsReadAsThatOfTheNote)
{
    board::putHtml(QStringLiteral("<p>text</p>") + one);
    std::vector<NewAttachFile> list;
    QString plainText;
    clipdrag::AnalyHtmlDataFromClipboard(note.m_curNoteGuid, list, plainText);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].filePath, path(QStringLiteral("一.txt")));
    EXPECT_EQ(plainText.trimmed(), QStringLiteral("text"));

    QGuiApplication::clipboard()->clear();
    clipdrag::AnalyHtmlDataFromClipboard(note.m_curNoteGuid, list, plainText);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(plainText.isEmpty());
}

// --- When ---

TEST_F(Copying, TheLookIsTakenWhenTheClipboardChanges)
{
    notify->expectCopy();
    notify->HandleCopyNotify();
    board::putHtml(one + two);
    EXPECT_TRUE(board::paths().isEmpty()) << "not inside the change";
    ASSERT_TRUE(waitForFiles());
    EXPECT_EQ(board::paths(), both());
}

TEST_F(Copying, AChangeAheadOfTheMessageCounts)
{
    notify->expectCopy();
    board::putHtml(one);
    QCoreApplication::processEvents();
    EXPECT_TRUE(board::paths().isEmpty()) << "the message has not come";
    notify->HandleCopyNotify();
    ASSERT_TRUE(waitForFiles());
}

TEST_F(Copying, ThePagesWordIsAsGoodAsAChange)
{
    board::putHtml(one);
    notify->expectCopy();
    notify->HandleCopyNotify();
    EXPECT_TRUE(board::paths().isEmpty());
    notify->pageCopied();
    ASSERT_TRUE(waitForFiles());
}

TEST_F(Copying, NoLookIsTakenByAZeroTimerWhichMayFireInsideATaskOfTheEngine)
{
    notify->expectCopy();
    notify->HandleCopyNotify();
    board::putHtml(one);
    std::set<int> delays = delaysUntilFiles();
    EXPECT_FALSE(delays.empty() || delays.contains(0));

    notify = std::make_unique<CopyNotify>(note);
    notify->expectCopy();
    board::putHtml(two);
    notify->HandleCopyNotify();
    delays = delaysUntilFiles();
    EXPECT_FALSE(delays.empty() || delays.contains(0));
}

TEST_F(Copying, WithoutAnyWordTheOldContentIsLookedAt)
{
    // As when nothing was selected.
    board::putHtml(one);
    notify->expectCopy();
    notify->HandleCopyNotify();
    ASSERT_TRUE(waitForFiles());
    EXPECT_EQ(board::paths(), QStringList{both()[0]});
}

TEST_F(Copying, AMessageThatNoKeyAnnouncedIsActedOn)
{
    notify->HandleCopyNotify();
    board::putHtml(one);
    ASSERT_TRUE(waitForFiles());
}

TEST_F(Copying, ASecondCopyOrderedBeforeTheFirstHasComeIsLookedAtToo)
{
    for (int i = 0; i < 2; ++i) {
        notify->expectCopy();
        notify->HandleCopyNotify();
    }
    board::putHtml(one);
    ASSERT_TRUE(waitForFiles());
    board::putHtml(two);
    EXPECT_TRUE(waitFor([&] { return board::paths() == QStringList{both()[1]}; }));
}

TEST_F(Copying, ANoteOpenedMeanwhileDoesNotChangeWhoseAttachmentsTheyAre)
{
    const QStringList expected = both();
    notify->HandleCopyNotify();
    note.m_curNoteGuid = CreateGuidString();
    board::putHtml(one + two);
    ASSERT_TRUE(waitForFiles());
    EXPECT_EQ(board::paths(), expected);
}

TEST_F(Copying, ItsEndWhileItWaitsLeavesTheClipboardAlone)
{
    notify->expectCopy();
    notify->HandleCopyNotify();
    notify.reset();
    board::putHtml(one);
    QCoreApplication::processEvents();
    EXPECT_EQ(board::fragment(), one);
}
