#include "Names.h"
#include "PageHarness.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

QString exdata(const QString& name)
{
    return u"{\"OrigName_B64\":\"%1\"}"_s.arg(QString::fromLatin1(name.toUtf8().toBase64()));
}

QString element(const QString& name, const QString& file)
{
    return u"<img class='userdata\\attachment\\%2' src='../userdata\\attachment\\%2' "
           u"nm_exdata='%1' data-ke-src='../userdata\\attachment\\%2' "
           u"nmimgsrc='../userdata\\attachment\\%2'>"_s.arg(exdata(name), file);
}

/** What native code sends: styled JSON, as its library writes it. */
QString picture(const QString& name, const QString& file)
{
    const QJsonObject fields{{u"picpath"_s, u"../userdata\\attachment\\"_s + file},
        {u"strData"_s, u"userdata\\attachment\\"_s + file}, {u"exdata"_s, exdata(name)},
        {u"type"_s, u"png"_s}};
    return QString::fromUtf8(QJsonDocument(fields).toJson());
}

} // namespace

class PageAttachments : public testing::Test {
protected:
    PageHarness page;

    QString attribute(const QString& selector, const QString& name)
    {
        return page.jsText(
            u"note.querySelector(%1).getAttribute(%2)"_s.arg(quoted(selector), quoted(name)));
    }
};

TEST_F(PageAttachments, InsertedAtTheCaretWithAllItsAttributes)
{
    page.load(u"<p>ab</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    EXPECT_EQ(page.call(u"AddPicToEditor"_s, picture(u"图 \"1\".png"_s, u"0a.png"_s))[u"result"],
        QJsonValue(true));
    EXPECT_EQ(attribute(u"img"_s, u"class"_s), u"userdata\\attachment\\0a.png"_s);
    EXPECT_EQ(attribute(u"img"_s, u"src"_s), u"../userdata\\attachment\\0a.png"_s);
    EXPECT_EQ(attribute(u"img"_s, u"nm_exdata"_s), exdata(u"图 \"1\".png"_s));
    EXPECT_EQ(attribute(u"img"_s, u"data-ke-src"_s), u"../userdata\\attachment\\0a.png"_s);
    EXPECT_EQ(attribute(u"img"_s, u"nmimgsrc"_s), u"../userdata\\attachment\\0a.png"_s);
    EXPECT_TRUE(page.jsBool(u"note.querySelector('p').childNodes.length === 3"_s));
    page.type(u"x"_s);
    EXPECT_EQ(page.text(), u"axb"_s);
}

TEST_F(PageAttachments, InsertedAtTheEndOfANoteWithoutACaret)
{
    page.load(u"<p>one</p><p>two</p>"_s);
    page.call(u"AddPicToEditor"_s, picture(u"a.png"_s, u"0a.png"_s));
    EXPECT_TRUE(page.jsBool(u"note.querySelector('p:last-child').lastChild.nodeName === 'IMG'"_s))
        << page.shown().toStdString();
    page.call(u"AddPicToEditor"_s, picture(u"b.png"_s, u"0b.png"_s));
    EXPECT_TRUE(page.jsBool(u"note.images[1].getAttribute('class').endsWith('0b.png')"_s));
}

TEST_F(PageAttachments, InsertedIntoAnEmptyNote)
{
    page.load(QString());
    page.call(u"AddPicToEditor"_s, picture(u"a.png"_s, u"0a.png"_s));
    EXPECT_EQ(page.jsText(u"note.images.length + note.body.textContent"_s), u"1"_s);
}

