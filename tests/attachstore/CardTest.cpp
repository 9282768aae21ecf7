#include "attachstore/Card.h"

#include "attachstore/BmpFile.h"
#include "attachstore/CardLine.h"
#include "attachstore/ImageManager.h"
#include "attachstore/TestIcons.h"
#include "kit/Print.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>

using attachstore::CardLine;
using attachstore::GenerateFileThumb;

namespace {

constexpr quint16 kWhite = 0x7FFF;
constexpr quint16 kFrame = grey555(200);
constexpr quint16 kText = grey555(0x44);
constexpr QRect kIconPlace(6, 8, 32, 32);

// A text that is as wide as wanted; empty if letters of three widths cannot make it.
QString textOfWidth(int width)
{
    const int broadest = width * 100 / CardLine(QString(100, u'm')).width();
    for (int broad = broadest; broad >= 0; --broad) {
        for (int middling = 0; middling < 8; ++middling) {
            for (int narrow = 0; narrow < 8; ++narrow) {
                const QString text =
                    QString(broad, u'm') + QString(middling, u'e') + QString(narrow, u'i');
                const int reached = CardLine(text).width();
                if (reached == width)
                    return text;
            }
        }
    }
    return QString();
}

class CardTest : public testing::Test {
protected:
    CardTest() { delete SingletonTemplate<ImageManager>::ExistingInstance(); }
    ~CardTest() override { delete SingletonTemplate<ImageManager>::ExistingInstance(); }

    QString path() const { return m_directory.filePath(QStringLiteral("card.bmp")); }

    BmpFile card(const QString& name, const QString& info = QString(), FILE_TYPE type = FT_PDF)
    {
        int fileSize = -1;
        EXPECT_EQ(GenerateFileThumb(type, name, info, path(), &fileSize), 1);
        const BmpFile file(readFile(path()));
        EXPECT_EQ(file.size(), fileSize);
        return file;
    }

    QTemporaryDir m_directory;
};

// The columns of a line of the card that are not white, the frame left out.
std::pair<int, int> inkColumns(const BmpFile& card, int top)
{
    std::pair<int, int> columns{card.width(), -1};
    for (int x = 39; x < card.width() - 1; ++x) {
        for (int y = top; y < top + 14; ++y) {
            if (card.pixel(x, y) != kWhite) {
                columns.first = std::min(columns.first, x);
                columns.second = x;
            }
        }
    }
    return columns;
}

bool isWhite(const BmpFile& card, const QRect& area)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (card.pixel(x, y) != kWhite)
                return false;
        }
    }
    return true;
}

// Nothing but icon, lines and frame, whatever the texts are.
void expectCleanMargins(const BmpFile& card)
{
    const int inner = card.width() - 2;
    EXPECT_TRUE(isWhite(card, QRect(1, 1, inner, 7)));
    EXPECT_TRUE(isWhite(card, QRect(1, 40, inner, 7)));
    EXPECT_TRUE(isWhite(card, QRect(1, 1, 5, 46)));
    EXPECT_TRUE(isWhite(card, QRect(38, 1, 12, 46)));
    EXPECT_TRUE(isWhite(card, QRect(50, 22, inner - 49, 4)));
    EXPECT_TRUE(isWhite(card, QRect(card.width() - 8, 1, 7, 46)));
}

} // namespace

TEST_F(CardTest, HeadersAreThoseOfABitmapOf16BitsFromTheBottomUp)
{
    const BmpFile file = card(textOfWidth(40), textOfWidth(100));
    QByteArray expected("BM");
    const auto append = [&expected](auto number) {
        number = qToLittleEndian(number);
        expected.append(reinterpret_cast<const char*>(&number), sizeof number);
    };
    append(quint32(54 + 96 * 158)); // bfSize
    append(quint16(0));
    append(quint16(0));
    append(quint32(54)); // bfOffBits
    append(quint32(40)); // biSize
    append(qint32(158));
    append(qint32(48));
    append(quint16(1)); // biPlanes
    append(quint16(16)); // biBitCount
    append(quint32(0)); // BI_RGB
    for (int i = 0; i < 5; ++i)
        append(quint32(0));
    EXPECT_EQ(file.bytes().left(54).toHex(), expected.toHex());
}

