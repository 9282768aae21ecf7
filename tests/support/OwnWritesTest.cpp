#include "support/OwnWrites.h"

#include "support/DiskFile.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

namespace {

const QString kPath = QStringLiteral("/store/guid/a.txt");
constexpr FileStamp kStamp{3, 4};

} // namespace

TEST(OwnWritesTest, AWriteIsTakenOnce)
{
    const ownwrites::Watching watching;
    ownwrites::remember(kPath, kStamp);
    EXPECT_EQ(ownwrites::take(kPath + u'x'), std::nullopt);
    EXPECT_EQ(ownwrites::take(kPath), kStamp);
    EXPECT_EQ(ownwrites::take(kPath), std::nullopt);
}

TEST(OwnWritesTest, OfTwoWritesTheLaterCounts)
{
    const ownwrites::Watching watching;
    ownwrites::remember(kPath, {1, 1});
    ownwrites::remember(kPath, kStamp);
    EXPECT_EQ(ownwrites::take(kPath), kStamp);
    EXPECT_EQ(ownwrites::take(kPath), std::nullopt);
}

TEST(OwnWritesTest, NothingIsRememberedWhileNobodyWatches)
{
    ownwrites::remember(kPath, kStamp);
    {
        const ownwrites::Watching watching, second;
        EXPECT_EQ(ownwrites::take(kPath), std::nullopt);
        ownwrites::remember(kPath, kStamp);
    }
    const ownwrites::Watching watching;
    EXPECT_EQ(ownwrites::take(kPath), std::nullopt);
}

TEST(OwnWritesTest, TheOldestOfVeryManyIsDropped)
{
    const ownwrites::Watching watching;
    for (int i = 0; i <= 4096; ++i)
        ownwrites::remember(QString::number(i), kStamp);
    EXPECT_EQ(ownwrites::take(QStringLiteral("0")), std::nullopt);
    EXPECT_EQ(ownwrites::take(QStringLiteral("1")), kStamp);
}

TEST(OwnWritesTest, AFileThatComesIntoTheStoreIsThereUnderItsFinalName)
{
    const TestStore store;
    const ownwrites::Watching watching;
    UnfinishedFile file(store.write(QStringLiteral("x.tmp"), "content"));
    const QString path = store.path(QStringLiteral("final"));
    ASSERT_EQ(FinishDurably(file, path), 0);
    EXPECT_EQ(ownwrites::take(path), FileStamp::of(path));
}
