#include "noteattach/Elements.h"
#include "tools/NmnoteFixture.h"

#include <QJsonArray>

namespace {

class NmnoteRewriteTest : public NmnoteTest {
protected:
    Ran rewrite(const QByteArray& bytes, const QString& name)
    {
        return runHere({QStringLiteral("rewrite"), file(bytes), QStringLiteral("--orig"), name,
            QStringLiteral("--class"), QStringLiteral("userdata\\attachment\\new.pdf"),
            QStringLiteral("--src"), QStringLiteral("../userdata\\attachment\\card.bmp")});
    }
};

QString element(const QString& className, const QString& srcName)
{
    return attachment(className, srcName, QStringLiteral("报告 1.pdf"));
}

} // namespace

TEST_F(NmnoteRewriteTest, PrintsTheNewBodyAndNothingElse)
{
    const QByteArray note = "<!--{\"ver_number\":2}--><p>笔记</p>"
        + element(QStringLiteral("old.pdf"), QStringLiteral("old.bmp")).toUtf8();
    const Ran ran = rewrite(note, QStringLiteral("报告 1.pdf"));
    EXPECT_EQ(ran.code, 0) << ran.err.toStdString();
    EXPECT_EQ(ran.out,
        QStringLiteral("<p>笔记</p>")
            + element(QStringLiteral("new.pdf"), QStringLiteral("card.bmp")));
    EXPECT_EQ(ran.err, QString());
    EXPECT_EQ(readFile(file(note)), note);
}

TEST_F(NmnoteRewriteTest, ANameThatTheNoteLacksIsNoFailure)
{
    const Ran ran = rewrite("<p>a</p>", QStringLiteral("none"));
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, QStringLiteral("<p>a</p>"));
}

TEST_F(NmnoteRewriteTest, TheEmptyNameIsAName)
{
    const QString html = attachment(QStringLiteral("a"), QStringLiteral("b"), QString());
    const Ran ran = rewrite(html.toUtf8(), QString());
    EXPECT_EQ(ran.code, 0) << ran.err.toStdString();
    EXPECT_EQ(
        ran.out, attachment(QStringLiteral("new.pdf"), QStringLiteral("card.bmp"), QString()));
}

TEST_F(NmnoteRewriteTest, ANoteWithoutABodyExitsWithOne)
{
    const Ran ran = rewrite("<frameset></frameset>", QStringLiteral("a"));
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out, QString());
    EXPECT_TRUE(ran.err.contains(QStringLiteral("has no body")));
}

TEST_F(NmnoteRewriteTest, AFileThatCannotBeReadExitsWithOne)
{
    const Ran ran = runHere({QStringLiteral("rewrite"), m_store.path(QStringLiteral("none")),
        QStringLiteral("--orig=a"), QStringLiteral("--class=b"), QStringLiteral("--src=c")});
    EXPECT_EQ(ran.code, 1);
    EXPECT_TRUE(ran.err.contains(QStringLiteral("cannot read")));
}

TEST_F(NmnoteTest, NamesPrintsTheOriginalNamesInTheirOrderWhateverTheyHold)
{
    const QStringList names{QStringLiteral("报告.pdf"), QStringLiteral("line\nend\r\t"),
        QStringLiteral("\"quoted\\"), QStringLiteral("报告.pdf")};
    QString html = QStringLiteral("<img src='plain.png'>");
    for (const QString& name : names)
        html += attachment(QStringLiteral("a.pdf"), QStringLiteral("b.bmp"), name);
    const Ran ran = runHere({QStringLiteral("names"), file(html.toUtf8())});
    EXPECT_EQ(json(ran).array(), QJsonArray::fromStringList(names));
    EXPECT_EQ(ran.out.count(u'\n'), names.size());
}

TEST_F(NmnoteTest, NamesOfANoteWithoutAttachmentsAreAnEmptyArray)
{
    EXPECT_EQ(runHere({QStringLiteral("names"), file("text")}).out, QStringLiteral("[]\n"));
}
