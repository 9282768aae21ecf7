// What a pull returns: the stored text until an edit, and again after undoing it.

#include "Names.h"
#include "PageHarness.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

class PageContent : public testing::Test {
protected:
    PageHarness page;

    /** Loads, types one character at the caret `selector`, and undoes it. */
    void editAndUndo(const QString& html, const QString& selector)
    {
        page.load(html);
        page.focusNote();
        page.caret(selector, 0);
        page.type(u"x"_qs);
        page.key(Qt::Key_Z, Qt::ControlModifier);
    }
};

TEST_F(PageContent, UntouchedNoteComesBackByteForByte)
{
    const QStringList notes {
        QString(),
        u" "_qs,
        u"plain text"_qs,
        u"<P CLASS=a>unclosed <B>tags"_qs,
        u"<p>a</p>\r\n<p>b</p>\r"_qs,
        u"<html><head><title>t</title></head><body bgcolor=red>x</body></html>"_qs,
        u"<script>alert(1)</script><iframe src='http://x/'></iframe><p onclick='x()'>a</p>"_qs,
        u"<!-- a comment --><style>p{color:red}</style><font size=7>x</font>"_qs,
        u"<img class='userdata\\attachment\\a.png' nm_exdata='{\"OrigName_B64\":\"YQ==\"}'>"_qs,
        u"&nbsp;&lt;&#65;&bogus; 中文 \U0001F600"_qs,
        u"</p></div></body>tail<frameset>"_qs,
    };
    for (const QString& note : notes) {
        page.load(note);
        EXPECT_EQ(page.html(), note);
        EXPECT_EQ(page.html(), note);
    }
}

TEST_F(PageContent, PullIsTheSameStringWhileNothingChanges)
{
    page.load(u"<p>a</p>"_qs);
    EXPECT_TRUE(page.jsBool(
        u"jsProcessor('GetEditorContent', '{}') === jsProcessor('GetEditorContent', '{}')"_qs));
}

TEST_F(PageContent, EditIsSerialised)
{
    page.load(u"<P>abc"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 3);
    page.type(u"d"_qs);
    EXPECT_EQ(page.html(), u"<p>abcd</p>"_qs);
    EXPECT_EQ(page.text(), u"abcd"_qs);
    page.type(u"e"_qs);
    EXPECT_EQ(page.html(), u"<p>abcde</p>"_qs);
}

TEST_F(PageContent, EditUndoneCountsAsUntouched)
{
    editAndUndo(u"<P CLASS=a>abc<script>x</script>"_qs, u"p"_qs);
    EXPECT_EQ(page.html(), u"<P CLASS=a>abc<script>x</script>"_qs);
    page.key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p class=\"a\">xabc</p>"_qs);
}

TEST_F(PageContent, EmptyNoteEditedAndEmptiedAgainIsEmpty)
{
    page.load(QString());
    page.focusNote();
    page.type(u"a"_qs);
    EXPECT_EQ(page.html(), u"<div>a</div>"_qs);
    page.key(Qt::Key_Backspace);
    EXPECT_EQ(page.html(), QString());
    EXPECT_EQ(page.text(), QString());
}

TEST_F(PageContent, EveryPieceIsWrittenAnewWhenItChanged)
{
    page.load(u"<p>a</p>between<b>bold</b><p>c</p><!--n--><ul><li>d</li></ul>"_qs);
    page.focusNote();
    page.caret(u"li"_qs, 1);
    page.type(u"1"_qs);
    EXPECT_EQ(page.html(), u"<p>a</p>between<b>bold</b><p>c</p><!--n--><ul><li>d1</li></ul>"_qs);
    EXPECT_EQ(page.text(), u"a\nbetweenbold\nc\nd1"_qs);
    page.caret(u"b"_qs, 4);
    page.type(u"2"_qs);
    page.caret(u"p"_qs, 1);
    page.type(u"3"_qs);
    EXPECT_EQ(page.html(), u"<p>a3</p>between<b>bold2</b><p>c</p><!--n--><ul><li>d1</li></ul>"_qs);
    EXPECT_EQ(page.text(), u"a3\nbetweenbold2\nc\nd1"_qs);
    EXPECT_EQ(page.shown(), page.html());
}

