#include "tools/NmnoteFixture.h"

#include "noteattach/Elements.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

namespace {

class SyncVerbTest : public NmnoteTest {
protected:
    Ran sync(const QString& note, const QString& attachment)
    {
        return runHere({QStringLiteral("sync"), QStringLiteral("--note"), note,
            QStringLiteral("--attachment"), attachment});
    }

    QString note(const QString& html) { return m_store.path(filedNote(html)); }

    static QString complaints(const Ran& ran)
    {
        const qsizetype start = ran.err.indexOf(QStringLiteral("nmnote: "));
        return start < 0 ? QString() : ran.err.sliced(start);
    }

    const QString m_element =
        attachment(QStringLiteral("old.txt"), QStringLiteral("old.bmp"), QStringLiteral("a.txt"));
};

} // namespace

TEST_F(SyncVerbTest, TheNoteNamesTheNewContentAndIsFiledAnew)
{
    const QString old = note(QStringLiteral("<p>x") + m_element + QStringLiteral("</p>"));
    const QString copy = working(QStringLiteral("guid"), QStringLiteral("a.txt"), "new content");
    const QJsonArray records = json(sync(old, copy)).array();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records[0][QStringLiteral("fileType")].toInt(), 0);
    EXPECT_EQ(
        records[1][QStringLiteral("fileName")].toString(), FileMd5(copy) + QStringLiteral(".txt"));
    EXPECT_EQ(records[1][QStringLiteral("filePath")].toString(), copy);
    const QString card = m_store.path(records[2][QStringLiteral("fileName")].toString());
    EXPECT_EQ(QFileInfo(card).fileName(), FileMd5(card) + QStringLiteral(".bmp"));
    const QString text =
        QString::fromUtf8(readFile(records[0][QStringLiteral("filePath")].toString()));
    EXPECT_TRUE(text.contains(FileMd5(copy) + QStringLiteral(".txt")));
    EXPECT_FALSE(text.contains(QStringLiteral("old.")));
    EXPECT_TRUE(QFile::exists(old));
}

TEST_F(SyncVerbTest, APictureComesUnderItsDigestAndASecondTimeNothingChanges)
{
    const QString old = note(
        attachment(QStringLiteral("old.png"), QStringLiteral("old.png"), QStringLiteral("p.png")));
    const QString copy = working(QStringLiteral("guid"), QStringLiteral("p.png"), "picture");
    const QJsonArray records = json(sync(old, copy)).array();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(readFile(m_store.path(FileMd5(copy) + QStringLiteral(".png"))), "picture");
    const Ran again = sync(records[0][QStringLiteral("filePath")].toString(), copy);
    EXPECT_EQ(again.code, 0);
    EXPECT_EQ(again.out, QStringLiteral("[]\n"));
}

TEST_F(SyncVerbTest, ARelativePathIsTakenFromTheWorkingDirectory)
{
    const QString old = note(m_element);
    working(QStringLiteral("guid"), QStringLiteral("a.txt"), "new");
    QProcess process;
    process.setWorkingDirectory(m_store.path(QStringLiteral("guid")));
    process.start(QStringLiteral(NOMAR_NMNOTE),
        {QStringLiteral("--app-dir"), m_store.appDir(), QStringLiteral("sync"),
            QStringLiteral("--note"), old, QStringLiteral("--attachment"),
            QStringLiteral("a.txt")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
}

TEST_F(SyncVerbTest, ANoteWithoutTheAttachmentIsToldAndStays)
{
    const QString old = note(m_element);
    const QString copy = working(QStringLiteral("guid"), QStringLiteral("b.png"), "new");
    const Ran failed = sync(old, copy);
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.out, QString());
    EXPECT_EQ(
        complaints(failed), QStringLiteral("nmnote: '%1' has no attachment 'b.png'\n").arg(old));
}

TEST_F(SyncVerbTest, WhatIsNoWorkingCopyIsBadUse)
{
    const QString old = note(m_element);
    const QStringList names = m_store.names();
    for (const QString& path : {m_other.filePath(QStringLiteral("a.txt")), old, QString(),
             m_store.path(QStringLiteral("guid/sub/a.txt"))}) {
        const Ran bad = sync(old, path);
        EXPECT_EQ(bad.code, 2) << path.toStdString();
        EXPECT_EQ(bad.out, QString());
    }
    EXPECT_EQ(m_store.names(), names);
}

TEST_F(SyncVerbTest, AMissingNoteOrAttachmentFailsAndFilesNothing)
{
    const QString old = note(m_element);
    const QString copy = working(QStringLiteral("guid"), QStringLiteral("a.txt"), "new");
    const QStringList names = m_store.names();
    EXPECT_EQ(sync(m_store.path(QStringLiteral("none.html")), copy).code, 1);
    EXPECT_EQ(sync(QString(), copy).code, 1);
    EXPECT_EQ(sync(old, m_store.path(QStringLiteral("guid/none.txt"))).code, 1);
    QDir(m_store.store()).mkdir(QStringLiteral("guid/folder"));
    EXPECT_EQ(sync(old, m_store.path(QStringLiteral("guid/folder"))).code, 1);
    EXPECT_EQ(m_store.names(), names);
}
