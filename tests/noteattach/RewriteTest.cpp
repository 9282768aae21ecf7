#include "noteattach/Rewrite.h"

#include "html/HtmlDocument.h"
#include "noteattach/Elements.h"
#include "support/FailingNew.h"
#include "support/TestStore.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using namespace noteattach;

namespace {

const QString kName = QStringLiteral("报告.pdf");
const QString kClassValue = QStringLiteral("userdata\\attachment\\new.pdf");
const QString kSrcValue = QStringLiteral("../userdata\\attachment\\card.bmp");

QString element(const QString& name)
{
    return attachment(QStringLiteral("old.pdf"), QStringLiteral("old.bmp"), name);
}

QString newElement(const QString& name)
{
    return attachment(QStringLiteral("new.pdf"), QStringLiteral("card.bmp"), name);
}

struct Body {
    int result = -1;
    QString html = QStringLiteral("html before");
    QString text = QStringLiteral("text before");
};

Body rewritten(const QString& html, const QString& name = kName)
{
    Body body;
    body.result = UpdateHtmlAttachAttr(html, name, kClassValue, kSrcValue, body.html, body.text);
    return body;
}

// An attribute of the first picture of a text; "none" if it has no such attribute.
QString attribute(const QString& html, QLatin1StringView name)
{
    const HtmlDocument document(html);
    EXPECT_GT(document.elementCount(), 0);
    return document.attribute(0, name).value_or(QStringLiteral("none"));
}

QString changed(const QString& html, const std::vector<AttachNewAtt>& list)
{
    std::string out;
    EXPECT_EQ(UpdateAttachAttValue(WideToAnsi(html), list, out), 1);
    return AnsiToWide(out);
}

const QString kOldExData = QStringLiteral("old");
const std::vector<AttachNewAtt> kOneRecord{
    {kOldExData, QStringLiteral("new"), QStringLiteral("N.bmp")}};

} // namespace

TEST(UpdateHtmlAttachAttr, SetsClassAndSourceOfTheElementOfThatName)
{
    const Body body = rewritten(QStringLiteral("<p>笔记</p>") + element(kName) + u'x');
    EXPECT_EQ(body.result, 1);
    EXPECT_EQ(body.html, QStringLiteral("<p>笔记</p>") + newElement(kName) + u'x');
    EXPECT_EQ(body.text, QStringLiteral("笔记\nx"));
}

TEST(UpdateHtmlAttachAttr, ChangesEveryElementOfThatNameAndNoOther)
{
    const QString other = element(QStringLiteral("other.pdf"));
    const QString plain = QStringLiteral("<img class=\"a\" src='b'>");
    EXPECT_EQ(rewritten(element(kName) + other + plain + element(kName)).html,
        newElement(kName) + other + plain + newElement(kName));
}

TEST(UpdateHtmlAttachAttr, LeavesTheOtherAttributesOfTheElement)
{
    const QString rest =
        QStringLiteral(" width=3 data-ke-src=\"a\\b\" nmimgsrc='c\\d' nm_exdata=\"")
        + exDataAttribute(kName) + QStringLiteral("\">");
    EXPECT_EQ(rewritten(QStringLiteral("<IMG SRC='x' Class=y") + rest).html,
        QStringLiteral("<IMG SRC=\"%1\" Class=\"%2\"").arg(kSrcValue, kClassValue) + rest);
}

TEST(UpdateHtmlAttachAttr, AnElementWithoutClassOrSourceGetsThem)
{
    const QString html =
        rewritten(QStringLiteral("<img nm_exdata=\"%1\">").arg(exDataAttribute(kName))).html;
    EXPECT_EQ(attribute(html, QLatin1StringView("class")), kClassValue);
    EXPECT_EQ(attribute(html, QLatin1StringView("src")), kSrcValue);
}

TEST(UpdateHtmlAttachAttr, ANameThatTheNoteLacksGivesTheBodyAsItIs)
{
    const QString html = QStringLiteral("<P a = 1>x&amp;y\r\n") + element(kName);
    const Body body = rewritten(html, QStringLiteral("报告.PDF"));
    EXPECT_EQ(body.result, 1);
    EXPECT_EQ(body.html, html);
    EXPECT_EQ(body.text, QStringLiteral("x&y"));
}

