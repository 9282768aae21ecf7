#include "support/Json.h"

#include "support/Text.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(Json, WhatIsNoObjectDoesNotParse)
{
    for (const std::string& text : {""s, " "s, "null"s, "1"s, "\"a\""s, "[1]"s, "true"s, "{"s,
             "{\"a\":}"s, "{\"a\":1,}"s, "{a:1}"s, "{\"a\":\"\\ud800\"}"s, "hello"s, "\0{}"s,
             "\xEF\xBB\xBF{}"s, "{\"a\":\"\\x\"}"s})
        EXPECT_FALSE(JsonObject::parse(text)) << text;
}

TEST(Json, CommentsAndTextBehindTheObjectAreAllowed)
{
    const auto object = JsonObject::parse("/* a */ {\"k\":1 // b\n} rest"s);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->integer("k"), 1);
}

TEST(Json, AMissingKeyGivesTheNeutralValue)
{
    const auto object = JsonObject::parse("{}"s);
    ASSERT_TRUE(object);
    EXPECT_FALSE(object->has("k"));
    EXPECT_FALSE(object->boolean("k"));
    EXPECT_EQ(object->integer("k"), 0);
    EXPECT_EQ(object->integer64("k"), 0);
    EXPECT_EQ(object->number("k"), 0.0);
    EXPECT_EQ(object->bytes("k"), "");
    EXPECT_EQ(object->text("k"), QString());
}

TEST(Json, AValueOfAnotherTypeIsConvertedOrNeutral)
{
    struct Case {
        std::string value;
        bool boolean;
        int integer;
        std::string bytes;
    };
    const std::vector<Case> cases{{"true", true, 1, "true"}, {"false", false, 0, "false"},
        {"null", false, 0, ""}, {"7", true, 7, "7"}, {"2.7", true, 2, "2.7000000000000002"},
        {"0.0", false, 0, "0.0"}, {"3000000000", true, 0, "3000000000"},
        {"-1e300", true, 0, "-1.0000000000000001e+300"}, {"\"5\"", false, 0, "5"},
        {"[1]", false, 0, ""}, {"{\"x\":1}", false, 0, ""}};
    for (const Case& c : cases) {
        const auto object = JsonObject::parse("{\"k\":" + c.value + "}");
        ASSERT_TRUE(object) << c.value;
        EXPECT_TRUE(object->has("k"));
        EXPECT_EQ(object->boolean("k"), c.boolean) << c.value;
        EXPECT_EQ(object->integer("k"), c.integer) << c.value;
        EXPECT_EQ(object->bytes("k"), c.bytes) << c.value;
    }
}

TEST(Json, LargeNumbersKeepTheirDigitsInSixtyFourBits)
{
    const auto object = JsonObject::parse("{\"k\":9007199254740993,\"big\":1e30}"s);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->integer64("k"), 9007199254740993);
    EXPECT_EQ(object->integer64("big"), 0);
    EXPECT_EQ(object->number("big"), 1e30);
}

TEST(Json, TextEndsAtItsFirstNulAndBytesDoNot)
{
    const auto object = JsonObject::parse("{\"k\":\"a\\u0000b\",\"c\":\"\\u7b14\\ud83d\\ude00\"}"s);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->text("k"), QStringLiteral("a"));
    EXPECT_EQ(object->bytes("k"), "a\0b"s);
    EXPECT_EQ(object->text("c"), QStringLiteral("笔😀"));
}

