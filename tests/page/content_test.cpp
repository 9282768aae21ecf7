// What a pull returns: the stored text until an edit, and again after undoing it.

#include "Names.h"
#include "PageHarness.h"

#include "html/HtmlDocument.h"

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
        page.type(u"x"_s);
        page.key(Qt::Key_Z, Qt::ControlModifier);
    }
};

TEST_F(PageContent, UntouchedNoteComesBackByteForByte)
{
    const QStringList notes{
        QString(),
        u" "_s,
        u"plain text"_s,
        u"<P CLASS=a>unclosed <B>tags"_s,
        u"<p>a</p>\r\n<p>b</p>\r"_s,
        u"<html><head><title>t</title></head><body bgcolor=red>x</body></html>"_s,
        u"<script>alert(1)</script><iframe src='http://x/'></iframe><p onclick='x()'>a</p>"_s,
        u"<!-- a comment --><style>p{color:red}</style><font size=7>x</font>"_s,
        u"<img class='userdata\\attachment\\a.png' nm_exdata='{\"OrigName_B64\":\"YQ==\"}'>"_s,
        u"&nbsp;&lt;&#65;&bogus; 中文 \U0001F600"_s,
        u"</p></div></body>tail<frameset>"_s,
    };
    for (const QString& note : notes) {
        page.load(note);
        EXPECT_EQ(page.html(), note);
        EXPECT_EQ(page.html(), note);
    }
}

TEST_F(PageContent, PullIsTheSameStringWhileNothingChanges)
{
    page.load(u"<p>a</p>"_s);
    EXPECT_TRUE(page.jsBool(
        u"jsProcessor('GetEditorContent', '{}') === jsProcessor('GetEditorContent', '{}')"_s));
}

TEST_F(PageContent, EditIsSerialised)
{
    page.load(u"<P>abc"_s);
    page.focusNote();
    page.caret(u"p"_s, 3);
    page.type(u"d"_s);
    EXPECT_EQ(page.html(), u"<p>abcd</p>"_s);
    EXPECT_EQ(page.text(), u"abcd"_s);
    page.type(u"e"_s);
    EXPECT_EQ(page.html(), u"<p>abcde</p>"_s);
}

TEST_F(PageContent, EditUndoneCountsAsUntouched)
{
    editAndUndo(u"<P CLASS=a>abc<script>x</script>"_s, u"p"_s);
    EXPECT_EQ(page.html(), u"<P CLASS=a>abc<script>x</script>"_s);
    page.key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p class=\"a\">xabc</p>"_s);
}

TEST_F(PageContent, EmptyNoteEditedAndEmptiedAgainIsEmpty)
{
    page.load(QString());
    page.focusNote();
    page.type(u"a"_s);
    EXPECT_EQ(page.html(), u"<div>a</div>"_s);
    page.key(Qt::Key_Backspace);
    EXPECT_EQ(page.html(), QString());
    EXPECT_EQ(page.text(), QString());
}

TEST_F(PageContent, EveryPieceIsWrittenAnewWhenItChanged)
{
    page.load(u"<p>a</p>between<b>bold</b><p>c</p><!--n--><ul><li>d</li></ul>"_s);
    page.focusNote();
    page.caret(u"li"_s, 1);
    page.type(u"1"_s);
    EXPECT_EQ(page.html(), u"<p>a</p>between<b>bold</b><p>c</p><!--n--><ul><li>d1</li></ul>"_s);
    EXPECT_EQ(page.text(), u"a\nbetweenbold\nc\nd1"_s);
    page.caret(u"b"_s, 4);
    page.type(u"2"_s);
    page.caret(u"p"_s, 1);
    page.type(u"3"_s);
    EXPECT_EQ(page.html(), u"<p>a3</p>between<b>bold2</b><p>c</p><!--n--><ul><li>d1</li></ul>"_s);
    EXPECT_EQ(page.text(), u"a3\nbetweenbold2\nc\nd1"_s);
    EXPECT_EQ(page.shown(), page.html());
}

TEST_F(PageContent, PullAfterAnyChangeIsTheNoteReadAsAWhole)
{
    page.load(
        u"<div>one</div>"_s.repeated(200) + u"tail<br><b>bold</b>\n<!-- c -->&amp;&nbsp;&lt;"_s);
    page.focusNote();
    page.caret(u"div"_s, 1);
    page.type(u"x"_s);
    // Changes at the top of the note and inside, of blocks, of what stands between them, and of
    // many nodes at once; by a fixed sequence of pseudo-random numbers.
    page.js(u"(() => {"
            "let seed = 7;"
            "const random = (n) => (seed = (seed * 48271) % 2147483647) % n;"
            "const made = () => {"
            "  switch (random(6)) {"
            "  case 0: return note.createTextNode(' a & <b>\\u00A0 c');"
            "  case 1: return note.createElement('br');"
            "  case 2: { const e = note.createElement('b'); e.textContent = 'bold'; return e; }"
            "  case 3: return note.createComment('x');"
            "  default: {"
            "    const e = note.createElement('div');"
            "    e.append('block', note.createElement('i'));"
            "    return e; } } };"
            "const nodes = () => note.body.childNodes;"
            "const any = () => nodes()[random(nodes().length)];"
            "window.change = () => {"
            "  const node = any();"
            "  switch (random(6)) {"
            "  case 0: node.before(made()); break;"
            "  case 1: node.after(made(), made()); break;"
            "  case 2: node.remove(); break;"
            "  case 3: any().before(node); break;"
            "  case 4: if (node.localName === 'br') node.remove();"
            "          else if (node.append) node.append(made()); else node.data += ' more'; break;"
            "  case 5: for (let i = random(100); i > 0; i--) note.body.prepend(made()); break;"
            "  } };"
            "})(), 0"_s);
    for (int round = 0; round < 150; ++round) {
        const QString result = page.jsText(u"(() => { change();"
                                           "const { ehtml, etext } ="
                                           "    JSON.parse(jsProcessor('GetEditorContent', '{}'));"
                                           "return JSON.stringify({ ehtml, etext,"
                                           "    whole: note.body.innerHTML }); })()"_s);
        const QJsonObject reply = QJsonDocument::fromJson(result.toUtf8()).object();
        ASSERT_EQ(reply[u"ehtml"].toString(), reply[u"whole"].toString()) << "round " << round;
        ASSERT_EQ(reply[u"etext"].toString(), HtmlDocument(reply[u"whole"].toString()).bodyText())
            << "round " << round;
    }
}

