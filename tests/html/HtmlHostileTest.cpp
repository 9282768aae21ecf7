// Sizes and depths that a reader in quadratic time, or one that recurses, does not come back from:
// each test ends in well under a second per 10 MB, or the run ends it.
#include "html/HtmlDocument.h"

#include <gtest/gtest.h>

namespace {

constexpr QLatin1StringView kSrc("src");

QString repeated(const char* text, qsizetype times)
{
    return QString::fromLatin1(text).repeated(times);
}

// Lists, reads, sets, removes, writes and reads again.
void exercise(const QString& html, qsizetype elements)
{
    HtmlDocument document(html);
    ASSERT_EQ(document.elementCount(), elements);
    document.bodyText();
    if (elements > 0) {
        document.setAttribute(0, kSrc, QStringLiteral("new"));
        EXPECT_EQ(HtmlDocument(document.bodyInnerHtml()).attribute(0, kSrc), QStringLiteral("new"));
        for (qsizetype i = 0; i < elements; ++i)
            document.remove(i);
    }
    EXPECT_EQ(HtmlDocument(document.bodyInnerHtml()).elementCount(), 0);
}

TEST(HtmlHostile, HundredThousandNestedElements)
{
    for (const char* tag : {"div", "b", "span", "table><tr><td", "ul><li", "nosuch", "template",
             "select", "svg", "svg><desc", "math><mi", "a", "form", "p", "button", "dd"}) {
        const QString open = u'<' + QString::fromLatin1(tag) + u'>';
        exercise(open.repeated(100'000), 0);
    }
    exercise(
        repeated("<div>", 100'000) + QStringLiteral("<img src=a>") + repeated("</div>", 100'000),
        1);
    exercise(repeated("<svg><desc>", 50'000) + QStringLiteral("<img src=a>")
            + repeated("</desc></svg>", 50'000),
        1);
}

// Each end tag or start tag would walk the whole stack in a reader that looks for its element
// there.
TEST(HtmlHostile, ManySearchesOfADeepStack)
{
    for (const char* search : {"</i>", "</x>", "</p>", "</li>", "</form>", "</h1>", "</table>",
             "<li></li>", "<dd></dd>", "<a></a>", "</svg>", "</desc>", "<td>", "</b>",
             "</template>", "</select>", "<rt></rt>"}) {
        for (const char* deep :
            {"<div>", "<b>", "<g>", "<svg>", "<svg><desc><b>", "<table><td><b>", "<math><mi>"})
            exercise(
                QStringLiteral("<svg></svg>") + repeated(deep, 30'000) + repeated(search, 30'000),
                0);
    }
}

TEST(HtmlHostile, MillionAttributesOnOneElement)
{
    exercise(QStringLiteral("<img ") + repeated("a=b ", 1'000'000) + QStringLiteral(" src=x>"), 1);
    QString distinct = QStringLiteral("<img ");
    for (int i = 0; i < 1'000'000; ++i)
        distinct += u'a' + QString::number(i) + u' ';
    exercise(distinct + u'>', 1);
}

TEST(HtmlHostile, MillionUnclosedTags)
{
    exercise(repeated("<a", 1'000'000), 0);
    exercise(repeated("<a href=\"", 1'000'000), 0);
    exercise(repeated("<i>", 1'000'000), 0);
    exercise(repeated("<svg><i", 1'000'000), 0);
    exercise(repeated("<!--", 1'000'000), 0);
    exercise(repeated("<!-", 1'000'000), 0);
    exercise(repeated("<![CDATA[", 1'000'000), 0);
    exercise(repeated("<svg><![CDATA[", 500'000), 0);
    exercise(repeated("<title>", 1'000'000), 0);
    exercise(repeated("<script><!--<script>", 500'000), 0);
    exercise(repeated("<style></style", 500'000), 0);
    exercise(repeated("<", 1'000'000), 0);
    exercise(repeated("</", 1'000'000), 0);
    exercise(repeated("&", 1'000'000), 0);
    exercise(QStringLiteral("<pre>&#") + repeated("1", 1'000'000), 0);
}

TEST(HtmlHostile, MillionElements)
{
    exercise(repeated("<img src=a>", 1'000'000), 1'000'000);
    exercise(repeated("a&b<img src=a>", 300'000), 300'000);
}

TEST(HtmlHostile, HundredMegabytesOfText)
{
    exercise(repeated("0123456789 ", 9'000'000) + QStringLiteral("<img src=a>"), 1);
    exercise(
        QStringLiteral("<img src='data:") + repeated("A", 50'000'000) + QStringLiteral("'>"), 1);
}

TEST(HtmlHostile, EveryTruncationIsRead)
{
    const QString html = QStringLiteral(
        "<!DOCTYPE html><html><head><title>t&amp;</title><style>a</style></head><body a='b'><p>x "
        "&#x4e2d; "
        "<img class=\"a\" src='b&quot;' nm_exdata=c/><svg><desc><![CDATA[x]]></desc></svg><!-- c "
        "-->"
        "<select><option>a</select><template><td></template><script><!--<script></script>--></"
        "script></body>");
    for (qsizetype length = 0; length <= html.size(); ++length) {
        const HtmlDocument document(html.left(length));
        document.bodyText();
        EXPECT_TRUE(document.hasBody());
        const QString inside = document.bodyInnerHtml();
        EXPECT_EQ(HtmlDocument(inside).elementCount(), document.elementCount());
        EXPECT_EQ(HtmlDocument(inside).bodyInnerHtml(), inside);
    }
}

} // namespace
