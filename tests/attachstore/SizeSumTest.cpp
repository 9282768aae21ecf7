#include "attachstore/SizeSum.h"

#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <limits>

using attachstore::SumAttachSizes;

namespace {

using Sizes = std::map<QString, quint64>;

NewAttachFile attachmentRecord(const QString& fileName, const QString& origName)
{
    NewAttachFile record;
    record.fileName = fileName;
    record.origName = origName;
    record.fileType = 2;
    return record;
}

NewAttachFile shownRecord(const QString& fileName)
{
    NewAttachFile record;
    record.fileName = fileName;
    record.fileType = 1;
    record.isSrcFile = 1;
    return record;
}

const QString kFile = QStringLiteral("aa.pdf");
const QString kCard = QStringLiteral("bb.bmp");
const QString kName = QStringLiteral("报告.pdf");

} // namespace

TEST(SumAttachSizes, AnEmptyListWeighsNothing)
{
    quint64 total = 5;
    EXPECT_EQ(SumAttachSizes({}, {{kFile, 7}}, total), 1);
    EXPECT_EQ(total, 0u);
}

TEST(SumAttachSizes, AFileWeighsItsSizeAndThatOfItsCardLessOneByteEach)
{
    quint64 total;
    EXPECT_EQ(SumAttachSizes({attachmentRecord(kFile, kName), shownRecord(kCard)},
                  {{kFile, 100}, {kCard, 50}}, total),
        1);
    EXPECT_EQ(total, 148u);
}

TEST(SumAttachSizes, APictureWeighsTwice)
{
    const QString picture = QStringLiteral("aa.png");
    quint64 total;
    EXPECT_EQ(SumAttachSizes({attachmentRecord(picture, kName), shownRecord(picture)},
                  {{picture, 100}}, total),
        1);
    EXPECT_EQ(total, 198u);
}

TEST(SumAttachSizes, AnUnknownSizeIsLoggedWithTheOriginalNameAndGivesZero)
{
    LoggedLines lines;
    quint64 total;
    EXPECT_EQ(SumAttachSizes({attachmentRecord(kFile, kName)}, {}, total), 0);
    EXPECT_EQ(lines.take(), QStringList(QStringLiteral("[ERROR] 查询报告.pdf附件大小失败！")));
}

TEST(SumAttachSizes, OfAShownFileTheLoggedNameIsEmpty)
{
    LoggedLines lines;
    quint64 total;
    EXPECT_EQ(
        SumAttachSizes({attachmentRecord(kFile, kName), shownRecord(kCard)}, {{kFile, 1}}, total),
        0);
    EXPECT_EQ(lines.take(), QStringList(QStringLiteral("[ERROR] 查询附件大小失败！")));
}

TEST(SumAttachSizes, StopsAtTheFirstSizeThatIsUnknown)
{
    LoggedLines lines;
    quint64 total;
    EXPECT_EQ(SumAttachSizes({attachmentRecord(kFile, QStringLiteral("%1%s")),
                                 attachmentRecord(kCard, QStringLiteral("second"))},
                  {}, total),
        0);
    EXPECT_EQ(lines.take(), QStringList(QStringLiteral("[ERROR] 查询%1%s附件大小失败！")));
}

TEST(SumAttachSizes, ASizeKnownUnderAnotherCaseIsUnknown)
{
    quint64 total;
    EXPECT_EQ(SumAttachSizes({shownRecord(kCard)}, {{QStringLiteral("BB.bmp"), 5}}, total), 0);
}

TEST(SumAttachSizes, OnlyTheLow32BitsOfASizeCountWithTheirSign)
{
    struct Case {
        quint64 size;
        int result;
        quint64 total;
    };
    const std::vector<Case> cases{{0, 0, 0}, {1, 1, 0}, {2, 1, 1}, {0x7FFFFFFF, 1, 0x7FFFFFFE},
        {0x80000000, 0, 0}, {0x80000001, 0, 0}, {0xFFFFFFFF, 0, 0}, {0x100000000, 0, 0},
        {0x100000006, 1, 5}, {0xFFFFFFFF00000001, 1, 0}, {0xFFFFFFFF80000000, 0, 0},
        {std::numeric_limits<quint64>::max(), 0, 0}};
    for (const Case& c : cases) {
        quint64 total = 99;
        EXPECT_EQ(SumAttachSizes({shownRecord(kCard)}, {{kCard, c.size}}, total), c.result)
            << c.size;
        if (c.result) {
            EXPECT_EQ(total, c.total) << c.size;
        }
    }
}

TEST(SumAttachSizes, TheSumGoesBeyond32Bits)
{
    quint64 total;
    const std::vector<NewAttachFile> records(5, shownRecord(kCard));
    EXPECT_EQ(SumAttachSizes(records, {{kCard, 0x7FFFFFFF}}, total), 1);
    EXPECT_EQ(total, 5 * quint64(0x7FFFFFFE));
}
