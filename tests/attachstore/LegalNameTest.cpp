#include "attachstore/LegalName.h"

#include "support/Paths.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <set>

using attachstore::LegalName;

namespace {

const QString kNul(1, QChar(u'\0'));
const QString kHigh(1, QChar(0xD83D));
const QString kLow(1, QChar(0xDE00));

// The name without the digest in it, which must be there.
QString shown(const QString& name)
{
    static const QRegularExpression digest(QStringLiteral("-[0-9a-f]{32}(?=\\.[^.]*$|$)"));
    QString legal = LegalName(name);
    EXPECT_TRUE(legal.contains(digest)) << legal.toStdString();
    return legal.remove(digest);
}

} // namespace

TEST(LegalName, ANameThatCanStandInTheStoreComesBackAsItIs)
{
    for (const QString& name : {QString(), QStringLiteral("a"), QStringLiteral("报告 (2).docx"),
             QStringLiteral("..."), QStringLiteral(".bashrc"), QStringLiteral("a."),
             QStringLiteral(" a b "), QStringLiteral("line\nend"), QStringLiteral("c:d*?\"<>|"),
             QStringLiteral("😀.png"), QString(255, u'x'), QString(85, u'笔')})
        EXPECT_EQ(LegalName(name), name) << name.toStdString();
}

TEST(LegalName, WhatCannotStandInAFileNameIsReplacedAndTheExtensionKept)
{
    EXPECT_EQ(shown(QStringLiteral("a\\b/c.txt")), QStringLiteral("a_b_c.txt"));
    EXPECT_EQ(shown(QStringLiteral("../../etc/passwd")), QStringLiteral(".._.._etc_passwd"));
    EXPECT_EQ(shown(u'a' + kNul + QStringLiteral("b.png")), QStringLiteral("a_b.png"));
    EXPECT_EQ(shown(QStringLiteral(".")), QStringLiteral("_"));
    EXPECT_EQ(shown(QStringLiteral("..")), QStringLiteral("__"));
    EXPECT_EQ(shown(QStringLiteral("/")), QStringLiteral("_"));
}

TEST(LegalName, ASurrogateWithoutItsPartnerIsReplacedAndAPairIsNot)
{
    EXPECT_EQ(shown(kHigh + kHigh + kLow + kLow + QStringLiteral(".txt")),
        QStringLiteral("\uFFFD😀\uFFFD.txt"));
}

TEST(LegalName, ALongNameIsCutBetweenTwoCharactersAndKeepsItsExtension)
{
    for (const QString& unit :
        {QStringLiteral("x"), QStringLiteral("é"), QStringLiteral("笔"), QStringLiteral("😀")}) {
        for (int lead = 0; lead < 4; ++lead) {
            const QString name = QString(lead, u'a') + unit.repeated(300) + QStringLiteral(".docx");
            const QString legal = LegalName(name);
            EXPECT_LE(WideToUtf8(legal).size(), 255u);
            EXPECT_GT(WideToUtf8(legal).size(), 255u - 4u);
            EXPECT_TRUE(legal.isValidUtf16());
            EXPECT_TRUE(legal.endsWith(QStringLiteral(".docx")));
            EXPECT_TRUE(name.startsWith(shown(name).chopped(5)));
        }
    }
}

TEST(LegalName, AnExtensionThatLeavesNoRoomIsLeftOff)
{
    EXPECT_EQ(shown(QStringLiteral("a.") + QString(300, u'x')), QStringLiteral("a"));
    const QString longest(221, u'x'); // beside a dot, a hyphen and the digest
    EXPECT_EQ(shown(QString(300, u'a') + u'.' + longest), u'.' + longest);
    EXPECT_EQ(shown(QStringLiteral("a.") + longest
                  + QStringLiteral("yzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz")),
        QStringLiteral("a"));
}

TEST(LegalName, TwoNamesNeverBecomeOne)
{
    const QString longName(300, u'x');
    const std::vector<QString> names{QStringLiteral("a/b"), QStringLiteral("a\\b"),
        QStringLiteral("a_b"), u'a' + kNul + u'b', longName, longName + u'x', longName + kNul,
        QString(kHigh), QString(kHigh + kHigh), QString(kLow), QStringLiteral("\uFFFD"),
        QStringLiteral("."), QStringLiteral(".."), QStringLiteral("_"), QStringLiteral("/"),
        QStringLiteral("\\")};
    std::set<QString> legal;
    for (const QString& name : names)
        EXPECT_TRUE(legal.insert(LegalName(name)).second) << name.toStdString();
}

TEST(LegalName, TheResultIsLegalAndAlwaysTheSame)
{
    std::vector<QString> names{QString(1'000'000, u'/'), QString(1'000'000, u'.'),
        QString(1'000'000, QChar(0xDC00)), kNul.repeated(256), QString(256, u'.')};
    for (int length = 240; length < 300; ++length) {
        names.push_back(QString(length, u'笔') + QStringLiteral(".a/b"));
        names.push_back(QStringLiteral("/.") + QString(length, u'é'));
    }
    for (const QString& name : names) {
        const QString legal = LegalName(name);
        EXPECT_TRUE(IsSafeFileName(legal));
        EXPECT_TRUE(legal.isValidUtf16());
        EXPECT_FALSE(legal.isEmpty());
        EXPECT_EQ(LegalName(legal), legal);
        EXPECT_EQ(LegalName(name), legal);
    }
}