TEST_F(CardTest, ANameOf40AndAnInfoOf100PixelsGiveAWidthOf158)
{
    ASSERT_FALSE(textOfWidth(40).isEmpty());
    ASSERT_FALSE(textOfWidth(100).isEmpty());
    EXPECT_EQ(card(textOfWidth(40), textOfWidth(100)).width(), 158);
    EXPECT_EQ(card(textOfWidth(100), textOfWidth(40)).width(), 158);
}

TEST_F(CardTest, WithoutTextsTheCardIsItsMarginsAndTheIcon)
{
    EXPECT_EQ(card(QString(), QString()).width(), 58);
}

TEST_F(CardTest, TextsOf742PixelsAreShownWholeAndWiderOnesMakeNoWiderCard)
{
    const QString widest = textOfWidth(742);
    ASSERT_FALSE(widest.isEmpty());
    EXPECT_EQ(card(widest).width(), 800);
    EXPECT_EQ(card(textOfWidth(741)).width(), 799);
    EXPECT_EQ(card(textOfWidth(743)).width(), 800);
}

TEST_F(CardTest, ANameOf1000PixelsEndsInAnEllipsisAtTheRightEdge)
{
    const QString name = textOfWidth(1000);
    ASSERT_FALSE(name.isEmpty());
    for (const bool isName : {true, false}) {
        const BmpFile file = isName ? card(name, QString()) : card(QString(), name);
        const int top = isName ? 8 : 26;
        EXPECT_EQ(file.width(), 800);
        const int right = inkColumns(file, top).second;
        EXPECT_LT(right, 792);
        EXPECT_GE(right, 780);
        // Dots stand on the base line, where an "m" or "i" would reach higher.
        EXPECT_TRUE(isWhite(file, QRect(right - 6, top, 10, 6)));
        EXPECT_FALSE(isWhite(file, QRect(right - 6, top + 6, 10, 8)));
        expectCleanMargins(file);
    }
}

TEST_F(CardTest, TheEllipsisIsWholeWhereTheLastLetterIsJoinedToTheNext)
{
    if (QFontDatabase::families(QFontDatabase::Arabic).isEmpty())
        GTEST_SKIP() << "no font has Arabic letters";
    const QString arabic = QString::fromUtf8("مرحبا ").repeated(200);
    const BmpFile file = card(arabic);
    EXPECT_EQ(file.width(), 800);
    const int right = inkColumns(file, 8).second;
    EXPECT_LT(right, 792);
    int dots = 0; // columns with ink behind a white one
    for (int x = right - 9; x <= right; ++x)
        dots += isWhite(file, QRect(x - 1, 8, 1, 14)) && !isWhite(file, QRect(x, 8, 1, 14));
    EXPECT_GE(dots, 3);
}

TEST_F(CardTest, AnEvenWidthHasAllPixelsInTheFile)
{
    const BmpFile file = card(textOfWidth(100));
    EXPECT_EQ(file.width() % 2, 0);
    EXPECT_EQ(file.size(), 54 + 96 * file.width());
    EXPECT_EQ(file.at<quint32>(2), file.size());
}

TEST_F(CardTest, AnOddWidthLeavesTheEndOfTheTopRowUnwritten)
{
    const BmpFile file = card(textOfWidth(101));
    ASSERT_EQ(file.width(), 159);
    EXPECT_EQ(file.size(), 54 + 96 * 159);
    EXPECT_EQ(file.at<quint32>(2), file.size());
    // Rows are 2 bytes of zero longer than their pixels, which takes 96 bytes off the top row.
    for (int y = 1; y < 48; ++y) {
        EXPECT_EQ(file.at<quint16>(file.rowAt(y) + 2 * 159), 0);
        EXPECT_EQ(file.pixel(0, y), y < 47 ? kFrame : kWhite);
        EXPECT_EQ(file.pixel(158, y), y < 47 ? kFrame : kWhite);
    }
    EXPECT_EQ(file.size() - file.rowAt(0), 2 * 159 + 2 - 96);
    EXPECT_EQ(file.pixel(1, 0), kFrame);
}

