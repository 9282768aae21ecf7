#include "attachstore/ImageManager.h"

#include "attachstore/TestIcons.h"
#include "kit/Print.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

namespace {

const QString kUnknown = QStringLiteral("unknow.bmp");
const QString kWord = QStringLiteral("word.bmp");

const std::vector<QString> kNames{kUnknown, kWord, QStringLiteral("excel.bmp"),
    QStringLiteral("ppt.bmp"), QStringLiteral("text.bmp"), QStringLiteral("pdf.bmp"),
    QStringLiteral("zip.bmp"), QStringLiteral("image.bmp"), QStringLiteral("video.bmp"),
    QStringLiteral("audio.bmp"), QStringLiteral("html.bmp")};

} // namespace

TEST(ImageManager, EveryTypeHasTheNameOfItsIconFile)
{
    const ImageManager manager;
    for (int number = 0; number < 11; ++number)
        EXPECT_EQ(manager.GetFileTypeImageName(static_cast<FILE_TYPE>(number)), kNames[number]);
}

TEST(ImageManager, AnyOtherNumberHasTheNameOfTheUnknownType)
{
    const ImageManager manager;
    for (const int number : {-1, 11, 12, 1000, INT_MAX, INT_MIN})
        EXPECT_EQ(manager.GetFileTypeImageName(static_cast<FILE_TYPE>(number)), kUnknown);
}

TEST(ImageManager, TheInstalledIconsAreThereAndDifferFromEachOther)
{
    ImageManager manager;
    std::vector<QImage> seen;
    for (int number = 0; number < 11; ++number) {
        const QImage* icon = manager.GetFileTypeBitmap(static_cast<FILE_TYPE>(number));
        ASSERT_TRUE(icon) << kNames[number].toStdString();
        EXPECT_EQ(icon->size(), QSize(32, 32));
        EXPECT_EQ(icon->pixelColor(0, 0), QColor(Qt::white)); // as the card is
        for (const QImage& other : seen)
            EXPECT_NE(*icon, other) << kNames[number].toStdString();
        seen.push_back(*icon);
    }
}

TEST(ImageManager, AnIconIsReadOnce)
{
    const TestIcons icons;
    ASSERT_TRUE(icons.add(kWord, TestIcons::ofColour(Qt::blue)));
    ImageManager manager;
    const QImage* icon = manager.GetFileTypeBitmap(FT_WORD);
    ASSERT_TRUE(icon);
    ASSERT_TRUE(icons.remove(kWord));
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_WORD), icon);
    EXPECT_EQ(icon->pixelColor(9, 9), QColor(Qt::blue));
}

TEST(ImageManager, AMissingIconIsLookedForAgain)
{
    const TestIcons icons;
    ImageManager manager;
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_WORD), nullptr);
    ASSERT_TRUE(icons.add(kWord, TestIcons::ofColour(Qt::blue)));
    EXPECT_NE(manager.GetFileTypeBitmap(FT_WORD), nullptr);
}

TEST(ImageManager, AFileThatIsNoImageIsAMissingIcon)
{
    const TestIcons icons;
    writeFile(icons.path(kWord), "BM and no more");
    ImageManager manager;
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_WORD), nullptr);
}

TEST(ImageManager, AMissingUnknownIconIsAnEmptyImageAndStaysOne)
{
    const TestIcons icons;
    ImageManager manager;
    const QImage* icon = manager.GetFileTypeBitmap(FT_UNKNOW);
    ASSERT_TRUE(icon);
    EXPECT_TRUE(icon->isNull());
    ASSERT_TRUE(icons.add(kUnknown, TestIcons::ofColour(Qt::gray)));
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_UNKNOW), icon);
    EXPECT_TRUE(icon->isNull());
}

TEST(ImageManager, AFallbackThatIsThereIsThrownAwayAndLeavesNoIcon)
{
    const TestIcons icons;
    ImageManager manager;
    int asked = 0;
    manager.SetFallbackSource([&asked] {
        ++asked;
        return TestIcons::ofColour(Qt::green);
    });
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_UNKNOW), nullptr);
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_UNKNOW), nullptr);
    EXPECT_EQ(asked, 2); // nothing is kept
    ASSERT_TRUE(icons.add(kUnknown, TestIcons::ofColour(Qt::gray)));
    const QImage* icon = manager.GetFileTypeBitmap(FT_UNKNOW);
    ASSERT_TRUE(icon);
    EXPECT_FALSE(icon->isNull());
    EXPECT_EQ(asked, 2);
}

TEST(ImageManager, AFallbackWithoutAnImageLeavesTheEmptyImage)
{
    const TestIcons icons;
    ImageManager manager;
    manager.SetFallbackSource([] { return QImage(); });
    const QImage* icon = manager.GetFileTypeBitmap(FT_UNKNOW);
    ASSERT_TRUE(icon);
    EXPECT_TRUE(icon->isNull());
}

TEST(ImageManager, TheFallbackIsForTheUnknownTypeAlone)
{
    const TestIcons icons;
    ImageManager manager;
    bool asked = false;
    manager.SetFallbackSource([&asked] {
        asked = true;
        return QImage();
    });
    EXPECT_EQ(manager.GetFileTypeBitmap(FT_WORD), nullptr);
    // A number that is no type has the unknown type's file, and not its ways.
    EXPECT_EQ(manager.GetFileTypeBitmap(static_cast<FILE_TYPE>(77)), nullptr);
    EXPECT_FALSE(asked);
}

TEST(ImageManager, OneEntryServesAllThatHaveItsName)
{
    const TestIcons icons;
    ASSERT_TRUE(icons.add(kUnknown, TestIcons::ofColour(Qt::gray)));
    ImageManager manager;
    EXPECT_EQ(manager.GetFileTypeBitmap(static_cast<FILE_TYPE>(77)),
        manager.GetFileTypeBitmap(FT_UNKNOW));
}

TEST(ImageManager, ThereIsOneForTheProcess)
{
    ImageManager* manager = SingletonTemplate<ImageManager>::GetInstance();
    ASSERT_TRUE(manager);
    EXPECT_EQ(SingletonTemplate<ImageManager>::GetInstance(), manager);
}
