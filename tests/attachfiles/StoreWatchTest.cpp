// What others do to working copies, by a second process, and what of it is told.

#include "attachfiles/Watching.h"

#include <QCryptographicHash>

namespace {

QString digestOf(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

const QString kG = QStringLiteral("g");
const QString kA = QStringLiteral("a.txt");
const QStringList kOnlyA{QStringLiteral("g/a.txt")};

using StoreWatchTest = Watching;

} // namespace

TEST_F(StoreWatchTest, AChangeIsToldWithAllThatBelongsToIt)
{
    start();
    EXPECT_EQ(folders(), 1);
    sh(QStringLiteral("printf after > g/a.txt"));
    settle();
    ASSERT_EQ(toldNames(), kOnlyA);
    const ChangedCopy change = changes()[0];
    EXPECT_EQ(change.path, store + QStringLiteral("/g/a.txt"));
    EXPECT_EQ(change.noteGuid, kG);
    EXPECT_EQ(change.name, kA);
    EXPECT_EQ(change.md5, digestOf("after"));
    EXPECT_EQ(change.stamp, FileStamp::of(change.path));
}

TEST_F(StoreWatchTest, ATemporaryThatIsRenamedToTheNameIsOneChange)
{
    start();
    sh(QStringLiteral("printf one > g/.a.txt.X && mv g/.a.txt.X g/a.txt"));
    settle();
    sh(QStringLiteral("mv g/a.txt g/a.bak && printf two > g/new.tmp && mv g/new.tmp g/a.txt"));
    settle();
    sh(QStringLiteral("printf three > ../x && mv ../x g/a.txt && rm g/a.bak"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList({digestOf("one"), digestOf("two"), digestOf("three")}));
    EXPECT_EQ(toldNames().size(), 3);
}

TEST_F(StoreWatchTest, AFileThatIsWrittenInPiecesIsToldWhenItsWriterHasFinished)
{
    start();
    QProcess writer;
    writer.setWorkingDirectory(store);
    writer.start(QStringLiteral("/bin/bash"),
        {QStringLiteral("-c"),
            QStringLiteral(
                "exec 3> g/a.txt; printf one >&3; read; printf two >&3; read; exec 3>&-")});
    ASSERT_TRUE(waitFor([&] { return QFile(store + QStringLiteral("/g/a.txt")).size() == 3; }));
    settle();
    writer.write("\n");
    ASSERT_TRUE(waitFor([&] { return QFile(store + QStringLiteral("/g/a.txt")).size() == 6; }));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    writer.write("\n");
    ASSERT_TRUE(writer.waitForFinished());
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("onetwo")));
}

TEST_F(StoreWatchTest, SeveralClosesInShortOrderAreOneChangeWithTheFinalContent)
{
    times.settling.quiet = std::chrono::milliseconds(1000); // however slow the second process is
    start();
    sh(QStringLiteral("for i in 1 2 3 4 5 6 7 8 9; do printf $i >> g/a.txt; done"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("before123456789")));
}

TEST_F(StoreWatchTest, AFileThatIsEmptiedFirstAndWrittenBehindItIsOneChange)
{
    times.settling.quietEmpty = std::chrono::milliseconds(5000);
    start();
    sh(QStringLiteral(": > g/a.txt"));
    settle(); // longer than a file with something in it needs
    EXPECT_EQ(toldNames(), QStringList());
    sh(QStringLiteral("printf after > g/a.txt"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("after")));
}

TEST_F(StoreWatchTest, AFileThatStaysEmptyIsToldInTheEnd)
{
    start();
    sh(QStringLiteral(": > g/a.txt"));
    ASSERT_TRUE(waitFor([&] { return !told(kG, kA).isEmpty(); }));
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("")));
}

