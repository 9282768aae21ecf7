#include "noteattach/Elements.h"
#include "tools/NmnoteFixture.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <unistd.h>

TEST_F(NmnoteTest, HelpIsPrintedAndIsNoBadUse)
{
    const Ran help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.out.startsWith(QStringLiteral("usage: nmnote")));
    EXPECT_EQ(help.err, QString());
}

TEST_F(NmnoteTest, BadUseIsExplainedWithTheUsageAndExitsWithTwo)
{
    const QString path = file("a");
    const std::vector<QString> lines{QString(), QStringLiteral("frobnicate"),
        QStringLiteral("parse"), QStringLiteral("parse a b"), QStringLiteral("read"),
        QStringLiteral("text a b"), QStringLiteral("save"), QStringLiteral("md5"),
        QStringLiteral("check a b"), QStringLiteral("parse --frob a"),
        QStringLiteral("parse a --guid"), QStringLiteral("read a --guid g"),
        QStringLiteral("text a --version 1"), QStringLiteral("save a --version two"),
        QStringLiteral("save a --version -1"), QStringLiteral("--app-dir"), QStringLiteral("names"),
        QStringLiteral("names a b"), QStringLiteral("names a --orig b"),
        QStringLiteral("rewrite a"), QStringLiteral("rewrite --orig a --class b --src c"),
        QStringLiteral("rewrite a --orig a --class b"),
        QStringLiteral("rewrite a --orig a --src b"), QStringLiteral("rewrite a --class a --src b"),
        QStringLiteral("import a"), QStringLiteral("import --note g"), QStringLiteral("card a b"),
        QStringLiteral("card a b c d"), QStringLiteral("card a b c --note g")};
    for (const QString& line : lines) {
        const Ran bad = run(line.split(u' ', Qt::SkipEmptyParts));
        EXPECT_EQ(bad.code, 2) << line.toStdString();
        EXPECT_EQ(bad.out, QString()) << line.toStdString();
        EXPECT_TRUE(bad.err.startsWith(QStringLiteral("nmnote: "))) << line.toStdString();
        EXPECT_TRUE(bad.err.contains(QStringLiteral("usage: nmnote"))) << line.toStdString();
    }
}

TEST_F(NmnoteTest, AFileThatCannotBeReadExitsWithOne)
{
    const QString missing = m_other.filePath(QStringLiteral("none"));
    for (const QString& verb :
        {QStringLiteral("parse"), QStringLiteral("read"), QStringLiteral("text"),
            QStringLiteral("save"), QStringLiteral("md5"), QStringLiteral("names")}) {
        const Ran failed = runHere({verb, missing});
        EXPECT_EQ(failed.code, 1) << verb.toStdString();
        EXPECT_EQ(failed.out, QString());
        EXPECT_TRUE(failed.err.contains(missing));
        EXPECT_FALSE(failed.err.contains(QStringLiteral("usage")));
    }
}

TEST_F(NmnoteTest, OutputThatCannotBeWrittenExitsWithOne)
{
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(NOMAR_NMNOTE), {QStringLiteral("text"), file("a")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains("cannot write the output"));
}

TEST_F(NmnoteTest, ParsePrintsTheRecordsInTheirOrderWithTheNamesOfTheirFields)
{
    const QString name = QStringLiteral("报告 \"1\".pdf");
    const QString path = file("<!--{\"ver_number\":2}-->"
        + attachment(QStringLiteral("aa.pdf"), QStringLiteral("bb.bmp"), name).toUtf8());
    const Ran parsed =
        runHere({QStringLiteral("parse"), QStringLiteral("--guid"), QStringLiteral("g"), path});
    const QJsonArray records = json(parsed).array();
    ASSERT_EQ(records.size(), 2);
    const QJsonObject expected{{QStringLiteral("origName"), name},
        {QStringLiteral("spareText"), QString()}, {QStringLiteral("fileType"), 2},
        {QStringLiteral("modifyTime"), QString()},
        {QStringLiteral("fileExt"), QStringLiteral("pdf")},
        {QStringLiteral("fileName"), QStringLiteral("aa.pdf")},
        {QStringLiteral("filePath"), m_store.path(QStringLiteral("g/") + name)},
        {QStringLiteral("isSrcFile"), 0}};
    EXPECT_EQ(records[0].toObject(), expected);
    EXPECT_EQ(records[1][QStringLiteral("fileName")].toString(), QStringLiteral("bb.bmp"));
    EXPECT_EQ(
        records[1][QStringLiteral("filePath")].toString(), m_store.path(QStringLiteral("bb.bmp")));
    EXPECT_TRUE(parsed.out.startsWith(QStringLiteral("[{\"origName\":")));
}

TEST_F(NmnoteTest, ParseOfANoteWithoutAttachmentsPrintsAnEmptyArray)
{
    EXPECT_EQ(runHere({QStringLiteral("parse"), file("text")}).out, QStringLiteral("[]\n"));
}

