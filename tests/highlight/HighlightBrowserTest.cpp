// The highlight on the real page in the control.

#include "highlight/Highlight.h"

#include "bridge/NotePage.h"
#include "kit/Print.h"
#include "kit/TestControl.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"

#include <QImage>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr QRgb background = 0xffffff11;
constexpr QRgb textColour = 0xff686868;

class HighlightOnPage : public ::testing::Test {
protected:
    Bench bench;
    BrowserNotePage page{bench.control};
    Highlight highlight{page};

    void SetUp() override { ASSERT_TRUE(bench.waitReady()); }

    void open(QString html, int readOnly = 0)
    {
        GetAttachmentDir();
        NewAttachFile record;
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
        ASSERT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), 1);
        bench.control->LoadEditor(QStringLiteral("guid"), {record.fileName}, {}, readOnly);
    }
    /// Takes the engine's ranges from the page, as if it had none.
    void forceOverlay()
    {
        bench.inNote(QStringLiteral(
            "Object.defineProperty(doc.defaultView, 'CSS', { value: undefined }) && 1"));
    }
    /// How many pixels of the control have this colour.
    int pixels(QRgb colour)
    {
        const QImage shot = bench.control->grab().toImage();
        int count = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = 0; x < shot.width(); ++x)
                count += shot.pixel(x, y) == colour;
        return count;
    }
    bool shows(QRgb colour, int atLeast)
    {
        return waitFor([&] { return pixels(colour) >= atLeast; });
    }
    bool showsNone(QRgb colour)
    {
        return waitFor([&] { return pixels(colour) == 0; });
    }
};

const QString large = QStringLiteral("<p style=\"font-size:48px\">a HHHH b</p><p>end</p>");

} // namespace

TEST_F(HighlightOnPage, PaintsInTheToldColoursAndTakesThemAway)
{
    open(large);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("HHHH")), 1);
    EXPECT_EQ(highlight.segments().size(), 1u);
    EXPECT_TRUE(shows(background, 500));
    EXPECT_TRUE(shows(textColour, 100));
    EXPECT_TRUE(bench.inNote(QStringLiteral("doc.defaultView.CSS.highlights.size")).toInt() == 1);
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_TRUE(showsNone(background));
}

TEST_F(HighlightOnPage, PaintsTheSameWithAnEngineThatHasNoRanges)
{
    open(large);
    forceOverlay();
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("HHHH")), 1);
    EXPECT_TRUE(shows(background, 500));
    EXPECT_TRUE(shows(textColour, 100));
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_TRUE(showsNone(background));
}

TEST_F(HighlightOnPage, AnEmptyKeywordTakesTheHighlightAway)
{
    open(large);
    highlight.HighlightText(QStringLiteral("HHHH"));
    ASSERT_TRUE(shows(background, 500));
    EXPECT_EQ(highlight.HighlightText(QString()), 1);
    EXPECT_TRUE(highlight.segments().empty());
    EXPECT_TRUE(showsNone(background));
}

TEST_F(HighlightOnPage, AWordThatIsNowhereGivesOneAndNoSegments)
{
    open(large);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("hhhh")), 1);
    EXPECT_TRUE(highlight.segments().empty());
}

TEST_F(HighlightOnPage, OverlappingHitsAreTwoSegments)
{
    open(QStringLiteral("<p>aaa</p>"));
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("aa")), 1);
    EXPECT_EQ(highlight.segments().size(), 2u);
}

TEST_F(HighlightOnPage, TwoHighlightsRemoveEachItsOwn)
{
    open(QStringLiteral("<p>one two</p>"));
    Highlight other(page);
    highlight.HighlightText(QStringLiteral("one"));
    other.HighlightText(QStringLiteral("two"));
    const auto painted = [&] {
        return bench
            .inNote(QStringLiteral("[...doc.defaultView.CSS.highlights.get('search-hit')]"
                                   ".map(hit => hit.startOffset).sort().join()"))
            .toString();
    };
    EXPECT_EQ(painted(), QStringLiteral("0,4"));
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_EQ(painted(), QStringLiteral("4"));
    EXPECT_EQ(other.CancleHighlight(), 1);
}

TEST_F(HighlightOnPage, TheNoteDoesNotCountAsChanged)
{
    const QString html = QStringLiteral("<P CLASS=a>odd  <b>word</P><!-- c -->word");
    open(html);
    highlight.HighlightText(QStringLiteral("word"));
    ASSERT_EQ(highlight.segments().size(), 2u);
    bench.control->SaveEditor();
    highlight.CancleHighlight();
    bench.control->SaveEditor();
    EXPECT_TRUE(bench.host.saves.empty());
    EXPECT_EQ(bench.control->lastHtml(), html);
}

TEST_F(HighlightOnPage, SegmentsOfTheLastNoteStayUntilTheNextCancel)
{
    open(large);
    highlight.HighlightText(QStringLiteral("HHHH"));
    ASSERT_TRUE(shows(background, 500));
    open(large);
    EXPECT_EQ(highlight.segments().size(), 1u);
    EXPECT_TRUE(showsNone(background));
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_TRUE(highlight.segments().empty());
}

TEST_F(HighlightOnPage, AReadOnlyNoteIsPaintedToo)
{
    open(large, 1);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("HHHH")), 1);
    EXPECT_TRUE(shows(background, 500));
}

TEST_F(HighlightOnPage, TheSameColoursStandOnDarkPaper)
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(30, 30, 30));
    bench.control->setPalette(dark);
    open(large);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("HHHH")), 1);
    EXPECT_TRUE(shows(background, 500));
    EXPECT_TRUE(shows(textColour, 100));
    EXPECT_TRUE(shows(qRgb(0x1c, 0x1d, 0x20), 10000));
}

TEST_F(HighlightOnPage, ATenMegabyteNoteThatIsStillLoadingIsSearchedWhole)
{
    QString html;
    const QString paragraph =
        QStringLiteral("<p>%1 word</p>").arg(QStringLiteral("some text ").repeated(99));
    const int paragraphs = 10 * 1024 * 1024 / int(paragraph.size());
    html = paragraph.repeated(paragraphs);
    open(html);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 1);
    EXPECT_EQ(highlight.segments().size(), std::size_t(paragraphs));
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    bench.control->SaveEditor();
    EXPECT_TRUE(bench.host.saves.empty());
}

TEST_F(HighlightOnPage, APageThatCameBackCanBeSearchedAndKnowsNoOldSegments)
{
    open(large);
    highlight.HighlightText(QStringLiteral("HHHH"));
    const qint64 pid = bench.page()->renderProcessPid();
    ASSERT_GT(pid, 0);
    ASSERT_EQ(::kill(pid_t(pid), SIGKILL), 0);
    ASSERT_TRUE(waitFor([&] { return bench.page()->renderProcessPid() != pid; }));
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("HHHH")), 1);
    EXPECT_EQ(highlight.segments().size(), 1u);
    EXPECT_TRUE(shows(background, 500));
}

TEST(HighlightWithoutPage, GivesZeroBeforeThePageIsReady)
{
    Bench bench;
    BrowserNotePage page(bench.control);
    Highlight highlight(page);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 0);
    EXPECT_EQ(highlight.HighlightText(QString()), 1);
    EXPECT_EQ(highlight.CancleHighlight(), 1);
}

TEST(HighlightWithoutPage, GivesZeroWithoutABrowser)
{
    BrowserNotePage page(nullptr);
    Highlight highlight(page);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 0);
    EXPECT_EQ(highlight.CancleHighlight(), 1);
}
