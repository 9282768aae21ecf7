#include "attachstore/EntryRules.h"

#include <gtest/gtest.h>

#include <limits>

using namespace attachstore;

namespace {

constexpr quint64 kHuge = std::numeric_limits<quint64>::max();

DropFileInfo folder()
{
    DropFileInfo info;
    info.isFolder = true;
    info.fileSize = kHuge;
    return info;
}

struct Outcome {
    Refused refused;
    std::vector<quint64> sizes; // of the files that are left, in their order
};

Outcome outcomeOf(std::vector<DropFileInfo> files, quint64 total)
{
    Outcome outcome;
    outcome.refused = ApplyEntryRules(files, total);
    for (const DropFileInfo& file : files)
        outcome.sizes.push_back(file.fileSize);
    return outcome;
}

Outcome outcomeOfSizes(const std::vector<quint64>& sizes, quint64 total)
{
    std::vector<DropFileInfo> files;
    for (const quint64 size : sizes) {
        files.emplace_back();
        files.back().fileSize = size;
    }
    return outcomeOf(std::move(files), total);
}

using Sizes = std::vector<quint64>;
constexpr Refused kNothing{};
constexpr Refused kOverLimit{false, false, true};

} // namespace

TEST(ApplyEntryRules, TheLimitIsTenMebibytes)
{
    EXPECT_EQ(attachLimit, 10u * 1024 * 1024);
}

TEST(ApplyEntryRules, ExactlyTheLimitPassesAndOneByteMoreDoesNot)
{
    EXPECT_EQ(outcomeOfSizes(Sizes{attachLimit}, 0).sizes, Sizes{attachLimit});
    EXPECT_EQ(outcomeOfSizes(Sizes{attachLimit}, 0).refused, kNothing);
    EXPECT_EQ(outcomeOfSizes(Sizes{attachLimit + 1}, 0).sizes, Sizes());
    EXPECT_EQ(outcomeOfSizes(Sizes{attachLimit + 1}, 0).refused, kOverLimit);
    EXPECT_EQ(outcomeOfSizes(Sizes{1}, attachLimit - 1).sizes, Sizes{1});
    EXPECT_EQ(outcomeOfSizes(Sizes{1}, attachLimit).refused, kOverLimit);
}

TEST(ApplyEntryRules, AFileThatIsRefusedWeighsNothing)
{
    const Outcome outcome = outcomeOfSizes(Sizes{20, 5, 5, 1}, attachLimit - 10);
    EXPECT_EQ(outcome.sizes, (Sizes{5, 5}));
    EXPECT_EQ(outcome.refused, kOverLimit);
}

TEST(ApplyEntryRules, FoldersAndEmptyFilesAreTakenOutAndTheOthersGoOn)
{
    DropFileInfo file;
    file.fileSize = 7;
    const Outcome outcome =
        outcomeOf({folder(), DropFileInfo(), file, folder(), DropFileInfo()}, 0);
    EXPECT_EQ(outcome.sizes, Sizes{7});
    EXPECT_EQ(outcome.refused, (Refused{true, true, false}));
}

TEST(ApplyEntryRules, TheFirstRuleThatAppliesDecides)
{
    DropFileInfo emptyFolder;
    emptyFolder.isFolder = true;
    EXPECT_EQ(
        outcomeOf({emptyFolder, folder()}, attachLimit).refused, (Refused{true, false, false}));
    EXPECT_EQ(outcomeOfSizes(Sizes{0}, attachLimit + 1).refused, (Refused{false, true, false}));
}

TEST(ApplyEntryRules, AnEmptyListRefusesNothing)
{
    EXPECT_EQ(outcomeOfSizes(Sizes(), kHuge).refused, kNothing);
}

TEST(ApplyEntryRules, NoSumWrapsRound)
{
    EXPECT_EQ(outcomeOfSizes(Sizes{kHuge, kHuge - 10, 1}, 20).sizes, Sizes{1});
    for (const quint64 total : {attachLimit + 1, kHuge - 5, kHuge})
        EXPECT_EQ(outcomeOfSizes(Sizes{10, 1}, total).refused, kOverLimit);
}

TEST(ApplyEntryRules, WhatIsLeftIsWholeAndInItsOrder)
{
    std::vector<DropFileInfo> files(100'000);
    for (std::size_t i = 0; i < files.size(); ++i) {
        files[i].fileSize = i % 2; // every other one is empty
        files[i].origName = QString::number(i);
    }
    ApplyEntryRules(files, 0);
    ASSERT_EQ(files.size(), 50'000u);
    for (std::size_t i = 0; i < files.size(); ++i)
        ASSERT_EQ(files[i].origName, QString::number(2 * i + 1));
}
