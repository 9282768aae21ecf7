#include "clipformat/HtmlFormat.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

using clipformat::BuildHtmlFormat;
using clipformat::CutHtmlFragment;

namespace {

using namespace std::string_literals;

const std::string kStartComment = "<!--StartFragment -->\r\n";

std::string built(const std::string& text)
{
    std::string block;
    EXPECT_TRUE(BuildHtmlFormat(text, block));
    return block;
}

std::string cut(std::string_view block)
{
    std::string fragment = "not assigned";
    EXPECT_TRUE(CutHtmlFragment(block, fragment)) << block;
    return fragment;
}

void expectRefused(std::string_view block)
{
    std::string fragment = "as it was";
    EXPECT_FALSE(CutHtmlFragment(block, fragment)) << block;
    EXPECT_EQ(fragment, "as it was") << block;
}

std::size_t field(const std::string& block, const std::string& name)
{
    return std::strtoul(block.c_str() + block.find(name + ':') + name.size() + 1, nullptr, 10);
}

// A block of two fields and some text, whose offsets the case names.
std::string block(const std::string& start, const std::string& end)
{
    return "StartFragment:" + start + "\r\nEndFragment:" + end + "\r\n0123456789";
}

const std::vector<std::string> kBehindAnyText = {"999999", "2147483647", "2147483648", "4294967295",
    "4294967301", "9223372036854775807", "18446744073709551616", "18446744073709551621",
    std::string(500, '9')};

// The header as other programs write it: ten digits, both markers without a blank, the fragment
// between them. `lineEnd` ends the header's lines.
std::string foreign(const std::string& fragment, const std::string& lineEnd = "\r\n",
    const std::string& behindColon = "", const std::string& source = "")
{
    const std::string front = "<html>\r\n<body>\r\n<!--StartFragment-->";
    const std::string back = "<!--EndFragment-->\r\n</body>\r\n</html>";
    const auto header = [&](std::size_t html, std::size_t length) {
        const auto line = [&](const std::string& name, std::size_t offset) {
            const std::string digits = std::to_string(offset);
            return name + ':' + behindColon + std::string(10 - digits.size(), '0') + digits
                + lineEnd;
        };
        const std::size_t start = html + front.size();
        return "Version:0.9" + lineEnd + line("StartHTML", html) + line("EndHTML", length)
            + line("StartFragment", start) + line("EndFragment", start + fragment.size())
            + (source.empty() ? source : "SourceURL:" + source + lineEnd);
    };
    const std::size_t html = header(0, 0).size();
    const std::string body = front + fragment + back;
    return header(html, html + body.size()) + body;
}

} // namespace

TEST(BuildHtmlFormat, WritesTheTemplateWithItsFourOffsets)
{
    EXPECT_EQ(built("<p>text</p>"),
        "Version:0.9\r\n"
        "StartHTML:00000097\r\n"
        "EndHTML:00000183\r\n"
        "StartFragment:00000111\r\n"
        "EndFragment:00000147\r\n"
        "<html><body>\r\n"
        "<!--StartFragment -->\r\n"
        "<p>text</p>\r\n"
        "<!--EndFragment-->\r\n"
        "</body>\r\n"
        "</html>");
}

TEST(BuildHtmlFormat, OffsetsPointToTheirTargets)
{
    const std::string block = built("<b>x</b>");
    EXPECT_EQ(block.substr(field(block, "StartHTML"), 6), "<html>");
    EXPECT_EQ(field(block, "EndHTML"), block.size());
    EXPECT_EQ(block.substr(field(block, "StartFragment"), 13), "<!--StartFrag");
    EXPECT_EQ(block.substr(field(block, "EndFragment"), 11), "<!--EndFrag");
}

TEST(BuildHtmlFormat, OffsetsCountBytesNotCharacters)
{
    const std::string text = "<p>\u4E2D\u6587 \U0001F600 \u0645</p>";
    const std::string block = built(text);
    EXPECT_EQ(field(block, "EndFragment"), 111 + kStartComment.size() + text.size() + 2);
    EXPECT_EQ(cut(block), kStartComment + text + "\r\n");
}

TEST(BuildHtmlFormat, TextEndsAtItsFirstZeroByte)
{
    EXPECT_EQ(built("ab\0cd"s), built("ab"));
}

TEST(BuildHtmlFormat, BytesThatAreNotUtf8AreLeftAlone)
{
    EXPECT_EQ(cut(built("\xFF\xC0\x80")), kStartComment + "\xFF\xC0\x80\r\n");
}

