#include <gtest/gtest.h>

#include <QProcess>

namespace {

struct Converted {
    int code;
    QByteArray out;
    QByteArray err;
};

Converted convert(const QString& line, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(NOMAR_NMNOTE), line.split(u' ', Qt::SkipEmptyParts));
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray converted(const QString& line, const QByteArray& input)
{
    const Converted done = convert(line, input);
    EXPECT_EQ(done.code, 0) << done.err.toStdString();
    EXPECT_EQ(done.err, QByteArray());
    return done.out;
}

void expectFailure(const QString& line, const QByteArray& input)
{
    const Converted failed = convert(line, input);
    EXPECT_EQ(failed.code, 1) << input.toStdString();
    EXPECT_EQ(failed.out, QByteArray());
    EXPECT_TRUE(failed.err.startsWith("nmnote: "));
}

const QString kClipEncode = QStringLiteral("clip encode");
const QString kClipDecode = QStringLiteral("clip decode");
const QString kFilesEncode = QStringLiteral("files encode");
const QString kFilesDecode = QStringLiteral("files decode");

} // namespace

TEST(ClipVerbs, AFragmentIsEncodedAsTheWholeBlock)
{
    const QByteArray block = converted(kClipEncode, "<p>\xE4\xB8\xAD</p>");
    EXPECT_TRUE(block.startsWith("Version:0.9\r\nStartHTML:00000097\r\nEndHTML:00000182\r\n"));
    EXPECT_TRUE(block.endsWith("<p>\xE4\xB8\xAD</p>\r\n<!--EndFragment-->\r\n</body>\r\n</html>"));
    EXPECT_EQ(block.size(), 182);
}

TEST(ClipVerbs, ABlockIsDecodedToItsFragment)
{
    EXPECT_EQ(converted(kClipDecode, converted(kClipEncode, "\xFF\n")),
        "<!--StartFragment -->\r\n\xFF\n\r\n");
    EXPECT_EQ(converted(kClipDecode, "StartFragment:0EndFragment:0"), "");
    EXPECT_EQ(converted(kClipDecode, "StartFragment:28EndFragment:999"), "999");
}

TEST(ClipVerbs, ABlockThatMarksNoFragmentExitsWithOne)
{
    for (const char* block : {"", "<p>x</p>", "StartFragment:2EndFragment:1",
             "StartFragment:0EndFragment:-1", "StartFragment:999EndFragment:999"})
        expectFailure(kClipDecode, block);
}

TEST(ClipVerbs, ATextTooLargeForTheFormatExitsWithOne)
{
    expectFailure(kClipEncode, QByteArray(100'000'000, 'a'));
}

TEST(ClipVerbs, AListOfPathsIsEncodedAsTheBlock)
{
    EXPECT_EQ(converted(kFilesEncode, R"(["C:\\a", "\u4E2D"])"),
        QByteArray::fromHex("14000000 0000000000000000 00000000 00000000"
                            "43003a005c0061000000 2d4e0000 0000"));
}

TEST(ClipVerbs, ABlockOfFilesIsDecodedByBothReadings)
{
    EXPECT_EQ(converted(kFilesDecode, converted(kFilesEncode, R"(["C:\\a", "D:\\b"])")),
        "{\"fWide\":0,\n \"paths\":[\"C\",\":\",\"\\\\\",\"a\"],\n"
        " \"as16Bit\":[\"C:\\\\a\",\"D:\\\\b\"]}\n");
    const QByteArray narrow = QByteArray::fromHex("14000000 0000000000000000 00000000 00000000")
        + QByteArray("/a\0\0", 4);
    EXPECT_EQ(converted(kFilesDecode, narrow),
        "{\"fWide\":0,\n \"paths\":[\"/a\"],\n \"as16Bit\":null}\n");
    QByteArray wide = converted(kFilesEncode, R"(["/a"])");
    wide[16] = 1;
    EXPECT_EQ(converted(kFilesDecode, wide),
        "{\"fWide\":1,\n \"paths\":[\"/a\"],\n \"as16Bit\":[\"/a\"]}\n");
}

TEST(ClipVerbs, ABrokenBlockOfFilesExitsWithOne)
{
    const QByteArray whole = converted(kFilesEncode, R"(["/a"])");
    expectFailure(kFilesDecode, QByteArray());
    expectFailure(kFilesDecode, whole.left(19));
    expectFailure(kFilesDecode, "\xFF\xFF\xFF\x7F" + whole.mid(4));
    expectFailure(kFilesDecode, whole.left(20) + "/a");
}

TEST(ClipVerbs, WhatIsNoListOfPathsExitsWithOne)
{
    for (const char* input :
        {"", "/a", "{}", "[", "[]", "[1]", "[\"/a\", null]", R"(["a\u0000b"])"})
        expectFailure(kFilesEncode, input);
}

TEST(ClipVerbs, AnotherDirectionIsBadUse)
{
    for (const char* line :
        {"clip", "clip upside", "files", "files encode decode", "files ENCODE"}) {
        const Converted bad = convert(QString::fromLatin1(line), QByteArray());
        EXPECT_EQ(bad.code, 2) << line;
        EXPECT_EQ(bad.out, QByteArray()) << line;
    }
}

TEST(ClipVerbs, InputThatCannotBeReadExitsWithOne)
{
    QProcess process;
    process.setStandardInputFile(QStringLiteral("/"));
    process.start(QStringLiteral(NOMAR_NMNOTE), {QStringLiteral("clip"), QStringLiteral("encode")});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
}
