#include "notestore/MhtReader.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>

namespace {

struct Ran {
    int code;
    QByteArray out;
    QByteArray err;
};

class MhtVerb : public testing::Test {
protected:
    Ran run(const QStringList& arguments)
    {
        QProcess process;
        process.start(QStringLiteral(NOMAR_NMNOTE),
            QStringList{QStringLiteral("--app-dir"), m_store.appDir()} + arguments);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {
            process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }

    QString file(const QByteArray& bytes)
    {
        writeFile(m_other.filePath(QStringLiteral("note.html")), bytes);
        return m_other.filePath(QStringLiteral("note.html"));
    }

    TestStore m_store;
    QTemporaryDir m_other;
    const QString out = m_other.filePath(QStringLiteral("note.mht"));
};

const QByteArray kNote =
    "<!--{\"ver_number\":2}-->笔记<img src=\"..\\userdata\\attachment\\a.gif\">";

} // namespace

TEST_F(MhtVerb, WritesTheNoteWithReferencesIntoTheStore)
{
    m_store.write(QStringLiteral("a.gif"), "GIF89a");
    const Ran ran = run({QStringLiteral("mht"), file(kNote), out});
    EXPECT_EQ(ran.code, 0) << ran.err.toStdString();
    EXPECT_EQ(ran.out, QByteArray());
    const MhtFile mht = readMht(out);
    EXPECT_EQ(mht.html(),
        QStringLiteral("笔记<img src=\"%1\">").arg(m_store.path(QStringLiteral("a.gif"))));
    EXPECT_EQ(mht.parts.size(), 1u);
}

TEST_F(MhtVerb, WithEmbedThePicturesAreInTheFile)
{
    m_store.write(QStringLiteral("a.gif"), "GIF89a");
    ASSERT_EQ(run({QStringLiteral("mht"), file(kNote), out, QStringLiteral("--embed")}).code, 0);
    const MhtFile mht = readMht(out);
    ASSERT_EQ(mht.parts.size(), 2u);
    EXPECT_EQ(mht.parts[1].body, "GIF89a");
}

TEST_F(MhtVerb, WhatCannotBeReadOrWrittenExitsWithOneAndLeavesTheEarlierFile)
{
    writeFile(out, "earlier");
    const Ran unread = run({QStringLiteral("mht"), m_other.filePath(QStringLiteral("none")), out});
    EXPECT_EQ(unread.code, 1);
    EXPECT_TRUE(unread.err.startsWith("nmnote: cannot read the note file"));
    EXPECT_EQ(readFile(out), "earlier");
    const Ran unwritten = run({QStringLiteral("mht"), file(kNote), m_other.path()});
    EXPECT_EQ(unwritten.code, 1);
    EXPECT_TRUE(unwritten.err.startsWith("nmnote: cannot write"));
}

TEST_F(MhtVerb, BadUseExitsWithTwo)
{
    for (const QString& line : {QStringLiteral("mht"), QStringLiteral("mht a"),
             QStringLiteral("mht a b c"), QStringLiteral("upgrade"), QStringLiteral("upgrade a b"),
             QStringLiteral("upgrade a --embed"), QStringLiteral("mht a b --guid g")})
        EXPECT_EQ(run(line.split(u' ')).code, 2) << line.toStdString();
}

TEST_F(MhtVerb, UpgradePrintsTheTextThatASaveWouldFile)
{
    const QByteArray old = "<p>笔记<img class='userdata/attachment/abc.png'></p>";
    const QByteArray upgraded =
        "<p>笔记<img nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;YWJjLnBuZw=="
        "&quot;}\" class='userdata/attachment/abc.png'></p>";
    for (const QByteArray& marker :
        {QByteArray(), QByteArray("<!--{\"ver_number\":1}-->"), QByteArray("<!--{}-->")}) {
        const Ran ran = run({QStringLiteral("upgrade"), file(marker + old)});
        EXPECT_EQ(ran.code, 0) << ran.err.toStdString();
        EXPECT_EQ(ran.out, upgraded);
    }
}

TEST_F(MhtVerb, UpgradeOfACurrentNoteOrOneWithoutAttachmentsPrintsItAsItStands)
{
    for (const QByteArray& text :
        {QByteArray("<IMG class='a/b.png'>\r\n"), QByteArray("<html><body>a"), QByteArray()}) {
        EXPECT_EQ(
            run({QStringLiteral("upgrade"), file("<!--{\"ver_number\":2}-->" + text)}).out, text);
    }
    EXPECT_EQ(
        run({QStringLiteral("upgrade"), file("<!--{\"ver_number\":1}--><html><p>a</html>")}).out,
        "<html><p>a</html>");
}

TEST_F(MhtVerb, UpgradeOfAFileThatCannotBeReadExitsWithOne)
{
    EXPECT_EQ(run({QStringLiteral("upgrade"), m_other.path()}).code, 1);
}
