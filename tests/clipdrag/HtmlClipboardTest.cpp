#include "clipdrag/HtmlClipboard.h"

#include "clipdrag/ClipFlavours.h"
#include "kit/Print.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QSysInfo>
#include <QUrl>

namespace {

using namespace std::string_literals;

using Paths = std::vector<QString>;

const QString kHtmlFormat = QStringLiteral("application/x-qt-windows-mime;value=\"HTML Format\"");
const QString kTextHtml = QStringLiteral("text/html");
const std::string kStartComment = "<!--StartFragment -->\r\n";

const QMimeData* held()
{
    return QGuiApplication::clipboard()->mimeData();
}

std::string bytes(const QString& flavour)
{
    return held()->data(flavour).toStdString();
}

std::string fragment()
{
    std::string fragment = "not assigned";
    EXPECT_TRUE(CHtmlClipboard::GetHtmlFragment(fragment));
    return fragment;
}

void expectNoFragment()
{
    std::string fragment = "as it was";
    EXPECT_FALSE(CHtmlClipboard::GetHtmlFragment(fragment));
    EXPECT_EQ(fragment, "as it was");
}

// What another program puts up.
class HtmlClipboard : public testing::Test {
protected:
    void SetUp() override { QGuiApplication::clipboard()->clear(); }

    void putUp(const QList<std::pair<QString, QByteArray>>& flavours)
    {
        auto data = std::make_unique<QMimeData>();
        for (const auto& [name, bytes] : flavours)
            data->setData(name, bytes);
        QGuiApplication::clipboard()->setMimeData(data.release());
    }
};

QByteArray block(int start, int end)
{
    return QStringLiteral("StartFragment:%1\r\nEndFragment:%2\r\n").arg(start).arg(end).toUtf8();
}

Paths filesOf(const QByteArray& uriList)
{
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), uriList);
    EXPECT_EQ(clipdrag::HasFiles(data), !clipdrag::Files(data).empty());
    return clipdrag::Files(data);
}

} // namespace

TEST_F(HtmlClipboard, TextIsPutUpAloneAndInItsFrame)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("<p>\u4E2D</p>"));
    EXPECT_EQ(bytes(kTextHtml), "<p>\u4E2D</p>");
    EXPECT_EQ(bytes(kHtmlFormat),
        "Version:0.9\r\nStartHTML:00000097\r\nEndHTML:00000182\r\n"
        "StartFragment:00000111\r\nEndFragment:00000146\r\n"
        "<html><body>\r\n<!--StartFragment -->\r\n<p>\u4E2D</p>\r\n"
        "<!--EndFragment-->\r\n</body>\r\n</html>");
    EXPECT_EQ(held()->formats().size(), 2);
    EXPECT_FALSE(clipdrag::HasFiles(*held()));
}

TEST_F(HtmlClipboard, BothFlavoursEndAtTheFirstZeroByte)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("ab\0cd"s));
    EXPECT_EQ(bytes(kTextHtml), "ab");
    EXPECT_EQ(fragment(), kStartComment + "ab\r\n");
}

TEST_F(HtmlClipboard, AnEmptyTextComesBackAsTheStartCommentAndALineEnd)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText(""));
    EXPECT_EQ(fragment(), kStartComment + "\r\n");
}

TEST_F(HtmlClipboard, WhatWasWrittenComesBackBetweenTheStartCommentAndALineEnd)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("<b>x</b>"));
    EXPECT_EQ(fragment(), kStartComment + "<b>x</b>\r\n");
}

TEST_F(HtmlClipboard, WritingAndReadingInTurnGrowsTheFragment)
{
    std::string text = "x";
    for (int pass = 0; pass < 3; ++pass) {
        const std::string before = text;
        ASSERT_TRUE(CHtmlClipboard::SetHtmlText(before));
        ASSERT_TRUE(CHtmlClipboard::GetHtmlFragment(text));
        EXPECT_EQ(text, kStartComment + before + "\r\n");
    }
}

TEST_F(HtmlClipboard, TextTooLargeForTheFormatLeavesTheClipboardAsItWas)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("before"));
    EXPECT_FALSE(CHtmlClipboard::SetHtmlText(std::string(100'000'000, 'a')));
    EXPECT_EQ(bytes(kTextHtml), "before");
}

TEST_F(HtmlClipboard, WhatIsPutUpReplacesEverythingElse)
{
    ASSERT_TRUE(CHtmlClipboard::SetFileDropList({QStringLiteral("/a")}));
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("x"));
    EXPECT_FALSE(clipdrag::HasFiles(*held()));
    ASSERT_TRUE(CHtmlClipboard::SetFileDropList({QStringLiteral("/a")}));
    EXPECT_FALSE(clipdrag::HasHtml(*held()));
    expectNoFragment();
}

