#include "clipformat/FileBlock.h"

#include "kit/Print.h"

#include <gtest/gtest.h>

using clipformat::BuildFileBlock;
using clipformat::FileBlock;
using clipformat::ReadFileBlock;
using clipformat::ReadFileBlockAsWide;

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using Paths = std::vector<QString>;

std::string built(const Paths& paths)
{
    std::string block;
    EXPECT_TRUE(BuildFileBlock(paths, block));
    return block;
}

FileBlock read(std::string_view block)
{
    FileBlock files{false, {QStringLiteral("not assigned")}};
    EXPECT_TRUE(ReadFileBlock(block, files));
    return files;
}

void expectRefused(std::string_view block)
{
    FileBlock files{true, {QStringLiteral("as it was")}};
    EXPECT_FALSE(ReadFileBlock(block, files));
    EXPECT_TRUE(files.wide);
    EXPECT_EQ(files.paths, Paths{QStringLiteral("as it was")});
    EXPECT_FALSE(ReadFileBlockAsWide(block, files.paths));
    EXPECT_EQ(files.paths, Paths{QStringLiteral("as it was")});
}

std::string bytes(std::u16string_view units)
{
    std::string bytes;
    for (const char16_t unit : units)
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    return bytes;
}

// A header as it stands in blocks of this and of other programs, with `list` behind it.
std::string block(bool wide, const std::string& list, char pFiles = 20)
{
    std::string block(20, '\0');
    block[0] = pFiles;
    block[16] = wide;
    return block + list;
}

const QString kTwoUnits = QStringLiteral("/\u4E2D");

} // namespace

TEST(BuildFileBlock, WritesTheHeaderAndThePathsAs16BitText)
{
    const std::string expected = "\x14\0\0\0" // pFiles
                                 "\0\0\0\0\0\0\0\0" // pt
                                 "\0\0\0\0" // fNC
                                 "\0\0\0\0" // fWide
                                 "C\0:\0\\\0a\0\0\0"
                                 "/\0\x2D\x4E\0\0"
                                 "\0\0"s;
    EXPECT_EQ(built({QStringLiteral("C:\\a"), kTwoUnits}), expected);
}

