#include "support/Json.h"

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
    const auto object = JsonObject::parse("/* a */ {\"k\":1 // b\n} rest");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->integer("k"), 1);
}

TEST(Json, AMissingKeyGivesTheNeutralValue)
{
    const auto object = JsonObject::parse("{}");
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
    const auto object = JsonObject::parse("{\"k\":9007199254740993,\"big\":1e30}");
    ASSERT_TRUE(object);
    EXPECT_EQ(object->integer64("k"), 9007199254740993);
    EXPECT_EQ(object->integer64("big"), 0);
    EXPECT_EQ(object->number("big"), 1e30);
}

TEST(Json, TextEndsAtItsFirstNulAndBytesDoNot)
{
    const auto object = JsonObject::parse("{\"k\":\"a\\u0000b\",\"c\":\"\\u7b14\\ud83d\\ude00\"}");
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
