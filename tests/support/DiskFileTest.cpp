#include "support/DiskFile.h"

#include "support/FileSizeLimit.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QFile>

#include <cerrno>

TEST(OutputFile, WritesWhatItIsGiven)
{
    const TestStore store;
    const QString path = store.path(QStringLiteral("x"));
    OutputFile file;
    ASSERT_EQ(file.create(path), 0);
    EXPECT_EQ(file.write("ab", 2), 0);
    EXPECT_EQ(file.write("", 0), 0);
    EXPECT_EQ(file.write("cde", 3), 0);
    EXPECT_EQ(file.written(), 5);
    EXPECT_EQ(file.flushAndClose(), 0);
    EXPECT_EQ(readFile(path), "abcde");
}

TEST(OutputFile, EmptiesAFileThatIsThere)
{
    const TestStore store;
    const QString path = store.write(QStringLiteral("x"), "long before");
    OutputFile file;
    ASSERT_EQ(file.create(path), 0);
    EXPECT_EQ(file.flushAndClose(), 0);
    EXPECT_EQ(readFile(path), "");
}

TEST(OutputFile, APathThatCannotBeMadeIsAnError)
{
    const TestStore store;
    EXPECT_EQ(OutputFile().create(store.store()), EISDIR);
    EXPECT_EQ(OutputFile().create(store.path(QStringLiteral("none/x"))), ENOENT);
    EXPECT_EQ(OutputFile().create(QString()), ENOENT);
    EXPECT_EQ(OutputFile().create(store.path(QStringLiteral("a")) + QChar(u'\0')), ENOENT);
    EXPECT_TRUE(store.names().isEmpty());
}

TEST(OutputFile, AFullDiskIsAnError)
{
    OutputFile file;
    ASSERT_EQ(file.create(QStringLiteral("/dev/full")), 0);
    EXPECT_EQ(file.write("a", 1), ENOSPC);
}

TEST(OutputFile, AWriteThatStopsShortIsAnError)
{
    const TestStore store;
    const FileSizeLimit limit(1000);
    OutputFile file;
    ASSERT_EQ(file.create(store.path(QStringLiteral("x"))), 0);
    const QByteArray bytes(1500, 'x');
    EXPECT_EQ(file.write(bytes.constData(), 1500), EFBIG);
    EXPECT_EQ(file.written(), 1000);
}

TEST(OutputFile, AnEarlyStartOfTheFlushChangesNothing)
{
    const TestStore store;
    const QByteArray bytes(1 << 20, 'x');
    OutputFile file;
    ASSERT_EQ(file.create(store.path(QStringLiteral("x"))), 0);
    EXPECT_EQ(file.write(bytes.constData(), 1 << 20), 0);
    file.beginFlush();
    EXPECT_EQ(file.write("y", 1), 0);
    EXPECT_EQ(file.flushAndClose(), 0);
    EXPECT_EQ(readFile(store.path(QStringLiteral("x"))), bytes + 'y');
}

TEST(UnfinishedFile, GoesUnlessItGetsItsFinalName)
{
    const TestStore store;
    const QString taken = store.write(QStringLiteral("taken"), "t");
    for (const bool finished : {false, true}) {
        const QString path = store.write(QStringLiteral("x.tmp"), "x");
        UnfinishedFile file(path);
        EXPECT_EQ(file.finish(taken), EEXIST);
        if (finished) {
            EXPECT_EQ(file.finish(store.path(QStringLiteral("final"))), 0);
            writeFile(path, "somebody else's by now");
        }
    }
    EXPECT_EQ(store.names(),
        (QStringList{QStringLiteral("final"), QStringLiteral("taken"), QStringLiteral("x.tmp")}));
    EXPECT_EQ(readFile(taken), "t");
}

TEST(RenameNoReplace, GivesAnotherNameAndNeverTakesOne)
{
    const TestStore store;
    const QString a = store.write(QStringLiteral("a"), "a");
    const QString b = store.write(QStringLiteral("b"), "b");
    const QString c = store.path(QStringLiteral("c"));
    EXPECT_EQ(RenameNoReplace(a, b), EEXIST);
    EXPECT_EQ(readFile(a), "a");
    EXPECT_EQ(readFile(b), "b");
    EXPECT_EQ(RenameNoReplace(a, c), 0);
    EXPECT_EQ(store.names(), (QStringList{QStringLiteral("b"), QStringLiteral("c")}));
    EXPECT_EQ(RenameNoReplace(a, store.path(QStringLiteral("d"))), ENOENT);
    EXPECT_EQ(RenameNoReplace(c, c + QChar(u'\0')), ENOENT);
}

TEST(FlushDirectory, NeedsADirectory)
{
    const TestStore store;
    EXPECT_EQ(FlushDirectory(store.store()), 0);
    EXPECT_EQ(FlushDirectory(store.path(QStringLiteral("none"))), ENOENT);
    EXPECT_EQ(FlushDirectory(store.write(QStringLiteral("x"), "")), ENOTDIR);
}
