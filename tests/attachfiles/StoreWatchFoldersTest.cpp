// Folders that come and go, events that are lost, watches that are not to be had.

#include "attachfiles/Watching.h"

#include "kit/LogLines.h"

#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace {

struct StoreWatchFoldersTest : Watching {
    /// Nobody says when a store is watched again, so that a first change may come too early.
    bool changesAreTold()
    {
        const qsizetype before = toldNames().size();
        for (int turn = 0; turn < 40; ++turn) {
            sh(QStringLiteral("printf %1 > g/a.txt").arg(turn));
            if (waitFor([&] { return toldNames().size() > before; }, 500))
                return true;
        }
        return false;
    }
    /// Watches the real store, which gets the mark that `settle` needs.
    void startAtTheStore()
    {
        store = GetAttachmentDir();
        sh(QStringLiteral("mkdir -p g && printf 0 > g/mark"));
        start();
    }
    void importPicture(const QString& guid)
    {
        const QString source = dir.filePath(QStringLiteral("p.png"));
        QFile file(source);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("picture");
        file.close();
        MAF_RESULT imported;
        ASSERT_EQ(attachstore::MoveAttFile(guid, *attachstore::RecordOfPath(source), imported), 1);
    }
};

const QStringList kUnreadable{QStringLiteral(
    "[ERROR] AttachFileWatcher cannot watch all folders of the store (error code 24); it looks "
    "through the others every few seconds")};
const QStringList kOnlyA{QStringLiteral("g/a.txt")};
const QStringList kOnlyB{QStringLiteral("n/b.txt")};

} // namespace