TEST(UpdateHtmlAttachAttr, AnEmptyTextHasAnEmptyBody)
{
    const Body body = rewritten(QString());
    EXPECT_EQ(body.result, 1);
    EXPECT_EQ(body.html, QString());
    EXPECT_EQ(body.text, QString());
}

TEST(UpdateHtmlAttachAttr, TheEmptyNameFindsTheElementWithTheEmptyValueAlone)
{
    const QString empty = QStringLiteral("<img nm_exdata=''>");
    const QString noJson = QStringLiteral("<img nm_exdata='x'>");
    const QString noKey = QStringLiteral("<img nm_exdata='{}'>");
    const QString spaced = QStringLiteral("<img nm_exdata='{\"OrigName_B64\": \"\"}'>");
    const QString others =
        empty + noJson + noKey + spaced + QStringLiteral("<img>") + element(kName);
    EXPECT_EQ(
        rewritten(others + element(QString()), QString()).html, others + newElement(QString()));
}

TEST(UpdateHtmlAttachAttr, ComparesTheTextAndNotTheNameInIt)
{
    const QString html = QStringLiteral("<img nm_exdata='%1'>")
                             .arg(FormatOrigNameToJson(kName).replace(u':', QStringLiteral(" :")));
    EXPECT_EQ(rewritten(html).html, html);
}

TEST(UpdateHtmlAttachAttr, GivesTheInsideOfTheBodyAlone)
{
    EXPECT_EQ(rewritten(QStringLiteral("<html><head><title>t</title></head><body class=b>")
                  + element(kName) + QStringLiteral("</body></html>"))
                  .html,
        newElement(kName));
}

TEST(UpdateHtmlAttachAttr, ADocumentWithoutABodyGivesZero)
{
    LoggedLines lines;
    const Body body = rewritten(QStringLiteral("<frameset></frameset>") + element(kName));
    EXPECT_EQ(body.result, 0);
    EXPECT_EQ(body.html, QStringLiteral("html before"));
    EXPECT_EQ(body.text, QStringLiteral("text before"));
    EXPECT_EQ(lines.take(), QStringList());
}

TEST(UpdateHtmlAttachAttr, ValuesReadBackAsTheyWereGiven)
{
    const QString hostile = QStringLiteral("a\"b'c<d>&amp;\r\n\t\\u0041 😀");
    QString html;
    QString text;
    ASSERT_EQ(UpdateHtmlAttachAttr(element(kName), kName, hostile, hostile, html, text), 1);
    EXPECT_EQ(attribute(html, QLatin1StringView("class")), hostile);
    EXPECT_EQ(attribute(html, QLatin1StringView("src")), hostile);
}

TEST(UpdateHtmlAttachAttr, WhatNoHtmlTextCanHoldIsReplaced)
{
    const QString hostile = u'a' + QString(QChar(0xD800)) + u'b' + QString(QChar(u'\0')) + u'c';
    QString html;
    QString text;
    ASSERT_EQ(UpdateHtmlAttachAttr(element(kName), kName, hostile, hostile, html, text), 1);
    EXPECT_EQ(attribute(html, QLatin1StringView("src")), QStringLiteral("a\uFFFDb\uFFFDc"));
}

TEST(UpdateHtmlAttachAttr, ABodyThatIsAlsoTheInputIsRewritten)
{
    QString note = element(kName);
    QString text;
    EXPECT_EQ(UpdateHtmlAttachAttr(note, kName, kClassValue, kSrcValue, note, text), 1);
    EXPECT_EQ(note, newElement(kName));
}

