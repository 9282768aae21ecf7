#include "tools/NmnoteFixture.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

namespace {

class ImportVerbTest : public NmnoteTest {
protected:
    QString source(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_other.path() + u'/' + name;
        writeFile(path, bytes);
        return path;
    }

    Ran import(const QStringList& files)
    {
        return runHere(
            QStringList{QStringLiteral("import"), QStringLiteral("--note"), m_note} + files);
    }

    // Without what Qt may have to say about the surroundings.
    static QString complaints(const Ran& ran)
    {
        const qsizetype start = ran.err.indexOf(QStringLiteral("nmnote: "));
        return start < 0 ? QString() : ran.err.sliced(start);
    }

    const QString m_note = QStringLiteral("g");
};

} // namespace

TEST_F(ImportVerbTest, PrintsTheResultsInTheOrderOfTheFilesWithTheNamesOfTheirFields)
{
    const QString document = source(QStringLiteral("read me"), "document");
    const QString picture = source(QStringLiteral("图 \"1\".PNG"), "picture");
    const Ran imported = import({document, picture});
    EXPECT_EQ(complaints(imported), QString());
    const QJsonArray results = json(imported).array();
    ASSERT_EQ(results.size(), 2);

    const QString name = FileMd5(picture) + QStringLiteral(".png");
    const QJsonObject expected{{QStringLiteral("file"), picture},
        {QStringLiteral("attPath"), QStringLiteral("userdata\\attachment\\") + name},
        {QStringLiteral("attName"), name},
        {QStringLiteral("picPath"), QStringLiteral("../userdata\\attachment\\") + name},
        {QStringLiteral("picName"), name}, {QStringLiteral("picSize"), 7}};
    EXPECT_EQ(results[1].toObject(), expected);
    EXPECT_EQ(results[0][QStringLiteral("file")].toString(), document);
    EXPECT_EQ(results[0][QStringLiteral("attName")].toString(),
        FileMd5(document) + QStringLiteral(".unknow"));
    const QString card = m_store.path(results[0][QStringLiteral("picName")].toString());
    EXPECT_EQ(results[0][QStringLiteral("picSize")].toInt(), QFileInfo(card).size());
    EXPECT_EQ(QFileInfo(card).fileName(), FileMd5(card) + QStringLiteral(".bmp"));

    EXPECT_EQ(readFile(m_store.path(QStringLiteral("g/read me"))), "document");
    EXPECT_EQ(readFile(m_store.path(QStringLiteral("g/图 \"1\".PNG"))), "picture");
    EXPECT_EQ(readFile(m_store.path(name)), "picture");
}

TEST_F(ImportVerbTest, GoesOnBehindAFileThatFailsAndExitsWithOne)
{
    const QString missing = m_other.filePath(QStringLiteral("none"));
    const QString picture = source(QStringLiteral("a.png"), "picture");
    const Ran some = import({missing, m_other.path(), picture, QStringLiteral("/dev/zero")});
    EXPECT_EQ(some.code, 1);
    const QJsonArray results = QJsonDocument::fromJson(some.out.toUtf8()).array();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results[0][QStringLiteral("file")].toString(), picture);
    EXPECT_EQ(complaints(some),
        QStringLiteral("nmnote: cannot read '%1'\nnmnote: '%2' is a folder\n"
                       "nmnote: cannot read '/dev/zero'\n")
            .arg(missing, m_other.path()));
}

TEST_F(ImportVerbTest, AFailedImportIsLogged)
{
    writeFile(m_store.path(m_note), "in the way");
    const Ran failed = import({source(QStringLiteral("a.png"), "picture")});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.out, QStringLiteral("[]\n"));
    EXPECT_TRUE(failed.err.contains(QStringLiteral("cannot import")));
    const QByteArray log = readFile(m_store.appDir() + QStringLiteral("NomarEditor.log"));
    EXPECT_TRUE(log.contains("[ERROR] NmWebNoteHandler::MoveAttFile copy file fald ! \r\n"));
}

TEST_F(ImportVerbTest, AnotherFileOfThatNameInTheNoteStaysAndIsTold)
{
    ASSERT_EQ(import({source(QStringLiteral("a.png"), "first")}).code, 0);
    const Ran second = import({source(QStringLiteral("a.png"), "second")});
    EXPECT_EQ(second.code, 0);
    EXPECT_EQ(complaints(second),
        QStringLiteral("nmnote: the note has another 'a.png' already, which stays\n"));
    EXPECT_EQ(readFile(m_store.path(QStringLiteral("g/a.png"))), "first");
}

TEST_F(ImportVerbTest, AGuidThatNamesNoFolderOfTheStoreIsBadUse)
{
    const QString picture = source(QStringLiteral("a.png"), "picture");
    for (const QString& note : {QString(), QStringLiteral(".."), QStringLiteral("a/b")}) {
        const Ran bad =
            runHere({QStringLiteral("import"), QStringLiteral("--note"), note, picture});
        EXPECT_EQ(bad.code, 2) << note.toStdString();
        EXPECT_EQ(bad.out, QString());
    }
    EXPECT_EQ(m_store.names(), QStringList());
}

TEST_F(ImportVerbTest, AFileNameMayBeginWithADashBehindTwoDashes)
{
    QProcess process;
    process.setWorkingDirectory(m_other.path());
    source(QStringLiteral("--note.png"), "picture");
    process.start(QStringLiteral(NOMAR_NMNOTE),
        {QStringLiteral("--app-dir"), m_store.appDir(), QStringLiteral("import"),
            QStringLiteral("--note"), m_note, QStringLiteral("--"), QStringLiteral("--note.png")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    EXPECT_EQ(readFile(m_store.path(QStringLiteral("g/--note.png"))), "picture");
}
