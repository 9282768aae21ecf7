#include "Names.h"
#include "PageHarness.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

QString exdata(const QString& name)
{
    return u"{\"OrigName_B64\":\"%1\"}"_qs.arg(QString::fromLatin1(name.toUtf8().toBase64()));
}

QString element(const QString& name, const QString& file)
{
    return u"<img class='userdata\\attachment\\%2' src='../userdata\\attachment\\%2' "
           u"nm_exdata='%1' data-ke-src='../userdata\\attachment\\%2' "
           u"nmimgsrc='../userdata\\attachment\\%2'>"_qs.arg(exdata(name), file);
}

/** What native code sends: styled JSON, as its library writes it. */
QString picture(const QString& name, const QString& file)
{
    const QJsonObject fields {{u"picpath"_qs, u"../userdata\\attachment\\"_qs + file},
        {u"strData"_qs, u"userdata\\attachment\\"_qs + file}, {u"exdata"_qs, exdata(name)},
        {u"type"_qs, u"png"_qs}};
    return QString::fromUtf8(QJsonDocument(fields).toJson());
}

} // namespace

class PageAttachments : public testing::Test {
protected:
    PageHarness page;

    QString attribute(const QString& selector, const QString& name)
    {
        return page.jsText(
            u"note.querySelector(%1).getAttribute(%2)"_qs.arg(quoted(selector), quoted(name)));
    }
};

TEST_F(PageAttachments, InsertedAtTheCaretWithAllItsAttributes)
{
    page.load(u"<p>ab</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    EXPECT_EQ(page.call(u"AddPicToEditor"_qs, picture(u"图 \"1\".png"_qs, u"0a.png"_qs))[u"result"],
        QJsonValue(true));
    EXPECT_EQ(attribute(u"img"_qs, u"class"_qs), u"userdata\\attachment\\0a.png"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"src"_qs), u"../userdata\\attachment\\0a.png"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"nm_exdata"_qs), exdata(u"图 \"1\".png"_qs));
    EXPECT_EQ(attribute(u"img"_qs, u"data-ke-src"_qs), u"../userdata\\attachment\\0a.png"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"nmimgsrc"_qs), u"../userdata\\attachment\\0a.png"_qs);
    EXPECT_TRUE(page.jsBool(u"note.querySelector('p').childNodes.length === 3"_qs));
    page.type(u"x"_qs);
    EXPECT_EQ(page.text(), u"axb"_qs);
}

TEST_F(PageAttachments, InsertedAtTheEndOfANoteWithoutACaret)
{
    page.load(u"<p>one</p><p>two</p>"_qs);
    page.call(u"AddPicToEditor"_qs, picture(u"a.png"_qs, u"0a.png"_qs));
    EXPECT_TRUE(page.jsBool(u"note.querySelector('p:last-child').lastChild.nodeName === 'IMG'"_qs))
        << page.shown().toStdString();
    page.call(u"AddPicToEditor"_qs, picture(u"b.png"_qs, u"0b.png"_qs));
    EXPECT_TRUE(page.jsBool(u"note.images[1].getAttribute('class').endsWith('0b.png')"_qs));
}

TEST_F(PageAttachments, InsertedIntoAnEmptyNote)
{
    page.load(QString());
    page.call(u"AddPicToEditor"_qs, picture(u"a.png"_qs, u"0a.png"_qs));
    EXPECT_EQ(page.jsText(u"note.images.length + note.body.textContent"_qs), u"1"_qs);
}

TEST_F(PageAttachments, InsertionCanBeUndone)
{
    page.load(u"<P>ab"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.call(u"AddPicToEditor"_qs, picture(u"a.png"_qs, u"0a.png"_qs));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<P>ab"_qs);
    page.key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(attribute(u"img"_qs, u"nm_exdata"_qs), exdata(u"a.png"_qs));
}

TEST_F(PageAttachments, RefusedInAReadOnlyNote)
{
    page.load(u"<p>ab</p>"_qs);
    page.call(u"SetEditorMode"_qs, u"{\"readonly\":true }"_qs);
    const QJsonObject reply = page.call(u"AddPicToEditor"_qs, picture(u"a"_qs, u"0a.png"_qs));
    EXPECT_EQ(reply[u"result"], QJsonValue(false));
    EXPECT_EQ(page.html(), u"<p>ab</p>"_qs);
}

TEST_F(PageAttachments, ValuesWithMarkupStayValues)
{
    page.load(QString());
    page.call(u"AddPicToEditor"_qs,
        u"{\"picpath\":\"../a\\\"><b>.png\",\"strData\":\"x\\\\a&amp;<i>.png\",\"exdata\":\"{'\\\"}\"}"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"src"_qs), u"../a\"><b>.png"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"class"_qs), u"x\\a&amp;<i>.png"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"nm_exdata"_qs), u"{'\"}"_qs);
}