TEST_F(CardTest, AnotherReaderOpensItWithItsColours)
{
    const BmpFile file = card(QString::fromUtf8("报告.pdf"), QStringLiteral("2024/05/06 1.25KB"));
    const QImage read(path());
    ASSERT_EQ(read.size(), QSize(file.width(), 48));
    for (int y = 1; y < 48; ++y) {
        for (int x = 0; x < file.width(); ++x) {
            const QColor colour = read.pixelColor(x, y);
            const int packed =
                colour.red() >> 3 << 10 | colour.green() >> 3 << 5 | colour.blue() >> 3;
            ASSERT_EQ(packed, file.pixel(x, y)) << x << ' ' << y;
        }
    }
}

TEST_F(CardTest, CornersAreRoundedInTheFrameAloneAndWhiteOutsideIt)
{
    const BmpFile file = card(textOfWidth(100));
    const int right = file.width() - 1;
    for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, 47), QPoint(right, 47)})
        EXPECT_EQ(file.pixel(corner.x(), corner.y()), kWhite);
    for (int x = 1; x < right; ++x) {
        EXPECT_EQ(file.pixel(x, 0), kFrame);
        EXPECT_EQ(file.pixel(x, 47), kFrame);
    }
    for (int y = 1; y < 47; ++y) {
        EXPECT_EQ(file.pixel(0, y), kFrame);
        EXPECT_EQ(file.pixel(right, y), kFrame);
    }
    expectCleanMargins(file);
}

TEST_F(CardTest, TheIconStandsInItsPlaceUnscaled)
{
    const BmpFile file = card(textOfWidth(100), QString(), FT_ZIP);
    const QImage icon(GetInstallDir() + QStringLiteral("res/zip.bmp"));
    ASSERT_EQ(icon.size(), kIconPlace.size());
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const QRgb colour = icon.pixel(x, y);
            const int packed =
                qRed(colour) >> 3 << 10 | qGreen(colour) >> 3 << 5 | qBlue(colour) >> 3;
            ASSERT_EQ(file.pixel(6 + x, 8 + y), packed) << x << ' ' << y;
        }
    }
}

TEST_F(CardTest, ALargerIconIsCutAndASmallerOneLeavesWhite)
{
    const TestIcons icons;
    QImage large = TestIcons::ofColour(Qt::black, 64);
    large.setPixelColor(31, 31, Qt::red);
    ASSERT_TRUE(icons.add(QStringLiteral("word.bmp"), large));
    ASSERT_TRUE(icons.add(QStringLiteral("pdf.bmp"), TestIcons::ofColour(Qt::black, 16)));
    const BmpFile cut = card(QString(), QString(), FT_WORD);
    EXPECT_EQ(cut.pixel(6, 8), 0);
    EXPECT_EQ(cut.pixel(37, 39), 0x7C00);
    expectCleanMargins(cut);
    const BmpFile small = card(QString(), QString(), FT_PDF);
    EXPECT_EQ(small.pixel(21, 23), 0);
    EXPECT_TRUE(isWhite(small, QRect(22, 8, 16, 32)));
}

TEST_F(CardTest, WithoutAnUnknownIconItsPlaceStaysWhite)
{
    const TestIcons icons;
    EXPECT_TRUE(isWhite(card(QStringLiteral("x"), QString(), FT_UNKNOW), kIconPlace));
}

TEST_F(CardTest, ANumberThatIsNoTypeHasTheUnknownIcon)
{
    const QByteArray unknown = card(QString(), QString(), FT_UNKNOW).bytes();
    EXPECT_EQ(card(QString(), QString(), static_cast<FILE_TYPE>(77)).bytes(), unknown);
}

TEST_F(CardTest, LinesStandWhereTheyBelongInTheirColour)
{
    const BmpFile file = card(QStringLiteral("HHHH"), QStringLiteral("HHHH"));
    for (const int top : {8, 26}) {
        const auto [left, right] = inkColumns(file, top);
        EXPECT_GE(left, 50);
        EXPECT_LE(left, 52);
        EXPECT_LT(right, file.width() - 8);
        quint16 darkest = kWhite;
        for (int y = top; y < top + 14; ++y) {
            for (int x = left; x <= right; ++x)
                darkest = std::min(darkest, file.pixel(x, y));
        }
        EXPECT_GE(darkest, kText);
        EXPECT_LE(darkest, grey555(0x60));
    }
    expectCleanMargins(file);
}