TEST_F(PageContent, ReplyAfterAnEditIsWhatJsonMakesOfIt)
{
    page.load(u"<p title='\"\\'>q \" \\ \t &amp; \u2028 \U0001F600</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 0);
    page.type(u"x"_s);
    EXPECT_TRUE(page.jsBool(u"JSON.parse(jsProcessor('GetEditorContent', '{}')).ehtml === "
                            u"note.body.innerHTML"_s));
}

TEST_F(PageContent, ClearEditorCacheForgetsUndoAndKeepsTheText)
{
    page.load(u"<p>a</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"b"_s);
    ASSERT_TRUE(page.jsBool(u"note.queryCommandEnabled('undo')"_s));
    page.call(u"ClearEditorCache"_s, QString());
    EXPECT_FALSE(page.jsBool(u"note.queryCommandEnabled('undo')"_s));
    EXPECT_EQ(page.html(), u"<p>ab</p>"_s);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>ab</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 2);
    page.type(u"c"_s);
    EXPECT_EQ(page.html(), u"<p>abc</p>"_s);
    page.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(page.html(), u"<p>ab</p>"_s);
}

TEST_F(PageContent, LoadingAnotherNoteForgetsUndo)
{
    page.load(u"<p>a</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"b"_s);
    page.call(u"SetEditorContent"_s, u"<p>other</p>"_s);
    EXPECT_FALSE(page.jsBool(u"note.queryCommandEnabled('undo')"_s));
    EXPECT_EQ(page.html(), u"<p>other</p>"_s);
}

TEST_F(PageContent, CompositionIsNotDisturbedByAPull)
{
    page.load(u"<p>a</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.compose(u"ni"_s);
    EXPECT_EQ(page.text(), u"ani"_s);
    page.compose(u"nihao"_s);
    EXPECT_EQ(page.text(), u"anihao"_s);
    page.commit(u"你好"_s);
    EXPECT_EQ(page.html(), u"<p>a你好</p>"_s);
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
    page.load(u"<h1>T</h1>a <b>b</b><p>x  y</p><table><tr><td>1<td>2</table><pre>p\n q</pre>z"_s);
    page.focusNote();
    page.caret(u"h1"_s, 1);
    page.type(u"!"_s);
    EXPECT_EQ(page.text(), u"T!\na b\nx y\n1\t2\np\n q\nz"_s);
    const QString edited = page.html();
    const QString text = page.text();
    page.load(edited);
    EXPECT_EQ(page.text(), text);
}

TEST_F(PageContent, PlainTextLosesEmptyLinesAtItsEndsButNoBackslash)
{
    for (const auto& [html, text] : {std::pair(u"<p><br></p><p>a\\</p><p><br></p>"_s, u"a\\"_s),
             std::pair(u"<p><br>\\n</p><p>b\\n</p>"_s, u"\\n\nb\\n"_s),
             std::pair(u"<p><br><br>c<br><br></p>"_s, u"c"_s),
             std::pair(u"<p>&nbsp;</p><p>\u200B</p><p><br></p>"_s, QString())}) {
        page.load(html);
        EXPECT_EQ(page.text(), text) << html.toStdString();
    }
}

TEST_F(PageContent, DeepNestingIsNoProblem)
{
    const QString html = u"<div>"_s.repeated(20000) + u"x"_s;
    page.load(html);
    EXPECT_EQ(page.html(), html);
    EXPECT_EQ(page.text(), u"x"_s);
}

TEST_F(PageContent, DraftIsSentWhileTheUserTypes)
{
    page.load(u"<p>a</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"bc"_s);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_s));
    const QStringList drafts = page.posts(u"draft"_s);
    EXPECT_EQ(drafts.last(), u"{\"load\":1,\"html\":\"<p>abc</p>\"}"_s);
}

TEST_F(PageContent, DraftOfAnEditUndoneIsTheStoredText)
{
    editAndUndo(u"<P>a"_s, u"p"_s);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_s));
    EXPECT_EQ(page.posts(u"draft"_s), QStringList{u"{\"load\":1,\"html\":\"<P>a\"}"_s});
}

TEST_F(PageContent, DraftNamesTheLoadItBelongsTo)
{
    page.load(u"<p>a</p>"_s);
    page.load(u"<p>b</p>"_s);
    page.focusNote();
    page.caret(u"p"_s, 1);
    page.type(u"!"_s);
    ASSERT_TRUE(page.waitFor(u"recorded.posts.some(post => post[0] === 'draft')"_s));
    EXPECT_EQ(page.posts(u"draft"_s), QStringList{u"{\"load\":2,\"html\":\"<p>b!</p>\"}"_s});
}