TEST_F(PageAttachments, InsertionCanBeUndone)
{
    page.load(u"<P>ab"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.call(u"AddPicToEditor"_s, picture(u"a.png"_s, u"0a.png"_s));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<P>ab"_s);
    page.key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(attribute(u"img"_s, u"nm_exdata"_s), exdata(u"a.png"_s));
}

TEST_F(PageAttachments, RefusedInAReadOnlyNote)
{
    page.load(u"<p>ab</p>"_s);
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    const QJsonObject reply = page.call(u"AddPicToEditor"_s, picture(u"a"_s, u"0a.png"_s));
    EXPECT_EQ(reply[u"result"], QJsonValue(false));
    EXPECT_EQ(page.html(), u"<p>ab</p>"_s);
}

TEST_F(PageAttachments, ValuesWithMarkupStayValues)
{
    page.load(QString());
    page.call(u"AddPicToEditor"_s,
        u"{\"picpath\":\"../a\\\"><b>.png\",\"strData\":\"x\\\\a&amp;<i>.png\",\"exdata\":\"{'\\\"}\"}"_s);
    EXPECT_EQ(attribute(u"img"_s, u"src"_s), u"../a\"><b>.png"_s);
    EXPECT_EQ(attribute(u"img"_s, u"class"_s), u"x\\a&amp;<i>.png"_s);
    EXPECT_EQ(attribute(u"img"_s, u"nm_exdata"_s), u"{'\"}"_s);
}

TEST_F(PageAttachments, ModifyChangesEveryElementOfTheName)
{
    page.load(u"<p>"_s + element(u"a.txt"_s, u"1.bmp"_s) + element(u"b.txt"_s, u"2.bmp"_s)
        + element(u"a.txt"_s, u"3.bmp"_s) + u"</p>"_s);
    const QString argument =
        u"{\"nm_exdata\":%1,\"ClassValue\":\"userdata\\\\attachment\\\\n.txt\","
        u"\"SrcValue\":\"../userdata\\\\attachment\\\\n.bmp\"}"_s.arg(exdata(u"a.txt"_s));
    EXPECT_EQ(page.call(u"ModifyAttachAtrr"_s, argument)[u"result"], QJsonValue(true));
    EXPECT_EQ(page.jsText(u"[...note.images].map(i => i.getAttribute('class')).join()"_s),
        u"userdata\\attachment\\n.txt,userdata\\attachment\\2.bmp,userdata\\attachment\\n.txt"_s);
    EXPECT_EQ(attribute(u"img"_s, u"src"_s), u"../userdata\\attachment\\n.bmp"_s);
    EXPECT_EQ(attribute(u"img"_s, u"nm_exdata"_s), exdata(u"a.txt"_s));
    EXPECT_EQ(attribute(u"img"_s, u"data-ke-src"_s), u"../userdata\\attachment\\1.bmp"_s);
    EXPECT_TRUE(page.html().contains(u"n.txt"_s));
}

TEST_F(PageAttachments, ModifyOfAnUnknownNameIsRefused)
{
    page.load(element(u"a.txt"_s, u"1.bmp"_s));
    const QString note = page.html();
    EXPECT_EQ(page.call(u"ModifyAttachAtrr"_s,
                  u"{\"nm_exdata\":%1,\"ClassValue\":\"c\",\"SrcValue\":\"s\"}"_s.arg(
                      exdata(u"b.txt"_s)))[u"result"],
        QJsonValue(false));
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageAttachments, UndoDoesNotBringBackAnOutdatedFile)
{
    page.load(u"<p id=x>a"_s + element(u"a.txt"_s, u"1.bmp"_s) + u"</p>"_s);
    page.focusNote();
    page.selectAll();
    page.key(Qt::Key_Delete);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    page.call(u"ModifyAttachAtrr"_s,
        u"{\"nm_exdata\":%1,\"ClassValue\":\"new\",\"SrcValue\":\"new.bmp\"}"_s.arg(
            exdata(u"a.txt"_s)));
    page.selectAll();
    page.call(u"AddPicToEditor"_s, picture(u"b"_s, u"b.png"_s));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(attribute(u"img"_s, u"class"_s), u"new"_s);
}

TEST_F(PageAttachments, SelectedByAPartOfTheOriginalName)
{
    page.load(u"<p>text</p>"_s.repeated(100) + element(u"报告 one.doc"_s, u"1.bmp"_s)
        + element(u"报告 two.doc"_s, u"2.bmp"_s));
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"告 \"}"_s)[u"result"], QJsonValue(true));
    EXPECT_TRUE(page.jsBool(u"note.getSelection().getRangeAt(0).cloneContents().firstChild"
                            u".getAttribute('class').endsWith('1.bmp')"_s));
    EXPECT_GT(page.js(u"note.scrollingElement.scrollTop"_s).toInt(), 0);
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"two\"}"_s)[u"result"], QJsonValue(true));
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"ONE\"}"_s)[u"result"], QJsonValue(false));
}

TEST_F(PageAttachments, SelectedWorksInAReadOnlyNote)
{
    page.load(element(u"a.doc"_s, u"1.bmp"_s));
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"a\"}"_s)[u"result"], QJsonValue(true));
}

TEST_F(PageAttachments, KeywordThatBreaksTheJsonIsCopedWith)
{
    page.load(element(u"say \"hi\".doc"_s, u"1.bmp"_s) + element(u"a\\b.doc"_s, u"2.bmp"_s));
    EXPECT_EQ(page.call(u"SelectedAttach"_s, u"{\"keyword\":\"say \"hi\"\"}"_s)[u"result"],
        QJsonValue(true));
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"a\\b\"}"_s)[u"result"], QJsonValue(true));
    EXPECT_EQ(page.call(u"SelectedAttach"_s, u"{\"keyword\":\"no\"ne\"}"_s)[u"result"],
        QJsonValue(false));
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"\"}"_s)[u"result"], QJsonValue(false));
}