TEST_F(CardTest, ALineIsTwelvePixelsHigh)
{
    // From the top of the accent to the bottom of the descender.
    const BmpFile file = card(QString::fromUtf8("Åg|"));
    EXPECT_TRUE(isWhite(file, QRect(50, 20, file.width() - 58, 2)));
    EXPECT_FALSE(isWhite(file, QRect(50, 8, file.width() - 58, 2)));
    EXPECT_FALSE(isWhite(file, QRect(50, 18, file.width() - 58, 1)));
}

TEST_F(CardTest, ChineseIsDrawnWithTheGlyphsOfItsCharacters)
{
    // A face without them would draw one and the same box.
    EXPECT_NE(card(QString::fromUtf8("报告")).bytes(), card(QString::fromUtf8("文件")).bytes());
}

TEST_F(CardTest, TheSameTextsGiveTheSameBytes)
{
    const QString name = QString::fromUtf8("年度报告.pdf");
    const QByteArray first = card(name, QStringLiteral("1B")).bytes();
    EXPECT_EQ(card(name, QStringLiteral("1B")).bytes(), first);
    EXPECT_NE(card(name, QStringLiteral("2B")).bytes(), first);
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    const QByteArray rightToLeft = card(name, QStringLiteral("1B")).bytes();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    EXPECT_EQ(rightToLeft, first);
}

TEST_F(CardTest, AnAmpersandIsACharacterLikeAnyOther)
{
    EXPECT_GT(card(QStringLiteral("A&B")).width(), card(QStringLiteral("AB")).width());
}

TEST_F(CardTest, ControlCharactersCountAsSpaces)
{
    const QByteArray spaces = card(QStringLiteral("a b c d e f.pdf")).bytes();
    EXPECT_EQ(card(QString::fromUtf8("a\nb\tc\rd\0e\u2028f.pdf", 17)).bytes(), spaces);
}

TEST_F(CardTest, AnyTextMakesACardThatKeepsItsMargins)
{
    const std::vector<QString> texts{
        QString(QChar(0xD800)),
        QString(QChar(0xDC00)) + u'x' + QChar(0xDBFF),
        QString::fromUtf8("😀👩‍👩‍👧‍👦🇨🇳.zip"),
        QString::fromUtf8("invoice\u202Efdp.exe\u202C\u200F\u061C\u2067x"),
        QString::fromUtf8("שלום.pdf"),
        QString(3000, QChar(0x202E)),
        QStringLiteral("a") + QString(5000, QChar(0x0336)) + QString(5000, QChar(0x030D)),
        QString(85, QChar(0x6587)),
        QString(1'000'000, u'w'),
        QString(4095, u'w') + QString::fromUtf8("😀"),
        QString::fromUtf8("-rf \"quoted\" %s%n 'x' <b>&amp;</b>"),
        QString(300, u'\n'),
        QString(QChar(0xFFFF)) + QChar(0xFEFF) + QChar(0xFFFC),
    };
    for (const QString& text : texts) {
        const BmpFile file = card(text, text);
        EXPECT_GE(file.width(), 58);
        EXPECT_LE(file.width(), 800);
        expectCleanMargins(file);
    }
}

TEST_F(CardTest, WithoutAPlaceForTheSizeTheCardIsWrittenAllTheSame)
{
    EXPECT_EQ(GenerateFileThumb(FT_PDF, QString(), QString(), path(), nullptr), 1);
    EXPECT_EQ(readFile(path()).size(), 54 + 96 * 58);
}

TEST_F(CardTest, AnOlderFileIsReplacedWhole)
{
    writeFile(path(), QByteArray(100'000, 'x'));
    EXPECT_EQ(card(QString()).size(), 54 + 96 * 58);
}

TEST_F(CardTest, AMissingIconMakesNoCardUntilItIsThere)
{
    const TestIcons icons;
    int fileSize = -1;
    EXPECT_EQ(GenerateFileThumb(FT_PDF, QString(), QString(), path(), &fileSize), 0);
    EXPECT_EQ(fileSize, -1);
    EXPECT_FALSE(QFile::exists(path()));
    ASSERT_TRUE(icons.add(QStringLiteral("pdf.bmp"), TestIcons::ofColour(Qt::red)));
    EXPECT_EQ(card(QString()).pixel(20, 20), 0x7C00);
}
