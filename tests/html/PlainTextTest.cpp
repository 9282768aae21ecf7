#include "html/HtmlDocument.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

struct Case {
    QString html;
    QString text;
};

// The table that the page is held against too.
std::vector<Case> sharedCases()
{
    QFile file(QStringLiteral(NOMAR_TEST_DATA "/plain-text.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<Case> result;
    for (const QJsonValue value : QJsonDocument::fromJson(file.readAll()).array()) {
        const QJsonObject entry = value.toObject();
        result.push_back({entry[u"html"].toString(), entry[u"text"].toString()});
    }
    return result;
}

TEST(PlainText, FollowsTheSharedTable)
{
    const std::vector<Case> cases = sharedCases();
    ASSERT_GE(cases.size(), 80u);
    for (const Case& c : cases)
        EXPECT_EQ(HtmlDocument(c.html).bodyText().toStdString(), c.text.toStdString())
            << c.html.toStdString();
}

TEST(PlainText, IsTheSameForTheInsideOfTheBody)
{
    for (const Case& c : sharedCases()) {
        const QString inside = HtmlDocument(c.html).bodyInnerHtml();
        EXPECT_EQ(HtmlDocument(inside).bodyText().toStdString(), c.text.toStdString())
            << c.html.toStdString();
    }
}

// Long runs are read many characters at a time.
TEST(PlainText, WhiteSpaceAndReferencesCountWhereverTheyStandInALongText)
{
    struct Insert {
        const char* html;
        const char* text;
    };
    const std::vector<Insert> inserts{{" ", " "}, {"  ", " "}, {" \t", " "}, {"\t", " "},
        {"\r\n", " "}, {"\f \f", " "}, {"\v", "\v"}, {" &amp; ", " & "}, {"&amp;", "&"},
        {"\xC2\xA0", "\xC2\xA0"}, {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"}, {"<b> </b>", " "},
        {" <b> ", " "}};
    for (const Insert& insert : inserts) {
        for (int before = 1; before < 40; ++before) {
            for (const int behind : {1, 7, 8, 9, 30}) {
                const QString left(before, u'x');
                const QString right(behind, u'字');
                EXPECT_EQ(HtmlDocument(left + QString::fromUtf8(insert.html) + right).bodyText(),
                    left + QString::fromUtf8(insert.text) + right)
                    << insert.html << " behind " << before;
            }
        }
    }
}

TEST(PlainText, WhiteSpaceAtTheEndOfALongTextIsNone)
{
    for (int length = 1; length < 40; ++length) {
        const QString text(length, u'x');
        EXPECT_EQ(HtmlDocument(text + u' ').bodyText(), text);
        EXPECT_EQ(HtmlDocument(u' ' + text + QStringLiteral(" \n ")).bodyText(), text);
    }
}

TEST(PlainText, LoneSurrogatesAndNulAreReplacedOrDropped)
{
    const char16_t units[] = {u'a', 0, 0xD800, u'b', 0xDC00, 0};
    EXPECT_EQ(
        HtmlDocument(QString::fromUtf16(units, 6)).bodyText(), QStringLiteral(u"a\uFFFDb\uFFFD"));
}

TEST(PlainText, ANulBehindPreKeepsTheLineFeed)
{
    QString text = QStringLiteral("x<pre>0\na</pre>");
    text.replace(u'0', QChar(0));
    EXPECT_EQ(HtmlDocument(text).bodyText(), QStringLiteral("x\n\na"));
}

TEST(PlainText, FramesHaveNone)
{
    EXPECT_EQ(
        HtmlDocument(QStringLiteral("<frameset><noframes>a</noframes></frameset>")).bodyText(),
        QString());
}

} // namespace