TEST_F(HtmlClipboard, AReadPrefersTheHtmlFormatBytes)
{
    putUp({{kTextHtml, "whole"}, {kHtmlFormat, block(5, 13)}});
    EXPECT_EQ(fragment(), "Fragment");
}

TEST_F(HtmlClipboard, WithoutThoseBytesTextHtmlIsTheFragment)
{
    putUp({{kTextHtml, "<i>\xE4\xB8\xAD</i>"}, {QStringLiteral("text/plain"), "other"}});
    EXPECT_TRUE(clipdrag::HasHtml(*held()));
    EXPECT_EQ(fragment(), "<i>\u4E2D</i>");
}

TEST_F(HtmlClipboard, BytesThatMarkNoFragmentArePassedOverForTextHtml)
{
    for (const QByteArray& bad :
        {block(6, 5), block(-1, 5), block(99999, 99999), QByteArray("none")}) {
        putUp({{kHtmlFormat, bad}, {kTextHtml, "<i>good</i>"}});
        EXPECT_EQ(fragment(), "<i>good</i>");
    }
}

TEST_F(HtmlClipboard, BytesThatMarkNoFragmentAloneGiveFalse)
{
    for (const QByteArray& bad :
        {block(6, 5), block(-1, 5), block(99999, 99999), QByteArray("none")}) {
        putUp({{kHtmlFormat, bad}});
        EXPECT_TRUE(clipdrag::HasHtml(*held()));
        expectNoFragment();
    }
}

TEST_F(HtmlClipboard, BytesThatWereCutShortGiveTheFragmentAsFarAsItGoes)
{
    putUp({{kHtmlFormat, block(14, 99999) + "<i>half"}, {kTextHtml, "not asked for"}});
    EXPECT_EQ(fragment(), "14\r\nEndFragment:99999\r\n<i>half");
}

TEST_F(HtmlClipboard, EqualOffsetsGiveAnEmptyFragment)
{
    putUp({{kHtmlFormat, block(7, 7)}, {kTextHtml, "not asked for"}});
    EXPECT_EQ(fragment(), "");
}

TEST_F(HtmlClipboard, AClipboardWithoutHtmlGivesFalse)
{
    expectNoFragment();
    putUp({{QStringLiteral("text/plain"), "<p>text</p>"}});
    EXPECT_FALSE(clipdrag::HasHtml(*held()));
    expectNoFragment();
}

TEST_F(HtmlClipboard, TextHtmlWithAByteOrderMarkIsDecodedByIt)
{
    const QString html = QStringLiteral("<i>\u4E2D\U0001F600</i>");
    const QByteArray units(reinterpret_cast<const char*>(html.utf16()), 2 * html.size());
    QByteArray swapped = units;
    for (qsizetype i = 0; i < swapped.size(); i += 2)
        std::swap(swapped[i], swapped[i + 1]);
    for (const QByteArray& marked :
        {"\xFF\xFE" + units, "\xFE\xFF" + swapped, "\xEF\xBB\xBF" + html.toUtf8()}) {
        putUp({{kTextHtml, marked}});
        EXPECT_EQ(fragment(), html.toStdString());
    }
}

TEST_F(HtmlClipboard, TextHtmlEndsAtItsFirstZeroByteAndIsOtherwiseLeftAlone)
{
    putUp({{kTextHtml, QByteArray("caf\xE9\0more", 9)}});
    EXPECT_EQ(fragment(), "caf\xE9");
    putUp({{kTextHtml, QByteArray()}});
    EXPECT_EQ(fragment(), "");
}

TEST_F(HtmlClipboard, FilesArePutUpForEachKindOfFileManager)
{
    ASSERT_TRUE(CHtmlClipboard::SetFileDropList(
        {QStringLiteral("/tmp/a b.txt"), QStringLiteral("/tmp/\u62A5\u544A#1%20?.pdf")}));
    const std::string first = "file:///tmp/a%20b.txt";
    const std::string second = "file:///tmp/%E6%8A%A5%E5%91%8A%231%2520%3F.pdf";
    EXPECT_EQ(bytes(QStringLiteral("text/uri-list")), first + "\r\n" + second + "\r\n");
    EXPECT_EQ(
        bytes(QStringLiteral("x-special/gnome-copied-files")), "copy\n" + first + "\n" + second);
    EXPECT_EQ(bytes(QStringLiteral("application/x-kde-cutselection")), "0");
    EXPECT_EQ(bytes(QStringLiteral("application/x-qt-windows-mime;value=\"Preferred DropEffect\"")),
        "\1\0\0\0"s);
    EXPECT_EQ(held()->formats().size(), 4);
}