TEST_F(PageAttachments, ModifyChangesEveryElementOfTheName)
{
    page.load(u"<p>"_qs + element(u"a.txt"_qs, u"1.bmp"_qs) + element(u"b.txt"_qs, u"2.bmp"_qs)
        + element(u"a.txt"_qs, u"3.bmp"_qs) + u"</p>"_qs);
    const QString argument = u"{\"nm_exdata\":%1,\"ClassValue\":\"userdata\\\\attachment\\\\n.txt\","
                             u"\"SrcValue\":\"../userdata\\\\attachment\\\\n.bmp\"}"_qs
                                 .arg(exdata(u"a.txt"_qs));
    EXPECT_EQ(page.call(u"ModifyAttachAtrr"_qs, argument)[u"result"], QJsonValue(true));
    EXPECT_EQ(page.jsText(u"[...note.images].map(i => i.getAttribute('class')).join()"_qs),
        u"userdata\\attachment\\n.txt,userdata\\attachment\\2.bmp,userdata\\attachment\\n.txt"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"src"_qs), u"../userdata\\attachment\\n.bmp"_qs);
    EXPECT_EQ(attribute(u"img"_qs, u"nm_exdata"_qs), exdata(u"a.txt"_qs));
    EXPECT_EQ(attribute(u"img"_qs, u"data-ke-src"_qs), u"../userdata\\attachment\\1.bmp"_qs);
    EXPECT_TRUE(page.html().contains(u"n.txt"_qs));
}

TEST_F(PageAttachments, ModifyOfAnUnknownNameIsRefused)
{
    page.load(element(u"a.txt"_qs, u"1.bmp"_qs));
    const QString note = page.html();
    EXPECT_EQ(page.call(u"ModifyAttachAtrr"_qs,
                  u"{\"nm_exdata\":%1,\"ClassValue\":\"c\",\"SrcValue\":\"s\"}"_qs.arg(
                      exdata(u"b.txt"_qs)))[u"result"],
        QJsonValue(false));
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageAttachments, UndoDoesNotBringBackAnOutdatedFile)
{
    page.load(u"<p id=x>a"_qs + element(u"a.txt"_qs, u"1.bmp"_qs) + u"</p>"_qs);
    page.focusNote();
    page.selectAll();
    page.key(Qt::Key_Delete);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    page.call(u"ModifyAttachAtrr"_qs,
        u"{\"nm_exdata\":%1,\"ClassValue\":\"new\",\"SrcValue\":\"new.bmp\"}"_qs.arg(
            exdata(u"a.txt"_qs)));
    page.selectAll();
    page.call(u"AddPicToEditor"_qs, picture(u"b"_qs, u"b.png"_qs));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(attribute(u"img"_qs, u"class"_qs), u"new"_qs);
}

TEST_F(PageAttachments, SelectedByAPartOfTheOriginalName)
{
    page.load(u"<p>text</p>"_qs.repeated(100) + element(u"报告 one.doc"_qs, u"1.bmp"_qs)
        + element(u"报告 two.doc"_qs, u"2.bmp"_qs));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"告 \"}"_qs)[u"result"],
        QJsonValue(true));
    EXPECT_TRUE(page.jsBool(u"note.getSelection().getRangeAt(0).cloneContents().firstChild"
                            u".getAttribute('class').endsWith('1.bmp')"_qs));
    EXPECT_GT(page.js(u"note.scrollingElement.scrollTop"_qs).toInt(), 0);
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"two\"}"_qs)[u"result"],
        QJsonValue(true));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"ONE\"}"_qs)[u"result"],
        QJsonValue(false));
}