TEST_F(NmnoteTest, ReadPrintsVersionAndTextWhateverTheTextHolds)
{
    const QString html = QStringLiteral("<p class=\"a\\b\">\t笔记\u0001\r\n😀</p>\u007f");
    const Ran read =
        runHere({QStringLiteral("read"), file("<!--{\"ver_number\":7}-->" + html.toUtf8())});
    EXPECT_EQ(json(read).object(),
        (QJsonObject{{QStringLiteral("version"), 7}, {QStringLiteral("html"), html}}));
    EXPECT_TRUE(read.out.startsWith(QStringLiteral("{\"version\":7,\"html\":\"")));
    EXPECT_EQ(runHere({QStringLiteral("read"), file("")}).out,
        QStringLiteral("{\"version\":0,\"html\":\"\"}\n"));
}

TEST_F(NmnoteTest, TextPrintsThePlainTextOfTheBody)
{
    EXPECT_EQ(runHere({QStringLiteral("text"),
                          file("<!--{\"ver_number\":2}--><p>a &amp; 笔记</p><p>b</p>")})
                  .out,
        QStringLiteral("a & 笔记\nb\n"));
}

TEST_F(NmnoteTest, SaveFilesTheNoteAndPrintsItsRecord)
{
    const Ran saved = runHere({QStringLiteral("save"), file("<!--{\"ver_number\":7}-->text")});
    const QJsonObject record = json(saved).object();
    const QString name = record[QStringLiteral("fileName")].toString();
    EXPECT_EQ(m_store.names(), QStringList(name));
    EXPECT_EQ(record[QStringLiteral("filePath")].toString(), m_store.path(name));
    EXPECT_EQ(readFile(m_store.path(name)), "<!--{\"ver_number\":7}-->text");
}

TEST_F(NmnoteTest, SaveUpgradesAnOldNoteUnlessTheVersionSaysOtherwise)
{
    const QString path = file("<img class='a/b.png'>");
    const auto savedBytes = [&](const QStringList& arguments) {
        const QJsonObject record = json(runHere(arguments)).object();
        return readFile(record[QStringLiteral("filePath")].toString());
    };
    EXPECT_TRUE(savedBytes({QStringLiteral("save"), path}).contains("nm_exdata"));
    EXPECT_EQ(savedBytes(
                  {QStringLiteral("save"), path, QStringLiteral("--version"), QStringLiteral("2")}),
        "<!--{\"ver_number\":2}--><img class='a/b.png'>");
}

TEST_F(NmnoteTest, SaveThatCannotFileTheNoteExitsWithOne)
{
    QDir(m_store.appDir() + QStringLiteral("userdata")).removeRecursively();
    writeFile(m_store.appDir() + QStringLiteral("userdata"), "in the way");
    const Ran failed = runHere({QStringLiteral("save"), file("a")});
    EXPECT_EQ(failed.code, 1);
    EXPECT_TRUE(failed.err.contains(QStringLiteral("cannot file the note")));
    const QByteArray log = readFile(m_store.appDir() + QStringLiteral("NomarEditor.log"));
    EXPECT_TRUE(log.contains("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!\r\n"));
}

TEST_F(NmnoteTest, Md5PrintsWhatMd5sumPrints)
{
    QStringList paths;
    for (const QString& name : {QStringLiteral("plain"), QStringLiteral("笔记 x"),
             QStringLiteral("back\\slash"), QStringLiteral("line\nend"), QStringLiteral("c\rr")}) {
        paths += m_other.filePath(name);
        writeFile(paths.back(), name.toUtf8());
    }
    QProcess peer;
    peer.start(QStringLiteral("md5sum"), paths);
    ASSERT_TRUE(peer.waitForFinished());
    const Ran ours = runHere(QStringList(QStringLiteral("md5")) + paths);
    EXPECT_EQ(ours.code, 0);
    EXPECT_EQ(ours.out, QString::fromUtf8(peer.readAllStandardOutput()));
}

TEST_F(NmnoteTest, Md5GoesOnBehindAFileItCannotRead)
{
    const Ran some = runHere({QStringLiteral("md5"), m_store.store(), file("")});
    EXPECT_EQ(some.code, 1);
    EXPECT_TRUE(some.out.startsWith(QStringLiteral("d41d8cd98f00b204e9800998ecf8427e  ")));
}

class NmnoteCheckTest : public NmnoteTest {
protected:
    // What it found, without the summary.
    QStringList check(int code)
    {
        const Ran checked = runHere({QStringLiteral("check")});
        EXPECT_EQ(checked.code, code) << checked.out.toStdString() << checked.err.toStdString();
        QStringList lines = checked.out.split(u'\n', Qt::SkipEmptyParts);
        m_summary = lines.isEmpty() ? QString() : lines.takeLast();
        return lines;
    }

    QString m_summary;
};