TEST_F(PageAttachments, BrokenNamesAreNoError)
{
    page.load(u"<img nm_exdata='no json'><img nm_exdata='{\"OrigName_B64\":\"***\"}'>"
              u"<img nm_exdata='{\"OrigName_B64\":5}'><img nm_exdata='[]'>"_s
        + element(u"found"_s, u"1.bmp"_s));
    EXPECT_EQ(
        page.call(u"SelectedAttach"_s, u"{\"keyword\":\"found\"}"_s)[u"result"], QJsonValue(true));
}

TEST_F(PageAttachments, DoubleClickOpensInBothModes)
{
    page.load(u"<p>x</p>"_s + element(u"a \"b\".doc"_s, u"1.bmp"_s));
    page.doubleClickNote(u"img"_s);
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    page.doubleClickNote(u"img"_s);
    ASSERT_TRUE(page.waitFor(u"recorded.calls.length === 2"_s));
    for (const NativeCall& call : page.calls(u"DbClickAttachment"_s)) {
        EXPECT_EQ(call.json, u"{\"path\":\"userdata\\\\attachment\\\\1.bmp\"}"_s);
        EXPECT_EQ(call.extra, exdata(u"a \"b\".doc"_s));
    }
}

TEST_F(PageAttachments, RightClickIsReported)
{
    page.load(u"<p>x</p>"_s + element(u"a.doc"_s, u"1.bmp"_s));
    page.clickNote(u"img"_s, Qt::NoModifier, Qt::RightButton);
    ASSERT_TRUE(page.waitFor(u"recorded.calls.length === 1"_s));
    const QList<NativeCall> calls = page.calls(u"OnRightClickAttach"_s);
    ASSERT_EQ(calls.size(), 1);
    const QJsonObject fields = QJsonDocument::fromJson(calls[0].json.toUtf8()).object();
    EXPECT_EQ(
        fields[u"current_attach"][u"class_value"].toString(), u"userdata\\attachment\\1.bmp"_s);
    EXPECT_EQ(fields[u"current_attach"][u"exdata_value"].toString(), exdata(u"a.doc"_s));
    EXPECT_TRUE(fields[u"range_html"].isString());
}

TEST_F(PageAttachments, OldFormGetsItsNameWithTheFirstEdit)
{
    const QString note = u"<p>x</p><IMG class=userdata/attachment/图.png><img class=photo>"_s;
    page.load(note);
    EXPECT_EQ(page.html(), note);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"y"_s);
    page.html();
    EXPECT_EQ(attribute(u"img"_s, u"nm_exdata"_s), exdata(u"图.png"_s));
    EXPECT_FALSE(page.jsBool(u"note.images[1].hasAttribute('nm_exdata')"_s));
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageAttachments, OldFormAloneInItsNoteKeepsItsNameWhenItMoves)
{
    // Of a note in one block the page has looked whether there is anything in it.
    const QString note = u"<p><img class=\"userdata/attachment/x.png\"></p>"_s;
    page.load(note);
    page.focusNote();
    page.js(u"note.getSelection().collapse(note.querySelector('p'), 1)"_s);
    page.key(Qt::Key_Return);
    page.type(u"y"_s);
    EXPECT_TRUE(page.html().contains(u"nm_exdata"_s)) << page.html().toStdString();
    EXPECT_EQ(page.html(), page.shown());
    page.key(Qt::Key_Z, Qt::ControlModifier);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageAttachments, ModifyToTheSameValuesLeavesAnUneditedNoteByteForByte)
{
    const QString note =
        u"<P TITLE=odd>x<IMG NM_EXDATA='%1' class='userdata\\attachment\\1.bmp' "
        u"SRC = ../userdata\\attachment\\1.bmp ><img class=userdata/attachment/old.png><p>end"_s
            .arg(exdata(u"a.txt"_s));
    page.load(note);
    EXPECT_EQ(page.call(u"ModifyAttachAtrr"_s,
                  u"{\"nm_exdata\":%1,\"ClassValue\":\"userdata\\\\attachment\\\\1.bmp\","
                  u"\"SrcValue\":\"../userdata\\\\attachment\\\\1.bmp\"}"_s.arg(
                      exdata(u"a.txt"_s)))[u"result"],
        QJsonValue(true));
    EXPECT_EQ(page.html(), note);
}