TEST(BuildHtmlFormat, TargetsInTheTextDoNotMoveTheStarts)
{
    const std::string block = built("<html><!--StartFragment-->StartHTML:EndHTML:");
    EXPECT_EQ(field(block, "StartHTML"), 97u);
    EXPECT_EQ(field(block, "StartFragment"), 111u);
    EXPECT_EQ(field(block, "EndHTML"), block.size());
}

TEST(BuildHtmlFormat, AnEndCommentInTheTextMovesTheEndOfTheFragment)
{
    EXPECT_EQ(cut(built("one<!--EndFragment-->two")), kStartComment + "one");
    EXPECT_EQ(cut(built("one<!--EndFrag")), kStartComment + "one");
}

TEST(BuildHtmlFormat, OneByteMoreThanEightDigitsCanSayIsRefused)
{
    const std::size_t frame = built("").size();
    std::string text(99'999'999 - frame, 'a');
    std::string block;
    ASSERT_TRUE(BuildHtmlFormat(text, block));
    EXPECT_EQ(block.substr(33, 16), "EndHTML:99999999");
    text += 'a';
    block = "as it was";
    EXPECT_FALSE(BuildHtmlFormat(text, block));
    EXPECT_EQ(block, "as it was");
}

TEST(HtmlFormat, AnEmptyTextComesBackAsTheStartCommentAndALineEnd)
{
    EXPECT_EQ(cut(built("")), kStartComment + "\r\n");
}

TEST(HtmlFormat, ATextComesBackBetweenTheStartCommentAndALineEnd)
{
    EXPECT_EQ(cut(built("a\nb\r\nc")), kStartComment + "a\nb\r\nc\r\n");
}

TEST(HtmlFormat, WritingAndReadingInTurnGrowsTheFragmentByOneFrame)
{
    std::string fragment = "x";
    for (int pass = 0; pass < 5; ++pass) {
        const std::string before = fragment;
        ASSERT_TRUE(CutHtmlFragment(built(before), fragment));
        EXPECT_EQ(fragment, kStartComment + before + "\r\n");
    }
}

TEST(HtmlFormat, TheResultMayReplaceItsOwnSource)
{
    std::string text = "x";
    ASSERT_TRUE(BuildHtmlFormat(text, text));
    EXPECT_EQ(text, built("x"));
    ASSERT_TRUE(CutHtmlFragment(text, text));
    EXPECT_EQ(text, kStartComment + "x\r\n");
}

TEST(CutHtmlFragment, ReadsWhatOtherProgramsWrite)
{
    for (const std::string fragment :
        {"<p>plain <b>bold</b></p>", "<p>\u4E2D\u6587\u5185\u5BB9</p>", "<p>\U0001F600 e\u0301</p>",
            "<pre>&lt;!--StartFragment--&gt;</pre>", ""}) {
        for (const std::string lineEnd : {"\r\n", "\n", "\r", "  \r\n"})
            EXPECT_EQ(cut(foreign(fragment, lineEnd)), fragment);
        EXPECT_EQ(cut(foreign(fragment, "\r\n", " ")), fragment);
        EXPECT_EQ(cut(foreign(fragment, "\r\n", "+")), fragment);
        EXPECT_EQ(
            cut(foreign(fragment, "\r\n", "", "https://example.org/?a=<b>&c=\"d\"")), fragment);
    }
}

TEST(CutHtmlFragment, OnlyTheTwoFieldsOfTheFragmentAreLookedAt)
{
    EXPECT_EQ(cut("Version:9\r\nStartHTML:-1\r\nEndHTML:-1\r\n" + block("2", "5")), "rsi");
    EXPECT_EQ(cut(block("2", "5")), "art");
    EXPECT_EQ(cut("no header EndFragment:4 StartFragment:1"), "o h");
}

TEST(CutHtmlFragment, AFieldsFirstOccurrenceCountsWhereverItIs)
{
    EXPECT_EQ(cut("EndFragment:3<p>StartFragment:1</p>EndFragment:9StartFragment:8"), "nd");
    EXPECT_EQ(cut("SourceURL:x?StartFragment:0\r\n" + block("2", "6")), "Source");
}

TEST(CutHtmlFragment, OffsetsAreReadLikeANumberOfScanf)
{
    EXPECT_EQ(cut(block(" \t\r\n2", "\v\f+4")), "ar");
    EXPECT_EQ(cut(block("-0", "5abc")), "Start");
    EXPECT_EQ(cut(block("0x2", "3")), "Sta");
    EXPECT_EQ(cut("StartFragment:3EndFragment:5"), "rt");
}

