#include "highlight/Highlight.h"

#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/ScriptedPage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

QJsonObject argumentOf(const ScriptedPage& page, std::size_t call)
{
    return QJsonDocument::fromJson(page.calls.at(call).second.toUtf8()).object();
}

struct HighlightTest : ::testing::Test {
    ScriptedPage page;
    Highlight highlight{page};
    LogLines log;

    void paint(int hits, const QString& word = QStringLiteral("word"))
    {
        page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":%1}").arg(hits));
        ASSERT_EQ(highlight.HighlightText(word), 1);
        ASSERT_EQ(highlight.segments().size(), std::size_t(hits));
        page.calls.clear();
        page.order.clear();
    }
};

} // namespace

TEST_F(HighlightTest, AnEmptyKeywordWithNothingPaintedMakesNoPageCall)
{
    EXPECT_EQ(highlight.HighlightText(QString()), 1);
    EXPECT_TRUE(page.calls.empty());
}

TEST_F(HighlightTest, AnEmptyKeywordTakesTheHighlightAway)
{
    paint(3);
    EXPECT_EQ(highlight.HighlightText(QString()), 1);
    EXPECT_EQ(page.order, QStringList{QStringLiteral("unhighlight")});
    EXPECT_TRUE(highlight.segments().empty());
}

TEST_F(HighlightTest, AllHitsAreOneCall)
{
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":10000}"));
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("a \"word\"\n")), 1);
    ASSERT_EQ(page.order, QStringList{QStringLiteral("highlight")});
    EXPECT_EQ(argumentOf(page, 0)[u"keyword"].toString(), QStringLiteral("a \"word\"\n"));
    EXPECT_EQ(highlight.segments().size(), 10000u);
}

TEST_F(HighlightTest, AWordWithoutHitsEndsWithNoHighlight)
{
    paint(2);
    page.answer(S_OK, QStringLiteral("{\"result\":true}"));
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":0}"));
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("none")), 1);
    EXPECT_TRUE(highlight.segments().empty());
}

TEST_F(HighlightTest, TheOldHighlightGoesBeforeTheNewOneComes)
{
    paint(2);
    page.answer(S_OK, QStringLiteral("{\"result\":true}"));
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":1}"));
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("other")), 1);
    EXPECT_EQ(
        page.order, (QStringList{QStringLiteral("unhighlight"), QStringLiteral("highlight")}));
    EXPECT_EQ(highlight.segments().size(), 1u);
}

TEST_F(HighlightTest, CancellingTwiceTouchesThePageOnce)
{
    paint(2);
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_EQ(page.order, QStringList{QStringLiteral("unhighlight")});
}

TEST_F(HighlightTest, CancellingNamesEverySegment)
{
    paint(3);
    const HighlightSegment first = highlight.segments().front();
    highlight.CancleHighlight();
    EXPECT_EQ(
        argumentOf(page, 0)[u"segments"].toArray(), (QJsonArray{QJsonArray{first.painting, 0, 3}}));
}

TEST_F(HighlightTest, NoTwoSegmentsHaveTheSameHandle)
{
    paint(2);
    std::vector<HighlightSegment> all = highlight.segments();
    highlight.CancleHighlight();
    paint(2);
    Highlight other(page);
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":2}"));
    other.HighlightText(QStringLiteral("word"));
    all.insert(all.end(), highlight.segments().begin(), highlight.segments().end());
    all.insert(all.end(), other.segments().begin(), other.segments().end());
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(all[i] == all[j]);
}

TEST_F(HighlightTest, APageThatIsNotThereGivesZeroAndIsSilent)
{
    page.answer(PAGE_CALL_FAILED);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 0);
    EXPECT_TRUE(highlight.segments().empty());
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(HighlightTest, APageThatDiesUnderTheCallGivesZeroAndIsSilent)
{
    page.answer(PAGE_CALL_LOST);
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 0);
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(HighlightTest, APageThatRefusesOrAnswersRubbishShowsNoHitsAndIsSilent)
{
    for (const char* reply : {"", "[]", "rubbish", "{\"result\":false,\"errmsg\":\"no\"}",
             "{\"result\":true,\"count\":-5}", "{\"result\":true,\"count\":\"many\"}"}) {
        page.answer(S_OK, QString::fromLatin1(reply));
        EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 1) << reply;
        EXPECT_TRUE(highlight.segments().empty()) << reply;
    }
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(HighlightTest, APageThatClaimsBillionsOfHitsFillsNoMemory)
{
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":2000000000}"));
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("word")), 1);
    EXPECT_EQ(highlight.segments().size(), std::size_t(1) << 20);
}

TEST_F(HighlightTest, AFailedCancelKeepsEverySegmentAndIsSilent)
{
    paint(3);
    const std::vector<HighlightSegment> before = highlight.segments();
    page.answer(PAGE_CALL_FAILED);
    EXPECT_EQ(highlight.CancleHighlight(), 0);
    EXPECT_EQ(highlight.segments(), before);
    page.answer(S_OK, QStringLiteral("{\"result\":false,\"errmsg\":\"unknown\"}"));
    EXPECT_EQ(highlight.CancleHighlight(), 0);
    page.answer(S_OK, QStringLiteral("rubbish"));
    EXPECT_EQ(highlight.CancleHighlight(), 0);
    EXPECT_EQ(highlight.segments(), before);
    EXPECT_EQ(log.take(), QStringList());
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_TRUE(highlight.segments().empty());
}

TEST_F(HighlightTest, ANewHighlightPaintsAlthoughTheOldOneCouldNotBeTakenAway)
{
    paint(1);
    page.answer(S_OK, QStringLiteral("{\"result\":false}"));
    page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":2}"));
    EXPECT_EQ(highlight.HighlightText(QStringLiteral("other")), 1);
    EXPECT_EQ(highlight.segments().size(), 3u);
    page.calls.clear();
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_EQ(argumentOf(page, 0)[u"segments"].toArray().size(), 2);
}

TEST_F(HighlightTest, WhatIsPaintedWhileACancelWaitsIsKept)
{
    paint(2);
    bool inside = false;
    page.onCall = [&] {
        if (std::exchange(inside, true))
            return;
        page.answers.clear();
        page.answer(S_OK, QStringLiteral("{\"result\":true,\"count\":5}"));
        EXPECT_EQ(highlight.HighlightText(QStringLiteral("other")), 1);
    };
    EXPECT_EQ(highlight.CancleHighlight(), 1);
    EXPECT_EQ(highlight.segments().size(), 5u);
}