TEST_F(StoreWatchTest, TwoChangesOneBehindTheOtherAreBothToldTheLatestLast)
{
    start();
    sh(QStringLiteral("printf one > g/a.txt"));
    ASSERT_TRUE(waitFor([&] { return told(kG, kA).size() == 1; }));
    sh(QStringLiteral("printf two > g/a.txt"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList({digestOf("one"), digestOf("two")}));
}

TEST_F(StoreWatchTest, FilesThatComeAndFilesThatGoAreNotTold)
{
    start();
    sh(QStringLiteral("printf x > g/new.txt; ln g/a.txt g/link.txt; rm g/link.txt; "
                      "mv g/a.txt g/other.txt; rm g/other.txt"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    // From then on it is there.
    sh(QStringLiteral("printf y > g/new.txt"));
    settle();
    EXPECT_EQ(toldNames(), QStringList(QStringLiteral("g/new.txt")));
}

TEST_F(StoreWatchTest, AFileThatGoesAndComesBackWithAnotherContentIsTold)
{
    start();
    sh(QStringLiteral("rm g/a.txt"));
    settle();
    sh(QStringLiteral("printf after > g/a.txt"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("after")));
}

TEST_F(StoreWatchTest, TheExtensionTmpIsLeftOutInWhateverCase)
{
    sh(QStringLiteral("touch g/a.tmp g/B.TMP g/report.tmp.docx g/tmp"));
    start();
    sh(QStringLiteral("for f in a.tmp B.TMP report.tmp.docx tmp; do printf x > g/$f; done"));
    settle();
    QStringList names = toldNames();
    names.sort();
    EXPECT_EQ(names, QStringList({QStringLiteral("g/report.tmp.docx"), QStringLiteral("g/tmp")}));
}

TEST_F(StoreWatchTest, FilesInTheRootOfTheStoreAndInDeeperFoldersAreNoWorkingCopies)
{
    sh(QStringLiteral("mkdir g/sub && printf x > g/sub/a.txt && printf x > 0123.bmp"));
    start();
    sh(QStringLiteral("printf y > g/sub/a.txt; printf y > 0123.bmp; mkdir g/sub2; printf z > "
                      "g/sub2/b; printf z > g/sub2/b"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    EXPECT_EQ(faults.watches, 2); // one for the store and one for the note's folder
}

TEST_F(StoreWatchTest, TheSameContentOnceMoreIsNotToldAgain)
{
    start();
    sh(QStringLiteral("printf after > g/a.txt"));
    settle();
    sh(QStringLiteral("printf after > g/a.txt; touch g/a.txt"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("after")));
}

TEST_F(StoreWatchTest, AFileThatIsOpenedForWritingAndClosedAsItWasIsNotTold)
{
    start();
    sh(QStringLiteral("exec 3<> g/a.txt; exec 3>&-; mv g/a.txt g/b.txt; mv g/b.txt g/a.txt"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
}

TEST_F(StoreWatchTest, WhatEditorsLeaveBesideAFileIsNeverTold)
{
    start();
    sh(QStringLiteral("for i in 1 2; do printf $i > g/a.txt~; printf $i > g/.a.txt.swp; "
                      "printf $i > 'g/#a.txt#'; done"));
    settle();
    sh(QStringLiteral("printf 3 > g/a.txt~; printf 3 > g/.a.txt.swp; printf 3 > 'g/#a.txt#'"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
}

TEST_F(StoreWatchTest, ANameThatIsNotUtf8IsLeftAlone)
{
    sh(QStringLiteral("printf x > $'g/\\xff.txt'"));
    start();
    sh(QStringLiteral("printf y > $'g/\\xff.txt'"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    sh(QStringLiteral("rm $'g/\\xff.txt'")); // nor can the test's own clearing name it
}

TEST_F(StoreWatchTest, AFolderOrAPipeInThePlaceOfTheFileIsNotTold)
{
    start();
    sh(QStringLiteral("rm g/a.txt && mkdir g/a.txt"));
    settle();
    sh(QStringLiteral("rmdir g/a.txt && mkfifo g/a.txt"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    sh(QStringLiteral("rm g/a.txt && printf after > g/a.txt"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("after")));
}

TEST_F(StoreWatchTest, ALinkStandsForTheFileItLeadsTo)
{
    start();
    sh(QStringLiteral("printf elsewhere > ../b.txt; ln -sf ../../b.txt g/a.txt; mv g/a.txt g/l; "
                      "mv g/l g/a.txt"));
    settle();
    EXPECT_EQ(told(kG, kA), QStringList(digestOf("elsewhere")));
}

TEST_F(StoreWatchTest, TheDigestOfAFileWithoutEndDoesNotKeepTheEndWaiting)
{
    start();
    const QString path = store + QStringLiteral("/g/a.txt");
    sh(QStringLiteral("truncate -s 4T g/a.txt || truncate -s 1T g/a.txt"));
    const auto isBeingRead = [&] {
        const QDir open(QStringLiteral("/proc/self/fd"));
        for (const QString& descriptor :
            open.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
            if (QFile::symLinkTarget(open.filePath(descriptor)) == path)
                return true;
        }
        return false;
    };
    ASSERT_TRUE(waitFor(isBeingRead));
    stop();
    EXPECT_EQ(toldNames(), QStringList());
}