TEST_F(PageAttachments, AttributesSurviveAnEditWithBackslashes)
{
    page.load(u"<p>x</p>"_s + element(u"a.doc"_s, u"1#2%3.bmp"_s));
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"y"_s);
    for (const QString& name : {u"src"_s, u"data-ke-src"_s, u"nmimgsrc"_s})
        EXPECT_EQ(attribute(u"img"_s, name), u"../userdata\\attachment\\1#2%3.bmp"_s);
    EXPECT_TRUE(page.html().contains(u"class=\"userdata\\attachment\\1#2%3.bmp\""_s));
}

TEST_F(PageAttachments, RemovedWhereverItStandsAndUndoBringsItBack)
{
    const QString note = u"<p>ab"_s + element(u"报告 \"1\".doc"_s, u"1.doc"_s) + u"cd</p><p>"_s
        + element(u"b.doc"_s, u"2.doc"_s) + u"</p>"_s;
    page.load(note);
    page.focusNote();
    page.caret(u"p"_s, 1);
    const QJsonObject reply = page.callPrivate(
        u"removeAttachment"_s, u"{\"file\":\"1.doc\",\"name\":\"报告 \\\"1\\\".doc\"}"_s);
    EXPECT_EQ(reply[u"result"], QJsonValue(true));
    EXPECT_EQ(reply[u"count"], QJsonValue(1));
    EXPECT_EQ(page.jsText(u"note.querySelector('p').textContent"_s), u"abcd"_s);
    EXPECT_TRUE(page.jsBool(u"note.images.length === 1"_s));
    page.type(u"x"_s);
    EXPECT_EQ(page.jsText(u"note.querySelector('p').textContent"_s), u"axbcd"_s)
        << "the caret moved";
    page.key(Qt::Key_Z, Qt::ControlModifier);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), note);
    page.key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(page.jsBool(u"note.images.length === 1"_s));
}

TEST_F(PageAttachments, RemovedWithAllItsElementsAndNoOther)
{
    page.load(u"<p>"_s + element(u"a.txt"_s, u"1.txt"_s) + element(u"b.txt"_s, u"1.txt"_s)
        + element(u"a.txt"_s, u"2.txt"_s) + u"<img class='photo' src=''>"_s
        + element(u"a.txt"_s, u"1.txt"_s) + u"</p>"_s);
    EXPECT_EQ(page.callPrivate(
                  u"removeAttachment"_s, u"{\"file\":\"1.txt\",\"name\":\"a.txt\"}"_s)[u"count"],
        QJsonValue(2));
    EXPECT_EQ(page.jsText(u"[...note.images].map(i => i.getAttribute('class')).join()"_s),
        u"userdata\\attachment\\1.txt,userdata\\attachment\\2.txt,photo"_s);
}

TEST_F(PageAttachments, RemovedFromAnOldNoteByItsFilesName)
{
    page.load(u"<p>x</p><IMG class=userdata/attachment/图.png><img class=photo>"_s);
    EXPECT_EQ(page.callPrivate(
                  u"removeAttachment"_s, u"{\"file\":\"图.png\",\"name\":\"图.png\"}"_s)[u"result"],
        QJsonValue(true));
    EXPECT_TRUE(page.jsBool(u"note.images.length === 1"_s));
}

TEST_F(PageAttachments, RemovalOfAnUnknownOneOrInAReadOnlyNoteIsRefused)
{
    const QString note = element(u"a.txt"_s, u"1.txt"_s) + u"<img class='photo' src=''>"_s;
    page.load(note);
    const QString arguments[] = {u"{\"file\":\"1.txt\",\"name\":\"b.txt\"}"_s,
        u"{\"file\":\"2.txt\",\"name\":\"a.txt\"}"_s, u"{\"file\":\"\",\"name\":\"\"}"_s,
        u"{\"file\":\"photo\",\"name\":\"photo\"}"_s, u"{\"file\":7}"_s, u"no JSON"_s};
    for (const QString& argument : arguments)
        EXPECT_EQ(page.callPrivate(u"removeAttachment"_s, argument)[u"result"], QJsonValue(false))
            << argument.toStdString();
    page.call(u"SetEditorMode"_s, u"{\"readonly\":true }"_s);
    EXPECT_EQ(page.callPrivate(
                  u"removeAttachment"_s, u"{\"file\":\"1.txt\",\"name\":\"a.txt\"}"_s)[u"result"],
        QJsonValue(false));
    EXPECT_EQ(page.html(), note);
}