TEST_F(PageContent, ReplyAfterAnEditIsWhatJsonMakesOfIt)
{
    page.load(u"<p title='\"\\'>q \" \\ \t &amp; \u2028 \U0001F600</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 0);
    page.type(u"x"_qs);
    EXPECT_TRUE(page.jsBool(u"JSON.parse(jsProcessor('GetEditorContent', '{}')).ehtml === "
                            u"note.body.innerHTML"_qs));
}

TEST_F(PageContent, ClearEditorCacheForgetsUndoAndKeepsTheText)
{
    page.load(u"<p>a</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.type(u"b"_qs);
    ASSERT_TRUE(page.jsBool(u"note.queryCommandEnabled('undo')"_qs));
    page.call(u"ClearEditorCache"_qs, QString());
    EXPECT_FALSE(page.jsBool(u"note.queryCommandEnabled('undo')"_qs));
    EXPECT_EQ(page.html(), u"<p>ab</p>"_qs);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>ab</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 2);
    page.type(u"c"_qs);
    EXPECT_EQ(page.html(), u"<p>abc</p>"_qs);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>ab</p>"_qs);
}

TEST_F(PageContent, LoadingAnotherNoteForgetsUndo)
{
    page.load(u"<p>a</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.type(u"b"_qs);
    page.call(u"SetEditorContent"_qs, u"<p>other</p>"_qs);
    EXPECT_FALSE(page.jsBool(u"note.queryCommandEnabled('undo')"_qs));
    EXPECT_EQ(page.html(), u"<p>other</p>"_qs);
}

TEST_F(PageContent, CompositionIsNotDisturbedByAPull)
{
    page.load(u"<p>a</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.compose(u"ni"_qs);
    EXPECT_EQ(page.text(), u"ani"_qs);
    page.compose(u"nihao"_qs);
    EXPECT_EQ(page.text(), u"anihao"_qs);
    page.commit(u"你好"_qs);
    EXPECT_EQ(page.html(), u"<p>a你好</p>"_qs);
}

TEST_F(PageContent, PlainTextFollowsTheTableOfCases)
{
    QFile file(QStringLiteral(NOMAR_TEST_DATA "/plain-text.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
    ASSERT_GT(cases.size(), 50);
    for (const QJsonValue& each : cases) {
        const QString html = each[u"html"].toString();
        page.load(html);
        EXPECT_EQ(page.text(), each[u"text"].toString()) << html.toStdString();
    }
}

TEST_F(PageContent, PlainTextOfAnEditedNoteIsThatOfItsHtml)
{
    page.load(u"<h1>T</h1>a <b>b</b><p>x  y</p><table><tr><td>1<td>2</table><pre>p\n q</pre>z"_qs);
    page.focusNote();
    page.caret(u"h1"_qs, 1);
    page.type(u"!"_qs);
    EXPECT_EQ(page.text(), u"T!\na b\nx y\n1\t2\np\n q\nz"_qs);
    const QString edited = page.html();
    const QString text = page.text();
    page.load(edited);
    EXPECT_EQ(page.text(), text);
}

TEST_F(PageContent, DeepNestingIsNoProblem)
{
    const QString html = u"<div>"_qs.repeated(20000) + u"x"_qs;
    page.load(html);
    EXPECT_EQ(page.html(), html);
    EXPECT_EQ(page.text(), u"x"_qs);
}

TEST_F(PageContent, DraftIsSentWhileTheUserTypes)
{
    page.load(u"<p>a</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.type(u"bc"_qs);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_qs));
    const QStringList drafts = page.posts(u"draft"_qs);
    EXPECT_EQ(drafts.last(), u"{\"load\":1,\"html\":\"<p>abc</p>\"}"_qs);
}

TEST_F(PageContent, DraftOfAnEditUndoneIsTheStoredText)
{
    editAndUndo(u"<P>a"_qs, u"p"_qs);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_qs));
    EXPECT_EQ(page.posts(u"draft"_qs), QStringList {u"{\"load\":1,\"html\":\"<P>a\"}"_qs});
}

TEST_F(PageContent, DraftNamesTheLoadItBelongsTo)
{
    page.load(u"<p>a</p>"_qs);
    page.load(u"<p>b</p>"_qs);
    page.focusNote();
    page.caret(u"p"_qs, 1);
    page.type(u"!"_qs);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_qs));
    EXPECT_EQ(page.posts(u"draft"_qs), QStringList {u"{\"load\":2,\"html\":\"<p>b!</p>\"}"_qs});
}