TEST_F(NmnoteCheckTest, AHealthyStoreHasNoFindings)
{
    const QString picture = filed("picture", QStringLiteral(".png"));
    const QString card = filed("card", QStringLiteral(".bmp"));
    working(QStringLiteral("g"), QStringLiteral("p.png"), "picture");
    working(QStringLiteral("g"), QStringLiteral("报告.pdf"), "anything");
    filedNote(attachment(picture, picture, QStringLiteral("p.png"))
        + attachment(QStringLiteral("aa.pdf"), card, QStringLiteral("报告.pdf")));
    EXPECT_EQ(check(0), QStringList());
    EXPECT_EQ(m_summary, QStringLiteral("3 files, 1 of them notes; 0 findings"));
}

TEST_F(NmnoteCheckTest, AFileWithAnotherDigestIsDamaged)
{
    const QString name = filed("before", QStringLiteral(".png"));
    m_store.write(name, "after");
    const QString torn = filedNote(QStringLiteral("long text"));
    m_store.write(torn, "<!--{\"ver");
    const QStringList findings = check(1);
    ASSERT_EQ(findings.size(), 2);
    const QString text = findings.join(u'\n');
    EXPECT_TRUE(text.contains(QStringLiteral("damaged: %1 (its digest is ").arg(name)));
    EXPECT_TRUE(text.contains(QStringLiteral("damaged: %1 (its digest is ").arg(torn)));
}

TEST_F(NmnoteCheckTest, WhatIsNoFileUnderADigestNameIsDamaged)
{
    const QString name = QString(32, u'a') + QStringLiteral(".png");
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(m_store.path(name))), 0);
    EXPECT_EQ(check(1), QStringList(QStringLiteral("damaged: %1 (cannot be read)").arg(name)));
}

TEST_F(NmnoteCheckTest, ATemporaryIsALeftoverAndNothingWrong)
{
    const QString name = QString(32, u'b') + QStringLiteral(".tmp");
    m_store.write(name, "half");
    EXPECT_EQ(check(0), QStringList(QStringLiteral("leftover: ") + name));
}

TEST_F(NmnoteCheckTest, AShownFileThatIsNotThereIsMissing)
{
    working(QStringLiteral("g"), QStringLiteral("a.pdf"), "x");
    const QString note = filedNote(
        attachment(QStringLiteral("aa.pdf"), QStringLiteral("card.bmp"), QStringLiteral("a.pdf")));
    EXPECT_EQ(check(1), QStringList(QStringLiteral("missing: card.bmp (wanted by %1)").arg(note)));
}

TEST_F(NmnoteCheckTest, AnAttachmentIsMissingOnlyIfNoFolderHoldsItsName)
{
    const QString card = filed("card", QStringLiteral(".bmp"));
    const QString note =
        filedNote(attachment(QStringLiteral("aa.pdf"), card, QStringLiteral("a.pdf")));
    EXPECT_EQ(check(1), QStringList(QStringLiteral("missing: a.pdf (wanted by %1)").arg(note)));
    working(QStringLiteral("other"), QStringLiteral("a.pdf"), "x");
    EXPECT_EQ(check(0), QStringList());
}

TEST_F(NmnoteCheckTest, AHostileNameIsMissingAndNotLookedForOutsideTheStore)
{
    const QString card = filed("card", QStringLiteral(".bmp"));
    const QString note = filedNote(
        attachment(QStringLiteral("aa.pdf"), card, QStringLiteral("../../../etc/hostname")));
    EXPECT_EQ(check(1),
        QStringList(QStringLiteral("missing: ../../../etc/hostname (wanted by %1)").arg(note)));
}

TEST_F(NmnoteCheckTest, APictureWhoseWorkingCopyDiffersIsOfItsOwnKind)
{
    const QString picture = filed("picture", QStringLiteral(".png"));
    working(QStringLiteral("g"), QStringLiteral("p.png"), "edited");
    filedNote(attachment(picture, picture, QStringLiteral("p.png")));
    filedNote(QStringLiteral("x") + attachment(picture, picture, QStringLiteral("p.png")));
    EXPECT_EQ(
        check(0), QStringList(QStringLiteral("changed: g/p.png (the note shows %1)").arg(picture)));
    working(QStringLiteral("h"), QStringLiteral("p.png"), "picture");
    EXPECT_EQ(check(0), QStringList());
}

TEST_F(NmnoteCheckTest, AStoreMayBeNamed)
{
    QTemporaryDir empty;
    const Ran named = run({QStringLiteral("check"), empty.path()});
    EXPECT_EQ(named.code, 0);
    EXPECT_EQ(named.out, QStringLiteral("0 files, 0 of them notes; 0 findings\n"));
}

TEST_F(NmnoteCheckTest, AStoreThatIsNotThereExitsWithOneAndIsNotMade)
{
    QDir(m_store.appDir() + QStringLiteral("userdata")).removeRecursively();
    const Ran failed = runHere({QStringLiteral("check")});
    EXPECT_EQ(failed.code, 1);
    EXPECT_TRUE(failed.err.contains(QStringLiteral("cannot read the store")));
    EXPECT_FALSE(QFileInfo::exists(m_store.store()));
}