TEST(UpdateHtmlAttachAttr, AFailureIsLoggedAndGivesZero)
{
    const QString html = element(kName).repeated(3);
    LoggedLines lines;
    int failures = 0;
    for (long allowed = 0;; ++allowed) {
        Body body;
        lines.makeRoom();
        {
            const FailingNew failing(allowed);
            body.result =
                UpdateHtmlAttachAttr(html, kName, kClassValue, kSrcValue, body.html, body.text);
        }
        if (body.result == 1) {
            EXPECT_EQ(body.html, newElement(kName).repeated(3));
            break;
        }
        EXPECT_EQ(body.html, QStringLiteral("html before"));
        EXPECT_EQ(body.text, QStringLiteral("text before"));
        ++failures;
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(lines.take(),
        QStringList(failures, QStringLiteral("[ERROR] 解析html字串，获取附件原文件名列表失败！")));
}

TEST(UpdateAttachAttValue, SetsTheNameBehindEachAttributesOwnSeparator)
{
    EXPECT_EQ(changed(QStringLiteral("<img src='../userdata\\attachment/o.bmp' data-ke-src='a/b\\o'"
                                     " nmimgsrc='a\\b\\o.x' nm_exdata='old' class='k\\l.pdf'>"),
                  kOneRecord),
        QStringLiteral("<img src=\"../userdata\\attachment/N.bmp\" data-ke-src=\"a/b\\N.bmp\""
                       " nmimgsrc=\"a\\b\\N.bmp\" nm_exdata=\"new\" class='k\\l.pdf'>"));
}

// The usual source has its one slash behind the two dots.
TEST(UpdateAttachAttValue, TheSourceOfAnAttachmentIsCutBehindItsSlash)
{
    const QString html = changed(
        QStringLiteral("<img src='../userdata\\attachment\\o.bmp' nm_exdata='old'>"), kOneRecord);
    EXPECT_EQ(attribute(html, QLatin1StringView("src")), QStringLiteral("../N.bmp"));
}

TEST(UpdateAttachAttValue, AValueWithoutItsSeparatorKeepsItsName)
{
    const QString html = changed(QStringLiteral("<img src='o\\x' data-ke-src='d\\o.bmp'"
                                                " nmimgsrc='d/o.bmp' nm_exdata='old'>"),
        kOneRecord);
    EXPECT_EQ(attribute(html, QLatin1StringView("src")), QStringLiteral("o\\x"));
    EXPECT_EQ(attribute(html, QLatin1StringView("data-ke-src")), QStringLiteral("d\\N.bmp"));
    EXPECT_EQ(attribute(html, QLatin1StringView("nmimgsrc")), QStringLiteral("d/o.bmp"));
    EXPECT_EQ(attribute(html, QLatin1StringView("nm_exdata")), QStringLiteral("new"));
}

TEST(UpdateAttachAttValue, AnAttributeThatIsMissingIsNotMade)
{
    EXPECT_EQ(changed(QStringLiteral("<img nm_exdata=old>"), kOneRecord),
        QStringLiteral("<img nm_exdata=\"new\">"));
}

TEST(UpdateAttachAttValue, ChangesEveryElementWithTheOldValueAndNoOther)
{
    const QString old = QStringLiteral("<img src=\"a/o\" nm_exdata=\"old\">");
    const QString other = QStringLiteral("<img src='a/o' nm_exdata='Old'><img src='a/o'>");
    const QString now = QStringLiteral("<img src=\"a/N.bmp\" nm_exdata=\"new\">");
    EXPECT_EQ(changed(old + other + old, kOneRecord), now + other + now);
}

TEST(UpdateAttachAttValue, OfTwoRecordsWithOneOldValueTheFirstCounts)
{
    const std::vector<AttachNewAtt> list{{kOldExData, QStringLiteral("first"), QStringLiteral("1")},
        {kOldExData, QStringLiteral("second"), QStringLiteral("2")}};
    EXPECT_EQ(changed(QStringLiteral("<img src=\"a/o\" nm_exdata=\"old\">"), list),
        QStringLiteral("<img src=\"a/1\" nm_exdata=\"first\">"));
}

TEST(UpdateAttachAttValue, AnElementIsRewrittenOnceWhateverItsNewValueIs)
{
    const std::vector<AttachNewAtt> list{{kOldExData, QStringLiteral("b"), QStringLiteral("1")},
        {QStringLiteral("b"), kOldExData, QStringLiteral("2")}};
    EXPECT_EQ(changed(QStringLiteral("<img src=\"a/o\" nm_exdata=\"old\">"
                                     "<img src=\"a/o\" nm_exdata=\"b\">"),
                  list),
        QStringLiteral("<img src=\"a/1\" nm_exdata=\"b\"><img src=\"a/2\" nm_exdata=\"old\">"));
}

TEST(UpdateAttachAttValue, AnEmptyValueIsNeverRewritten)
{
    const QString html = QStringLiteral("<img src='a/o' nm_exdata=''><img src='a/o'>");
    EXPECT_EQ(changed(html, {{QString(), QStringLiteral("new"), QStringLiteral("n")}}), html);
}

TEST(UpdateAttachAttValue, WithoutRecordsTheBodyStaysAsItIs)
{
    const QString html = QStringLiteral("\uFEFF<P>笔记 😀 &amp;\r\n") + element(kName);
    EXPECT_EQ(changed(html, {}), html);
    EXPECT_EQ(changed(QString(), {}), QString());
}

TEST(UpdateAttachAttValue, ANulEndsTheTextAndBadUtf8IsReplaced)
{
    std::string out;
    EXPECT_EQ(UpdateAttachAttValue(std::string("a\xFF"
                                               "b\0c",
                                       5),
                  {}, out),
        1);
    EXPECT_EQ(out, "a\uFFFDb");
}

TEST(UpdateAttachAttValue, ADocumentWithoutABodyGivesZero)
{
    LoggedLines lines;
    std::string out = "before";
    EXPECT_EQ(UpdateAttachAttValue("<frameset></frameset>", kOneRecord, out), 0);
    EXPECT_EQ(out, "before");
    EXPECT_EQ(lines.take(), QStringList());
}

TEST(UpdateAttachAttValue, AFailureIsLoggedAndGivesZero)
{
    const std::string html = "<img src='a/o' nm_exdata='old'>";
    LoggedLines lines;
    int failures = 0;
    for (long allowed = 0;; ++allowed) {
        std::string out = "before";
        int result;
        lines.makeRoom();
        {
            const FailingNew failing(allowed);
            result = UpdateAttachAttValue(html, kOneRecord, out);
        }
        if (result == 1)
            break;
        EXPECT_EQ(out, "before");
        ++failures;
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(lines.take(),
        QStringList(failures, QStringLiteral("[ERROR] ModifyAttachAttValue 修改附件属性值失败！")));
}

TEST(UpdateAttachAttValue, ManyRecordsAndManyElementsFindEachOther)
{
    constexpr int kCount = 100'000; // a search of the list for each element would take minutes
    std::vector<AttachNewAtt> list;
    QString html;
    QString expected;
    for (int i = 0; i < kCount; ++i) {
        const QString number = QString::number(i);
        list.push_back({u'o' + number, u'n' + number, number});
        html += QStringLiteral("<img src=\"/o\" nm_exdata=\"o%1\">").arg(kCount - 1 - i);
        expected += QStringLiteral("<img src=\"/%1\" nm_exdata=\"n%1\">").arg(kCount - 1 - i);
    }
    EXPECT_TRUE(changed(html, list) == expected);
}

TEST(UpdateAttachAttValue2, CopiesTheTextAndDoesNotLookAtTheList)
{
    const std::string html("<img src='a/o' nm_exdata='old'>\0\xFF", 33);
    std::string out = "before";
    EXPECT_EQ(UpdateAttachAttValue2(html, kOneRecord, out), 1);
    EXPECT_EQ(out, html);
    EXPECT_EQ(UpdateAttachAttValue2(out, kOneRecord, out), 1);
    EXPECT_EQ(out, html);
}

TEST(UpdateAttachAttValue2, AFailureIsLoggedAndGivesZero)
{
    const std::string html(1000, 'x'); // no text that fits into the string itself
    std::string out = "before";
    LoggedLines lines;
    lines.makeRoom();
    int result;
    {
        const FailingNew failing(0);
        result = UpdateAttachAttValue2(html, kOneRecord, out);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(out, "before");
    EXPECT_EQ(lines.take(),
        QStringList(QStringLiteral("[ERROR] ModifyAttachAttValue 修改附件属性值失败！")));
}
