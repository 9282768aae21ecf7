#include "notestore/HtmlFileUpgrade.h"

#include "notestore/NoteHtmlRW.h"
#include "support/FailingNew.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

const QString kOld = QStringLiteral("<P>a<br/><IMG CLASS='userdata/attachment/abc.png' x=1></P>");
const QString kNew = QStringLiteral(
    "<P>a<br/><IMG nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;YWJjLnBuZw==&quot;}\" "
    "CLASS='userdata/attachment/abc.png' x=1></P>");
const QString kUntouched = QStringLiteral("untouched");

struct Upgraded {
    int result;
    QString html;
};

Upgraded step(const QString& html)
{
    QString out = kUntouched;
    const int result = HtmlVer_1_To_2().DoUpgrade(html, out);
    return {result, out};
}

Upgraded upgrade(const QString& html, int from, int to)
{
    QString out = kUntouched;
    const int result = HtmlFileUpgradeMgr().DoUpgrade(html, from, to, out);
    return {result, out};
}

} // namespace

static_assert(std::has_virtual_destructor_v<IHtmlFileUpgrade>);

TEST(HtmlVer_1_To_2, ATextWithoutAnythingToChangeStaysByteForByte)
{
    for (const QString& html : {QString(), QStringLiteral("<p>text"),
             QStringLiteral("<html><head><title>x</title></head><body>a</body></html>"),
             QStringLiteral("<img class=\"photo\">"), QStringLiteral("<img>"),
             QStringLiteral("<img class=\"a/b.png\" nm_exdata=\"{}\">"),
             QStringLiteral("<img class='a\\b.png' nm_exdata=x><body>"),
             QStringLiteral("<frameset></frameset><img class='a/b'>")}) {
        const Upgraded upgraded = step(html);
        EXPECT_EQ(upgraded.result, 1) << html.toStdString();
        EXPECT_EQ(upgraded.html, html) << html.toStdString();
    }
}

TEST(HtmlVer_1_To_2, AnOldAttachmentGetsItsExDataFromItsClass)
{
    const Upgraded upgraded = step(kOld);
    EXPECT_EQ(upgraded.result, 1);
    EXPECT_EQ(upgraded.html, kNew);
}

TEST(HtmlVer_1_To_2, BackslashesAndMixedSeparatorsCountToo)
{
    for (const QString& path : {QStringLiteral("a\\abc.png"), QStringLiteral("a\\b/abc.png"),
             QStringLiteral("/a\\abc.png")}) {
        const QString out = step(QStringLiteral("<img class=\"%1\">").arg(path)).html;
        EXPECT_TRUE(out.contains(QStringLiteral("YWJjLnBuZw=="))) << path.toStdString();
        EXPECT_TRUE(out.contains(path)) << path.toStdString();
    }
}

TEST(HtmlVer_1_To_2, AnEmptyExDataCountsAsNone)
{
    const QString out = step(QStringLiteral("<img class='a/abc.png' nm_exdata=''>")).html;
    EXPECT_TRUE(out.contains(QStringLiteral("YWJjLnBuZw=="))) << out.toStdString();
}

TEST(HtmlVer_1_To_2, OnlyWhatNeedsItIsChanged)
{
    const QString keep =
        QStringLiteral("<img class=\"a/b.png\" nm_exdata=\"{}\"><img class=photo>");
    EXPECT_EQ(step(keep + kOld + keep).html, keep + kNew + keep);
}

TEST(HtmlVer_1_To_2, WhatLiesOutsideTheBodyIsLostWithAChange)
{
    EXPECT_EQ(step(QStringLiteral("<html><head><title>x</title></head><body>") + kOld
                  + QStringLiteral("</body></html>"))
                  .html,
        kNew);
}

TEST(HtmlVer_1_To_2, AFailureOnTheWayIsLoggedAndGivesZero)
{
    LoggedLines lines;
    lines.makeRoom();
    QString out = kUntouched;
    int result;
    {
        const FailingNew failing(0);
        result = HtmlVer_1_To_2().DoUpgrade(kOld, out);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(out, kUntouched);
    EXPECT_EQ(lines.take(), QStringList(QStringLiteral("[ERROR] HtmlVer_1_To_2::DoUpgrade失败！")));
}

TEST(HtmlFileUpgradeMgr, RunsTheOneStepFromVersionsZeroAndOne)
{
    for (const int from : {0, 1}) {
        const Upgraded upgraded = upgrade(kOld, from, 2);
        EXPECT_EQ(upgraded.result, 1);
        EXPECT_EQ(upgraded.html, kNew);
    }
}

TEST(HtmlFileUpgradeMgr, RunsTheStepsBeyondTheVersionAskedFor)
{
    const Upgraded upgraded = upgrade(kOld, 0, 1);
    EXPECT_EQ(upgraded.result, 1);
    EXPECT_EQ(upgraded.html, kNew);
}

TEST(HtmlFileUpgradeMgr, WithNothingToRunItFailsAndLeavesTheTextAlone)
{
    const int highest = std::numeric_limits<int>::max();
    for (const auto& [from, to] : std::vector<std::pair<int, int>>{
             {2, 2}, {2, 9}, {1, 1}, {1, 0}, {7, 9}, {highest, highest}}) {
        const Upgraded upgraded = upgrade(kOld, from, to);
        EXPECT_EQ(upgraded.result, 0) << from << ' ' << to;
        EXPECT_EQ(upgraded.html, kUntouched);
    }
}

TEST(HtmlFileUpgradeMgr, AVersionFarBelowZeroRunsTheSteps)
{
    EXPECT_EQ(upgrade(kOld, std::numeric_limits<int>::min(), 2).html, kNew);
}

TEST(HtmlFileUpgradeMgr, InputAndOutputMayBeTheSameString)
{
    QString html = kOld;
    EXPECT_EQ(HtmlFileUpgradeMgr().DoUpgrade(html, 1, 2, html), 1);
    EXPECT_EQ(html, kNew);
    html = kOld;
    EXPECT_EQ(HtmlVer_1_To_2().DoUpgrade(html, html), 1);
    EXPECT_EQ(html, kNew);
}

TEST(HtmlFileUpgradeMgr, AFailedStepLeavesTheTextAloneAndALaterSaveUpgradesIt)
{
    const TestStore store;
    QString html = kOld;
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_1;
    int upgraded;
    {
        HtmlFileUpgradeMgr chain;
        const FailingNew failing(0);
        upgraded = chain.DoUpgrade(html, 1, 2, html);
    }
    EXPECT_EQ(upgraded, 0);
    EXPECT_EQ(html, kOld);
    EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), 1);
    EXPECT_EQ(version, NOTE_HTML_VER_2);
    EXPECT_EQ(html, kNew);
}
