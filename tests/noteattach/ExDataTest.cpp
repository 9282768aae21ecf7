#include "noteattach/ExData.h"

#include <gtest/gtest.h>

#include <vector>

using namespace noteattach;

TEST(FormatOrigNameToJson, HoldsTheBase64OfTheName)
{
    EXPECT_EQ(FormatOrigNameToJson(QStringLiteral("abc.png")),
        QStringLiteral("{\"OrigName_B64\":\"YWJjLnBuZw==\"}"));
    EXPECT_EQ(FormatOrigNameToJson(QString()), QStringLiteral("{\"OrigName_B64\":\"\"}"));
}

TEST(GetOrigNameFromJson, GivesBackEveryName)
{
    const std::vector<QString> names{QString(), QStringLiteral("a"), QStringLiteral("报告 2.docx"),
        QStringLiteral("\"quoted\" & <b>.txt"), QStringLiteral("😀.png"), QStringLiteral("%1%2"),
        QStringLiteral("\uFEFFmarked"), QString(255, u'x'), QStringLiteral("a\\b/c")};
    for (const QString& name : names)
        EXPECT_EQ(GetOrigNameFromJson(FormatOrigNameToJson(name)), name) << name.toStdString();
}

TEST(GetOrigNameFromJson, ALoneSurrogateComesBackAsItsSubstitute)
{
    EXPECT_EQ(GetOrigNameFromJson(FormatOrigNameToJson(u'a' + QString(QChar(0xD800)))),
        QStringLiteral("a\uFFFD"));
}

TEST(GetOrigNameFromJson, ReadsWhatJsonAllows)
{
    struct Case {
        const char* json;
        const char* name;
    };
    const std::vector<Case> cases{
        {"{\"OrigName_B64\":\"YS50eHQ=\"}", "a.txt"},
        {" { \"OrigName_B64\" : \"YS50eHQ=\" } ", "a.txt"},
        {"{\"x\":1,\"OrigName_B64\":\"YS50eHQ=\"}", "a.txt"},
        {"{\"OrigName_B64\":\"YS5\\u0030eHQ=\"}", "a.txt"},
        {"/* c */{\"OrigName_B64\":\"YS50eHQ=\"}", "a.txt"},
        {"{\"OrigName_B64\":\"YS50eHQ=\"} rest", "a.txt"},
        {"{\"OrigName_B64\":\"YS50\\neHQ=\"}", "a.txt"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(GetOrigNameFromJson(std::string(c.json)), QLatin1String(c.name)) << c.json;
}

TEST(GetOrigNameFromJson, WhatHoldsNoNameGivesTheEmptyName)
{
    for (const std::string json :
        {"", "x", "{}", "[]", "null", "{\"OrigName_B64\":null}", "{\"OrigName_B64\":[1]}",
            "{\"OrigName_B64\":{}}", "{\"OrigName_B64\":\"\"}", "{\"OrigName_B64\":\"YS50eHQ=}",
            "{\"OrigName_B64\":\"YS50eHQ=\"", "{\"origname_b64\":\"YS50eHQ=\"}"})
        EXPECT_EQ(GetOrigNameFromJson(json), QString()) << json;
    EXPECT_EQ(GetOrigNameFromJson("{\"OrigName_B64\":" + std::string(100'000, '[')), QString());
}

TEST(IsPicFileType, LooksForTheExtensionWithinItsList)
{
    const std::vector<std::pair<const char*, int>> cases{{"a.jpg", 1}, {"a.JPEG", 1},
        {"a.b.gif", 1}, {"a.bmp", 1}, {"a.png", 1}, {"a.jp", 1}, {"a.g", 1}, {"a.pe", 1},
        {"a.bm", 1}, {"a.", 1}, {"a", 0}, {"", 0}, {"jpg", 0}, {"a.webp", 0}, {"a.txt", 0},
        {"a.jpgx", 0}};
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(IsPicFileType(QLatin1String(name)), expected) << name;
}