TEST(BuildFileBlock, SizeIsTwiceTheUnitsWithTerminatorsAnd22)
{
    for (const Paths& paths :
        {Paths{QStringLiteral("a")}, Paths{kTwoUnits, kTwoUnits},
            Paths{QStringLiteral("\U0001F600")}, Paths{QString(100'000, u'x')}, Paths{QString()}}) {
        std::size_t units = 0;
        for (const QString& path : paths)
            units += static_cast<std::size_t>(path.size()) + 1;
        EXPECT_EQ(built(paths).size(), 2 * units + 22);
    }
}

TEST(BuildFileBlock, AnEmptyListIsRefused)
{
    std::string block = "as it was";
    EXPECT_FALSE(BuildFileBlock({}, block));
    EXPECT_EQ(block, "as it was");
}

TEST(BuildFileBlock, APathThatWouldEndEarlyIsRefused)
{
    std::string block = "as it was";
    const QString secret = QStringLiteral("/etc/secret") + QChar::Null + QStringLiteral(".txt");
    EXPECT_FALSE(BuildFileBlock({QStringLiteral("/a"), secret}, block));
    EXPECT_EQ(block, "as it was");
}

TEST(FileBlock, PathsComeBackWhenReadAs16BitText)
{
    const Paths paths{QStringLiteral("C:\\userdata\\报告 1.pdf"), QStringLiteral("/tmp/\U0001F600"),
        QStringLiteral("a\nb"), QString(QChar(0xD800))};
    Paths back;
    ASSERT_TRUE(ReadFileBlockAsWide(built(paths), back));
    EXPECT_EQ(back, paths);
}

TEST(FileBlock, AReaderThatHonoursTheFieldFindsOneCharacterNamesOfTheFirstPath)
{
    const FileBlock files = read(built({QStringLiteral("C:\\a"), QStringLiteral("D:\\b")}));
    EXPECT_FALSE(files.wide);
    EXPECT_EQ(files.paths,
        (Paths{
            QStringLiteral("C"), QStringLiteral(":"), QStringLiteral("\\"), QStringLiteral("a")}));
}

TEST(FileBlock, AnEmptyPathEndsTheList)
{
    Paths paths;
    ASSERT_TRUE(ReadFileBlockAsWide(built({QString(), QStringLiteral("/a")}), paths));
    EXPECT_EQ(paths, Paths{});
}

TEST(ReadFileBlock, WideTextOfOtherProgramsIsRead)
{
    const FileBlock files = read(block(true, bytes(u"C:\\a.txt\0D:\\\u4E2D\0\0"sv)));
    EXPECT_TRUE(files.wide);
    EXPECT_EQ(files.paths, (Paths{QStringLiteral("C:\\a.txt"), QStringLiteral("D:\\\u4E2D")}));
}

TEST(ReadFileBlock, NarrowTextIsUtf8)
{
    const FileBlock files = read(block(false, "C:\\\u4E2D\0\xFF\0\0"s));
    EXPECT_FALSE(files.wide);
    EXPECT_EQ(files.paths, (Paths{QStringLiteral("C:\\\u4E2D"), QStringLiteral("\uFFFD")}));
}

TEST(ReadFileBlock, AnyOtherValueOfTheFieldThanZeroMeansWide)
{
    std::string wide = block(false, bytes(u"a\0\0"sv));
    wide[19] = '\x80';
    EXPECT_TRUE(read(wide).wide);
}

TEST(ReadFileBlock, AListOfNoPathsIsRead)
{
    EXPECT_EQ(read(block(false, std::string(1, '\0'))).paths, Paths{});
    EXPECT_EQ(read(block(true, std::string(2, '\0'))).paths, Paths{});
}

TEST(ReadFileBlock, PathsBeginWhereTheHeaderSaysAndEndAtTheEmptyOne)
{
    const std::string list = "gap"
                             "a\0\0more"s;
    EXPECT_EQ(read(block(false, list, 23)).paths, Paths{QStringLiteral("a")});
    const std::string odd = 'x' + bytes(u"a\0\0b"sv);
    EXPECT_EQ(read(block(true, odd, 21)).paths, Paths{QStringLiteral("a")});
}

TEST(ReadFileBlock, AHeaderThatIsNotWholeIsRefused)
{
    const std::string whole = built({QStringLiteral("/a")});
    for (std::size_t length = 0; length < 20; ++length)
        expectRefused(std::string_view(whole).substr(0, length));
}

TEST(ReadFileBlock, PathsInsideTheHeaderOrOutsideTheBlockAreRefused)
{
    const std::string list(40, '\0');
    expectRefused(block(false, list, 0));
    expectRefused(block(false, list, 19));
    expectRefused(block(false, list, 61));
    for (const unsigned char top : {0x01, 0x7F, 0x80, 0xFF}) {
        std::string huge = block(true, list);
        huge[3] = static_cast<char>(top);
        expectRefused(huge);
    }
    expectRefused(block(false, list, 60)); // room for nothing, not even a terminator
}

// Each beginning of a whole block, in memory of exactly that size.
TEST(ReadFileBlock, AMissingTerminatorIsRefused)
{
    const std::string wide = block(true, bytes(u"a\0bc\0\0"sv));
    const std::string narrow = block(false, "\x80\0bc\0\0"s);
    for (const std::string& whole : {wide, narrow}) {
        FileBlock files;
        EXPECT_TRUE(ReadFileBlock(whole, files));
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const std::vector<char> exact(whole.begin(), whole.begin() + length);
            expectRefused({exact.data(), exact.size()});
        }
    }
}

TEST(ReadFileBlock, AMillionNamesAreRead)
{
    std::string list;
    for (int i = 0; i < 1'000'000; ++i)
        list += "a\0"s;
    EXPECT_EQ(read(block(false, list + '\0')).paths.size(), 1'000'000u);
}

TEST(CopyDropEffect, IsA32BitOne)
{
    EXPECT_EQ(clipformat::CopyDropEffect(), "\1\0\0\0"s);
}