TEST_F(HtmlClipboard, FilesComeBackWithTheirPaths)
{
    const Paths paths{QStringLiteral("/tmp/back\\slash"), QStringLiteral("/tmp/two\nlines"),
        QStringLiteral("/tmp/100%25"), QStringLiteral("/tmp/\U0001F600"),
        QStringLiteral("/tmp/a:b;c&d='e'\"f\"[g]"), QStringLiteral("/tmp/a"),
        QStringLiteral("/tmp/a")};
    ASSERT_TRUE(CHtmlClipboard::SetFileDropList(paths));
    EXPECT_EQ(clipdrag::Files(*held()), paths);
    EXPECT_EQ(held()->data(clipdrag::kGnomeCopiedFiles).count('\n'), qsizetype(paths.size()));
}

TEST_F(HtmlClipboard, ARelativePathCountsFromTheCurrentDirectory)
{
    ASSERT_TRUE(CHtmlClipboard::SetFileDropList({QStringLiteral("a.txt")}));
    EXPECT_EQ(clipdrag::Files(*held()), Paths{QDir::currentPath() + QStringLiteral("/a.txt")});
}

TEST_F(HtmlClipboard, AnEmptyListLeavesTheClipboardAsItWas)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("before"));
    EXPECT_FALSE(CHtmlClipboard::SetFileDropList({}));
    EXPECT_EQ(bytes(kTextHtml), "before");
}

TEST_F(HtmlClipboard, APathThatCanBeNoFilesLeavesTheClipboardAsItWas)
{
    ASSERT_TRUE(CHtmlClipboard::SetHtmlText("before"));
    const QString cut = QStringLiteral("/etc/secret") + QChar::Null + QStringLiteral(".txt");
    EXPECT_FALSE(CHtmlClipboard::SetFileDropList({QStringLiteral("/a"), cut}));
    EXPECT_FALSE(CHtmlClipboard::SetFileDropList({QString(), QStringLiteral("/a")}));
    EXPECT_EQ(bytes(kTextHtml), "before");
}

TEST(CHtmlClipboard, WithoutADesktopEachOperationFails)
{
    QProcess process;
    process.start(QStringLiteral(NOMAR_TEST_UNDISPLAYED_CLIPBOARD), QStringList());
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    // Without any application object, with one that knows no desktop, with one that does.
    EXPECT_EQ(process.readAllStandardOutput(), "0 0 0 0\n0 0 0 0\n1 1 1 1\n");
}

TEST(ClipFlavours, OneLocalFileAddressMakesAFileList)
{
    EXPECT_EQ(filesOf("https://example.org/a\r\nfile:///tmp/a\r\nmailto:x@example.org\r\n"),
        Paths{QStringLiteral("/tmp/a")});
}

TEST(ClipFlavours, AddressesOfOtherKindsAreNoFileList)
{
    EXPECT_EQ(filesOf(""), Paths{});
    EXPECT_EQ(filesOf("https://example.org/a\r\nftp://example.org/b\r\n/tmp/a\r\n"), Paths{});
    EXPECT_EQ(filesOf("file:\r\nfile://\r\n"), Paths{});
    QMimeData text;
    text.setText(QStringLiteral("file:///tmp/a"));
    EXPECT_FALSE(clipdrag::HasFiles(text));
}

TEST(ClipFlavours, AnAddressMayNameThisMachineButNoOther)
{
    const QByteArray here = QSysInfo::machineHostName().toUtf8();
    EXPECT_EQ(filesOf("file://localhost/tmp/a\r\nfile://" + here + "/tmp/b\r\n"),
        (Paths{QStringLiteral("/tmp/a"), QStringLiteral("/tmp/b")}));
    EXPECT_EQ(filesOf("file://elsewhere.example/tmp/a\r\n"), Paths{});
}

TEST(ClipFlavours, AListOfMoreThanAThousandLinesIsNotTakenApart)
{
    QMimeData data;
    for (const auto& [lines, tooMany] : {std::pair(1000, false), std::pair(1001, true)}) {
        data.setData(
            QStringLiteral("text/uri-list"), QByteArray("file:///tmp/a\r\n").repeated(lines));
        EXPECT_EQ(clipdrag::HasTooManyFiles(data), tooMany);
        EXPECT_EQ(clipdrag::Files(data).size(), tooMany ? 0u : 1000u);
    }
    EXPECT_FALSE(clipdrag::HasTooManyFiles(QMimeData()));
}

TEST(ClipFlavours, AnAddressWithAnEscapedZeroIsNoFile)
{
    EXPECT_EQ(filesOf("file:///etc/secret%00.txt\r\n"), Paths{});
}