TEST(Json, DeepNestingIsAFailureAndNotACrash)
{
    const std::string deep(100'000, '[');
    EXPECT_FALSE(JsonObject::parse("{\"k\":" + deep));
    EXPECT_FALSE(JsonObject::parse("{\"k\":" + deep + std::string(100'000, ']') + "}"));
}

TEST(Json, ALongTextIsRead)
{
    const std::string value(50 << 20, 'x');
    const auto object = JsonObject::parse("{\"k\":\"" + value + "\"}");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->bytes("k"), value);
}

namespace {

/// Both ways to read a text, the second without any short cut.
void expectSameAsNarrow(const QString& text)
{
    const auto wide = JsonObject::parse(text);
    const auto narrow = JsonObject::parse(WideToAnsi(text));
    ASSERT_EQ(wide.has_value(), narrow.has_value()) << text.toStdString();
    if (!wide)
        return;
    for (const char* key : {"a", "b", "result", "A"}) {
        EXPECT_EQ(wide->has(key), narrow->has(key)) << key << " in " << text.toStdString();
        EXPECT_EQ(wide->text(key), narrow->text(key)) << key << " in " << text.toStdString();
        EXPECT_EQ(wide->bytes(key), narrow->bytes(key)) << key << " in " << text.toStdString();
        EXPECT_EQ(wide->boolean(key), narrow->boolean(key)) << key << " in " << text.toStdString();
        EXPECT_EQ(wide->integer(key), narrow->integer(key)) << key << " in " << text.toStdString();
        EXPECT_EQ(wide->object(key).text("x"), narrow->object(key).text("x"));
    }
}

const QString longPart = QString(5000, u'm') + QStringLiteral("笔记");

} // namespace

TEST(Json, ALongStringOfAWideTextReadsAsAShortOneDoes)
{
    for (const char* value :
        {"", "a", "\\\"\\\\\\/\\b\\f\\n\\r\\t", "\\u7b14\\u8BB0", "\\u0000x", "\\ud83d\\ude00",
            "\\ud83d", "\\u12", "\\u+123", "\\x", "\\", "\n\t\x01", "{\\\"x\\\":[", "//", "/*"}) {
        const QString odd = QString::fromUtf8(value);
        for (const char* shape : {"{\"a\":\"%1\"}", "{\"a\":\"%1\",\"b\":\"%1\"}",
                 "{\"a\":\"%1\",\"a\":\"short\"}", "{\"a\":{\"x\":\"%1\"},\"b\":1}",
                 "{\"a\":[\"%1\"]}", "{\"%1\":\"%1\",\"b\":2}", "{\"a\":\"%1\"",
                 "{\"a\":\"%1\"} behind", "{\"a\" \"%1\"}", "[\"%1\"]", "{\"a\":\"%1\"/* why */}",
                 "{\"a\":\"%1\",}", "{\"result\":true,\"a\" : \"%1\" , \"b\":null}"})
            expectSameAsNarrow(QString::fromUtf8(shape).arg(odd + longPart + odd));
    }
}

TEST(Json, ALoneSurrogateOrNulInALongStringReadsAsInTheNarrowForm)
{
    for (const char16_t unit : {u'\xD83D', u'\xDE00', u'\0'}) {
        const QString odd = longPart + QChar(unit) + QStringLiteral("x");
        expectSameAsNarrow(QStringLiteral("{\"a\":\"%1\",\"b\":\"behind\"}").arg(odd));
        expectSameAsNarrow(QStringLiteral("{\"a\":\"%1\"}").arg(longPart) + QChar(unit));
    }
}

TEST(Json, ADamagedTextWithLongStringsReadsAsInTheNarrowForm)
{
    const QString sound =
        QStringLiteral("{\"result\":true,\"a\":\"%1\\\"\\u7b14\",\"b\":{\"x\":\"%1\"}}")
            .arg(longPart);
    const QString bits = QStringLiteral("\"\\{}[]:,/ux0\n ");
    QRandomGenerator random(7);
    for (int i = 0; i < 2000; ++i) {
        QString text = sound;
        for (int changes = random.bounded(1, 4); changes > 0; --changes) {
            // Near the ends of the strings, where it matters.
            const qsizetype edges[] = {0, 5020, text.size() - 6, text.size() - 5040};
            const qsizetype at = qBound<qsizetype>(
                0, edges[random.bounded(4)] + random.bounded(-20, 40), text.size() - 1);
            const QChar bit = bits[random.bounded(int(bits.size()))];
            if (random.bounded(2))
                text[at] = bit;
            else
                text.insert(at, bit);
        }
        expectSameAsNarrow(text);
    }
}