TEST_F(StoreWatchFoldersTest, FilesThatCameWithANewFolderAreKnown)
{
    start();
    sh(QStringLiteral("mkdir n && printf x > n/b.txt && printf y > n/c.txt"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    sh(QStringLiteral("printf after > n/b.txt"));
    settle();
    EXPECT_EQ(toldNames(), kOnlyB);
}

TEST_F(StoreWatchFoldersTest, AFolderThatIsMovedInIsWatchedAndOneThatIsMovedOutIsNot)
{
    sh(QStringLiteral("mkdir ../n && printf x > ../n/b.txt"));
    start();
    sh(QStringLiteral("mv ../n n"));
    settle();
    sh(QStringLiteral("printf y > n/b.txt"));
    settle();
    EXPECT_EQ(toldNames(), kOnlyB);
    sh(QStringLiteral("mv n ../n && printf z > ../n/b.txt"));
    settle();
    EXPECT_EQ(toldNames(), kOnlyB);
    EXPECT_EQ(faults.watches, 2);
}

TEST_F(StoreWatchFoldersTest, AFolderThatIsRenamedIsTheNoteOfItsNewName)
{
    sh(QStringLiteral("mkdir m && printf x > m/b.txt"));
    start();
    sh(QStringLiteral("mv m n"));
    settle();
    sh(QStringLiteral("printf y > n/b.txt"));
    settle();
    EXPECT_EQ(toldNames(), kOnlyB);
}

TEST_F(StoreWatchFoldersTest, AFolderThatIsDeletedAndMadeAnewIsWatched)
{
    sh(QStringLiteral("mkdir n && printf x > n/b.txt"));
    start();
    sh(QStringLiteral("rm -r n && mkdir n && printf y > n/b.txt"));
    settle();
    EXPECT_EQ(toldNames(), QStringList());
    sh(QStringLiteral("printf z > n/b.txt"));
    settle();
    EXPECT_EQ(toldNames(), kOnlyB);
    EXPECT_EQ(faults.watches, 3);
}

TEST_F(StoreWatchFoldersTest, AStoreThatIsDeletedAndMadeAnewIsWatched)
{
    start();
    for (const char* how : {"cd .. && rm -r attachment && mkdir -p attachment/g",
             "cd ../.. && rm -r userdata && mkdir -p userdata/attachment/g",
             "cd .. && mv attachment old && mkdir -p attachment/g && printf x > old/g/a.txt"}) {
        sh(QLatin1StringView(how));
        sh(QStringLiteral("mkdir -p g && printf known > g/a.txt && printf known > g/mark"));
        ASSERT_TRUE(changesAreTold()) << how;
        EXPECT_EQ(toldNames().back(), QStringLiteral("g/a.txt"));
        EXPECT_EQ(faults.watches, 2) << how;
    }
}

TEST_F(StoreWatchFoldersTest, AStoreThatIsMissingAtTheStartIsWatchedWhenItComes)
{
    const QString missing = dir.filePath(QStringLiteral("later/userdata/attachment"));
    start(missing);
    EXPECT_EQ(folders(), 0);
    store = missing;
    sh(QStringLiteral("mkdir -p g"));
    EXPECT_TRUE(changesAreTold());
}

TEST_F(StoreWatchFoldersTest, WhatHappenedWhileEventsWereLostIsFoundByComparing)
{
    sh(QStringLiteral("mkdir n old && printf x > n/b.txt && printf x > old/c.txt"));
    start();
    faults.losing = true;
    sh(QStringLiteral("printf y > g/a.txt; printf y > n/b.txt; rm -r old; mkdir new; "
                      "printf x > new/d.txt"));
    ASSERT_TRUE(waitFor([&] { return faults.lost > 0 && toldNames().size() >= 2; }));
    faults.losing = false;
    settle();
    QStringList names = toldNames();
    names.sort();
    EXPECT_EQ(names, kOnlyA + kOnlyB);
    // What came meanwhile is watched, what went is not.
    sh(QStringLiteral("printf y > new/d.txt"));
    settle();
    EXPECT_EQ(toldNames().back(), QStringLiteral("new/d.txt"));
    EXPECT_EQ(faults.watches, 4);
}

TEST_F(StoreWatchFoldersTest, ABurstOfChangesIsToldWholeEachFileOnce)
{
    sh(QStringLiteral("mkdir n; for i in {1..300}; do printf x > n/$i; done"));
    start();
    faults.losing = true;
    sh(QStringLiteral("for i in {1..300}; do printf after > n/$i; done"));
    ASSERT_TRUE(waitFor([&] { return toldNames().size() >= 300; }));
    settle();
    QStringList names = toldNames();
    EXPECT_EQ(names.size(), 300);
    EXPECT_EQ(names.removeDuplicates(), 0);
}

TEST_F(StoreWatchFoldersTest, FoldersBeyondTheLimitAreLookedThroughAndToldOfOnce)
{
    sh(QStringLiteral("mkdir n o; printf x > n/b.txt; printf x > o/c.txt"));
    LogLines log;
    faults.limit = 0;
    start();
    EXPECT_EQ(folders(), 3);
    sh(QStringLiteral("printf y > n/b.txt; printf y > o/c.txt; mkdir p; printf x > p/d.txt"));
    ASSERT_TRUE(waitFor([&] { return toldNames().size() == 2; }));
    settle();
    sh(QStringLiteral("printf y > p/d.txt"));
    ASSERT_TRUE(waitFor([&] { return toldNames().size() == 3; }));
    EXPECT_EQ(log.take(),
        QStringList(QStringLiteral(
            "[ERROR] AttachFileWatcher cannot watch all folders of the store (the limit "
            "fs.inotify.max_user_watches is reached); it looks through the others every few "
            "seconds")));
    // As soon as there are watches to be had, all are watched.
    faults.limit = 100;
    EXPECT_TRUE(waitFor([&] { return faults.watches == 5; }));
}

TEST_F(StoreWatchFoldersTest, AStoreThatCannotBeReadAtTheStartIsWatchedLaterAndToldOfOnce)
{
    LogLines log;
    faults.starvingAdd = 1;
    start();
    EXPECT_EQ(folders(), 0);
    EXPECT_TRUE(changesAreTold());
    EXPECT_EQ(log.take(), kUnreadable);
}

TEST_F(StoreWatchFoldersTest, AFolderThatCannotBeReadAtTheStartIsReadLaterAndToldOfOnce)
{
    LogLines log;
    faults.starvingAdd = 2;
    start();
    ASSERT_TRUE(waitFor([&] { return faults.adds > 2; })); // it is looked at again
    EXPECT_TRUE(changesAreTold());
    EXPECT_EQ(log.take(), kUnreadable);
}

TEST_F(StoreWatchFoldersTest, WithoutADescriptorForItsEndItWatchesNothingSaysSoAndEnds)
{
    LogLines log;
    auto events = std::make_unique<FaultyEvents>(faults);
    {
        const NoDescriptors none;
        make({}, std::move(events));
    }
    EXPECT_EQ(log.take(),
        QStringList(QStringLiteral(
            "[ERROR] AttachFileWatcher has no event descriptor and watches nothing")));
    stop();
    EXPECT_EQ(folders(), -1);
}

TEST_F(StoreWatchFoldersTest, TheLibrarysOwnWritesAreNotToldAndLaterChangesOfThemAre)
{
    startAtTheStore();
    const QString guid = CreateGuidString();
    importPicture(guid);
    settle();
    EXPECT_EQ(toldNames(), QStringList());

    sh(QStringLiteral("printf changed > %1/p.png").arg(guid));
    settle();
    EXPECT_EQ(toldNames(), QStringList(guid + QStringLiteral("/p.png")));

    // Taken out by the host and imported again.
    sh(QStringLiteral("rm %1/p.png").arg(guid));
    importPicture(guid);
    settle();
    EXPECT_EQ(toldNames().size(), 1);
    sh(QStringLiteral("rm -r %1 g").arg(guid));
}

TEST_F(StoreWatchFoldersTest, AChangeRightBehindAnImportIsTold)
{
    startAtTheStore();
    const QString guid = CreateGuidString();
    importPicture(guid);
    sh(QStringLiteral("printf changed > %1/p.png").arg(guid));
    settle();
    EXPECT_EQ(toldNames(), QStringList(guid + QStringLiteral("/p.png")));
    sh(QStringLiteral("rm -r %1 g").arg(guid));
}