TEST_F(PageAttachments, SelectedWorksInAReadOnlyNote)
{
    page.load(element(u"a.doc"_qs, u"1.bmp"_qs));
    page.call(u"SetEditorMode"_qs, u"{\"readonly\":true }"_qs);
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"a\"}"_qs)[u"result"],
        QJsonValue(true));
}

TEST_F(PageAttachments, KeywordThatBreaksTheJsonIsCopedWith)
{
    page.load(element(u"say \"hi\".doc"_qs, u"1.bmp"_qs) + element(u"a\\b.doc"_qs, u"2.bmp"_qs));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"say \"hi\"\"}"_qs)[u"result"],
        QJsonValue(true));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"a\\b\"}"_qs)[u"result"],
        QJsonValue(true));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"no\"ne\"}"_qs)[u"result"],
        QJsonValue(false));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"\"}"_qs)[u"result"],
        QJsonValue(false));
}

TEST_F(PageAttachments, BrokenNamesAreNoError)
{
    page.load(u"<img nm_exdata='no json'><img nm_exdata='{\"OrigName_B64\":\"***\"}'>"
              u"<img nm_exdata='{\"OrigName_B64\":5}'><img nm_exdata='[]'>"_qs
        + element(u"found"_qs, u"1.bmp"_qs));
    EXPECT_EQ(page.call(u"SelectedAttach"_qs, u"{\"keyword\":\"found\"}"_qs)[u"result"],
        QJsonValue(true));
}

TEST_F(PageAttachments, DoubleClickOpensInBothModes)
{
    page.load(u"<p>x</p>"_qs + element(u"a \"b\".doc"_qs, u"1.bmp"_qs));
    page.doubleClickNote(u"img"_qs);
    page.call(u"SetEditorMode"_qs, u"{\"readonly\":true }"_qs);
    page.doubleClickNote(u"img"_qs);
    ASSERT_TRUE(page.waitFor(u"recorded.calls.length === 2"_qs));
    for (const NativeCall& call : page.calls(u"DbClickAttachment"_qs)) {
        EXPECT_EQ(call.json, u"{\"path\":\"userdata\\\\attachment\\\\1.bmp\"}"_qs);
        EXPECT_EQ(call.extra, exdata(u"a \"b\".doc"_qs));
    }
}

TEST_F(PageAttachments, RightClickIsReported)
{
    page.load(u"<p>x</p>"_qs + element(u"a.doc"_qs, u"1.bmp"_qs));
    page.clickNote(u"img"_qs, Qt::NoModifier, Qt::RightButton);
    ASSERT_TRUE(page.waitFor(u"recorded.calls.length === 1"_qs));
    const QList<NativeCall> calls = page.calls(u"OnRightClickAttach"_qs);
    ASSERT_EQ(calls.size(), 1);
    const QJsonObject fields = QJsonDocument::fromJson(calls[0].json.toUtf8()).object();
    EXPECT_EQ(fields[u"current_attach"][u"class_value"].toString(), u"userdata\\attachment\\1.bmp"_qs);
    EXPECT_EQ(fields[u"current_attach"][u"exdata_value"].toString(), exdata(u"a.doc"_qs));
    EXPECT_TRUE(fields[u"range_html"].isString());
}

TEST_F(PageAttachments, OldFormGetsItsNameWithTheFirstEdit)
{
    const QString note = u"<p>x</p><IMG class=userdata/attachment/图.png><img class=photo>"_qs;
    page.load(note);
    EXPECT_EQ(page.html(), note);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.type(u"y"_qs);
    page.html();
    EXPECT_EQ(attribute(u"img"_qs, u"nm_exdata"_qs), exdata(u"图.png"_qs));
    EXPECT_FALSE(page.jsBool(u"note.images[1].hasAttribute('nm_exdata')"_qs));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageAttachments, AttributesSurviveAnEditWithBackslashes)
{
    page.load(u"<p>x</p>"_qs + element(u"a.doc"_qs, u"1#2%3.bmp"_qs));
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.type(u"y"_qs);
    for (const QString& name : {u"src"_qs, u"data-ke-src"_qs, u"nmimgsrc"_qs})
        EXPECT_EQ(attribute(u"img"_qs, name), u"../userdata\\attachment\\1#2%3.bmp"_qs);
    EXPECT_TRUE(page.html().contains(u"class=\"userdata\\attachment\\1#2%3.bmp\""_qs));
}