TEST(CutHtmlFragment, ANumberThatCannotBeReadCountsAsZero)
{
    for (const char* none : {"", "abc", "+", "-", "+-3", "- 3", ":", "\xEF\xBC\x91"})
        EXPECT_EQ(cut(block(none, "5")), "Start") << none;
    EXPECT_EQ(cut("StartFragment:\r\nEndFragment:"), "");
}

TEST(CutHtmlFragment, EqualOffsetsGiveAnEmptyFragment)
{
    EXPECT_EQ(cut(block("7", "7")), "");
    EXPECT_EQ(cut(block("0", "0")), "");
}

TEST(CutHtmlFragment, AnEndBeforeTheStartIsRefused)
{
    expectRefused(block("6", "5"));
    expectRefused(block("1", "0"));
}

TEST(CutHtmlFragment, AMissingFieldIsRefused)
{
    for (const std::string text : {"", "<p>plain</p>", "StartFragment:1", "EndFragment:1",
             "StartFragment 1 EndFragment:2", "startfragment:1\r\nendfragment:2",
             "Version:0.9\r\nStartHTML", "<!--StartFragment--><p>x</p><!--EndFragment-->"})
        expectRefused(text);
}

TEST(CutHtmlFragment, NegativeOffsetsAreRefused)
{
    const std::string low = "-" + std::string(500, '9');
    for (const std::string negative : {"-1", " -00000001", "-2147483648", "-9223372036854775809"})
        expectRefused(block("0", negative));
    expectRefused(block("-1", "5"));
    expectRefused(block(low, "5"));
    expectRefused(block(low, low));
}

TEST(CutHtmlFragment, AnEndBehindTheTextCountsAsTheTextsEnd)
{
    const std::size_t size = block("0", "00").size();
    for (const std::size_t end : {size, size + 1})
        EXPECT_EQ(cut(block("0", std::to_string(end))).size(), size);
    for (const std::string& behind : kBehindAnyText) {
        EXPECT_EQ(cut(block("0", behind)), block("0", behind));
        EXPECT_EQ(cut(block("2", behind)), block("2", behind).substr(2));
    }
    ASSERT_EQ(block("43", "99").size(), 44u);
    EXPECT_EQ(cut(block("43", "99")), "9");
    EXPECT_EQ(cut(block("44", "99")), "");
}

TEST(CutHtmlFragment, AStartBehindTheTextIsRefused)
{
    ASSERT_EQ(block("45", "45").size(), 44u);
    expectRefused(block("45", "45"));
    expectRefused(block("45", "99"));
    for (const std::string& behind : kBehindAnyText)
        expectRefused(block(behind, behind));
}

TEST(CutHtmlFragment, TheTextEndsAtItsFirstZeroByte)
{
    const std::string whole = foreign("<p>x</p>");
    EXPECT_EQ(cut(whole + std::string(2, '\0')), "<p>x</p>");
    EXPECT_EQ(cut(whole + '\0' + "garbage\xFF"), "<p>x</p>");
    EXPECT_EQ(cut(foreign("<p>a\0b</p>"s)), "<p>a");
    expectRefused('\0' + whole);
    expectRefused(std::string(1, '\0'));
}

// What lies behind the view is no part of the text, terminator or not.
TEST(CutHtmlFragment, NothingBehindTheBlockIsRead)
{
    for (const char* end : {"9", "99"}) {
        const std::string whole = block("3", end) + "123";
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            const std::vector<char> exact(whole.begin(), whole.begin() + length);
            std::string fragment;
            const std::string_view view(exact.data(), exact.size());
            if (CutHtmlFragment(view, fragment))
                EXPECT_EQ(fragment, view.substr(3, fragment.size()));
            else
                EXPECT_LT(length, whole.find("9\r\n") + 1);
        }
    }
}

TEST(CutHtmlFragment, UndecodableAndSplitCharactersAreCutAsBytes)
{
    EXPECT_EQ(cut(foreign("caf\xE9")), "caf\xE9");
    EXPECT_EQ(cut("StartFragment:30EndFragment:32\u4E2D\u6587"), "\xE4\xB8");
    EXPECT_EQ(cut("StartFragment:31EndFragment:33\u4E2D\u6587"), "\xB8\xAD");
}

TEST(CutHtmlFragment, TextInUtf16IsRefused)
{
    std::string utf16 = "\xFF\xFE";
    for (const char c : foreign("<p>x</p>"))
        utf16 += std::string{c, '\0'};
    expectRefused(utf16);
}
