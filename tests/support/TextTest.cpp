#include "support/Text.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace std::string_literals;

namespace {

struct Conversion {
    const char* what;
    QString wide;
    std::string narrow;
};

const std::vector<Conversion>& lossless()
{
    static const std::vector<Conversion> cases{
        {"empty", QString(), ""},
        {"ASCII", QStringLiteral("abc"), "abc"},
        {"two bytes", QStringLiteral("é\u07FF"), "\xC3\xA9\xDF\xBF"},
        {"three bytes", QStringLiteral("笔记\uFFFF"), "\xE7\xAC\x94\xE8\xAE\xB0\xEF\xBF\xBF"},
        {"a surrogate pair", QStringLiteral("😀"), "\xF0\x9F\x98\x80"},
        {"a byte-order mark is a character", QStringLiteral("\uFEFFa"),
            "\xEF\xBB\xBF"
            "a"},
        {"ASCII runs around others", QStringLiteral("abcdé12345678笔x"),
            "abcd\xC3\xA9"
            "12345678\xE7\xAC\x94x"},
    };
    return cases;
}

QString units(std::initializer_list<char16_t> list)
{
    return QString(
        reinterpret_cast<const QChar*>(list.begin()), static_cast<qsizetype>(list.size()));
}

} // namespace

TEST(WideToAnsi, WritesUtf8)
{
    for (const Conversion& c : lossless()) {
        EXPECT_EQ(WideToAnsi(c.wide), c.narrow) << c.what;
        EXPECT_EQ(WideToUtf8(c.wide), c.narrow) << c.what;
    }
}

TEST(AnsiToWide, ReadsUtf8)
{
    for (const Conversion& c : lossless()) {
        EXPECT_EQ(AnsiToWide(c.narrow), c.wide) << c.what;
        EXPECT_EQ(AnsiToWide(c.narrow.c_str()), c.wide) << c.what;
        EXPECT_EQ(Utf8ToWide(c.narrow), c.wide) << c.what;
    }
}

TEST(AnsiToWide, ANullPointerGivesTheEmptyString)
{
    EXPECT_EQ(AnsiToWide(static_cast<const char*>(nullptr)), QString());
}

TEST(AnsiToWide, EndsAtTheFirstNul)
{
    EXPECT_EQ(AnsiToWide("ab\0cd"s), QStringLiteral("ab"));
    EXPECT_EQ(AnsiToWide("\0cd"s), QString());
}

TEST(AnsiToWide, BytesThatAreNotUtf8BecomeTheReplacementCharacter)
{
    EXPECT_EQ(AnsiToWide("a\xFFz"s), QStringLiteral("a\uFFFDz"));
    EXPECT_EQ(AnsiToWide("a\xE7"s), QStringLiteral("a\uFFFD"));
}

TEST(WideToAnsi, EndsAtTheFirstNul)
{
    EXPECT_EQ(WideToAnsi(units({u'a', 0, u'b'})), "a");
    EXPECT_EQ(WideToAnsi(units({0, u'b'})), "");
}

TEST(WideToAnsi, ALoneSurrogateBecomesTheReplacementCharacter)
{
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(WideToAnsi(units({0xD800})), mark);
    EXPECT_EQ(WideToAnsi(units({u'a', 0xDC00, u'b'})), "a" + mark + "b");
    EXPECT_EQ(WideToAnsi(units({0xD800, 0xD83D, 0xDE00})), mark + "\xF0\x9F\x98\x80");
    EXPECT_EQ(WideToAnsi(units({0xDC00, 0xD800})), mark + mark);
}

TEST(WideToAnsi, LongTextsAreWhole)
{
    const QString text = QStringLiteral("abcdefg 笔记 é😀").repeated(100'000);
    EXPECT_EQ(AnsiToWide(WideToAnsi(text)), text);
}

TEST(SplitString, FollowsItsTable)
{
    struct Case {
        QString text, separator;
        std::vector<QString> items;
    };
    const QString bar = QStringLiteral("|");
    const std::vector<Case> cases{
        {QStringLiteral("a\\\\b\\"), QStringLiteral("\\"),
            {QStringLiteral("a"), QString(), QStringLiteral("b")}},
        {QStringLiteral("|a"), bar, {QString(), QStringLiteral("a")}},
        {QStringLiteral("a|"), bar, {QStringLiteral("a")}},
        {QStringLiteral("a"), bar, {QStringLiteral("a")}},
        {QString(), bar, {}},
        {bar, bar, {QString()}},
        {QStringLiteral("a::b:c"), QStringLiteral("::"),
            {QStringLiteral("a"), QStringLiteral("b:c")}},
        {QStringLiteral("aaa"), QStringLiteral("aa"), {QString(), QStringLiteral("a")}},
        {QStringLiteral("ab"), QString(), {QStringLiteral("ab")}},
    };
    for (const Case& c : cases) {
        std::vector<QString> items;
        SplitString(c.text, c.separator, items);
        EXPECT_EQ(items, c.items) << c.text.toStdString();
    }
}

TEST(SplitString, AppendsToWhatIsThere)
{
    std::vector<QString> items{QStringLiteral("x")};
    SplitString(QStringLiteral("a,b"), QStringLiteral(","), items);
    EXPECT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0], QStringLiteral("x"));
}

TEST(CreateGuidString, GivesThirtyTwoLowerCaseDigitsEachTimeOthers)
{
    static const QRegularExpression shape(QStringLiteral("^[0-9a-f]{32}$"));
    std::set<QString> seen;
    for (int i = 0; i < 1000; ++i) {
        const QString guid = CreateGuidString();
        EXPECT_TRUE(shape.match(guid).hasMatch()) << guid.toStdString();
        EXPECT_TRUE(seen.insert(guid).second);
    }
}

// RFC 4648, section 10.
TEST(Base64Encode, FollowsTheStandardVectors)
{
    const std::vector<std::pair<std::string, std::string>> vectors{{"", ""}, {"f", "Zg=="},
        {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"}, {"\xFB\xFF\xFE", "+//+"}};
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(Base64Encode(bytes.data(), bytes.size()), text);
        EXPECT_EQ(Base64Decode(text), bytes);
    }
}

TEST(Base64Decode, GivesBackAnyBytesWithoutZero)
{
    std::mt19937 random(7);
    for (std::size_t length = 0; length < 200; ++length) {
        std::string bytes;
        while (bytes.size() < length)
            bytes += static_cast<char>(1 + random() % 255);
        EXPECT_EQ(Base64Decode(Base64Encode(bytes.data(), bytes.size())), bytes);
    }
}

TEST(Base64Decode, IsLenientByItsRules)
{
    struct Case {
        const char* what;
        std::string text, bytes;
    };
    const std::vector<Case> cases{
        {"line ends between groups are skipped", "Zm9v\r\nYmFy", "foobar"},
        {"so are the bytes 1 and 2", "\x01\x02Zm9v\x02YmFy\x01", "foobar"},
        {"within a group nothing is skipped", "Zm9\nYmFy", "fo@bar"},
        {"what is not of the alphabet is 0", "Zm9*", "fo@"},
        {"a zero byte ends the result", "Zm8AZm9v", "fo"},
        {"= in the third place ends the group at one byte", "Zg==Zm9v", "ffoo"},
        {"= in the fourth at two", "Zm8=Zm9v", "fofoo"},
        {"one byte of a group", "Z", "d"},
        {"two bytes of a group", "Zg", "f"},
        {"three bytes of a group", "Zm9", "fo@"},
        {"a lone = counts as 0", "=", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Base64Decode(c.text), c.bytes) << c.what;
}
