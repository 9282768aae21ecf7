#include "attachstore/ImageFile.h"

#include "support/FileSizeLimit.h"
#include "support/Paths.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <limits>

using namespace attachstore;

namespace {

class SaveImageTest : public testing::Test {
protected:
    void TearDown() override { DelTempFileFromList(m_list); }

    // What was written, read again.
    QImage saved(const QImage& image)
    {
        EXPECT_EQ(SaveImage(image, m_list), 1);
        return m_list.empty() ? QImage() : QImage(m_list.back().filePath, "JPG");
    }

    void expectNone(const QImage& image)
    {
        const QStringList before = temporaries();
        EXPECT_EQ(SaveImage(image, m_list), 0);
        EXPECT_TRUE(m_list.empty());
        EXPECT_EQ(temporaries(), before);
    }

    static QStringList temporaries() { return QDir(GetTempDir()).entryList(QDir::Files); }

    std::vector<DropFileInfo> m_list;
};

QImage filled(int width, int height, QImage::Format format, const QColor& colour)
{
    QImage image(width, height, format);
    image.fill(colour);
    return image;
}

// JPEG is not exact.
void expectNear(QColor seen, QColor meant)
{
    EXPECT_NEAR(seen.red(), meant.red(), 6);
    EXPECT_NEAR(seen.green(), meant.green(), 6);
    EXPECT_NEAR(seen.blue(), meant.blue(), 6);
}

} // namespace

TEST_F(SaveImageTest, WritesATemporaryJpegAndAppendsItsRecord)
{
    m_list.push_back({});
    const QImage image = saved(filled(40, 30, QImage::Format_RGB32, Qt::red));
    EXPECT_EQ(image.size(), QSize(40, 30));
    expectNear(image.pixelColor(20, 15), Qt::red);

    ASSERT_EQ(m_list.size(), 2u);
    const DropFileInfo& record = m_list.back();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[0-9a-f]{32}\\.jpg$"))
                    .match(record.origName)
                    .hasMatch());
    EXPECT_EQ(record.fileName, record.origName);
    EXPECT_EQ(record.filePath, GetTempDir() + record.origName);
    EXPECT_EQ(record.fileExt, QStringLiteral("jpg"));
    EXPECT_EQ(record.fileSize, quint64(QFileInfo(record.filePath).size()));
    EXPECT_FALSE(record.fileTime.isEmpty());
    EXPECT_FALSE(record.isFolder);
    EXPECT_TRUE(record.isTempFile);
}

TEST_F(SaveImageTest, ANullImageAppendsNothing)
{
    expectNone(QImage());
}

TEST_F(SaveImageTest, WhatIsTransparentBecomesWhite)
{
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
             QImage::Format_RGBA64, QImage::Format_RGBA8888}) {
        expectNear(saved(filled(8, 8, format, Qt::transparent)).pixelColor(4, 4), Qt::white);
        expectNear(saved(filled(8, 8, format, QColor(0, 0, 255, 128))).pixelColor(4, 4),
            QColor(127, 127, 255));
        expectNear(saved(filled(8, 8, format, Qt::darkGreen)).pixelColor(4, 4), Qt::darkGreen);
    }
}

TEST_F(SaveImageTest, ATransparentColourOfAPaletteBecomesWhite)
{
    QImage image(8, 8, QImage::Format_Indexed8);
    image.setColorTable({qRgba(0, 0, 0, 0)});
    image.fill(0);
    expectNear(saved(image).pixelColor(4, 4), Qt::white);
}

TEST_F(SaveImageTest, EveryOtherFormatKeepsItsColour)
{
    const QImage blue = filled(8, 8, QImage::Format_RGB32, Qt::blue);
    for (const auto format : {QImage::Format_RGB16, QImage::Format_RGB888, QImage::Format_BGR30,
             QImage::Format_RGBX64, QImage::Format_Indexed8})
        expectNear(saved(blue.convertToFormat(format)).pixelColor(4, 4), Qt::blue);
    const QImage black = filled(8, 8, QImage::Format_RGB32, Qt::black);
    for (const auto format : {QImage::Format_Grayscale8, QImage::Format_Mono})
        expectNear(saved(black.convertToFormat(format)).pixelColor(4, 4), Qt::black);
}

TEST_F(SaveImageTest, AVeryWideTransparentImageIsFlattenedToItsEnd)
{
    const QImage image = saved(filled(60'000, 2, QImage::Format_ARGB32, Qt::transparent));
    ASSERT_EQ(image.width(), 60'000);
    expectNear(image.pixelColor(59'999, 1), Qt::white);
}

TEST_F(SaveImageTest, AnImageThatJpegCannotHoldAppendsNothing)
{
    expectNone(filled(65'536, 1, QImage::Format_RGB32, Qt::red));
    expectNone(filled(1, 70'000, QImage::Format_ARGB32, Qt::red));
}

TEST_F(SaveImageTest, AFullDiskAppendsNothingAndLeavesNoFile)
{
    QImage image(300, 300, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, state = state * 1664525 + 1013904223);
    for (const rlim_t bytes : {0, 1'000, 20'000}) {
        const FileSizeLimit limit(bytes);
        expectNone(image);
    }
}

TEST_F(SaveImageTest, TwoImagesHaveTwoNames)
{
    const QImage image = filled(1, 1, QImage::Format_RGB32, Qt::red);
    EXPECT_EQ(SaveImage(image, m_list), 1);
    EXPECT_EQ(SaveImage(image, m_list), 1);
    EXPECT_NE(m_list[0].filePath, m_list[1].filePath);
}

TEST(DelTempFileFromList, DeletesTemporaryFilesAndNoOthers)
{
    const QTemporaryDir directory;
    std::vector<DropFileInfo> list(3);
    for (int i = 0; i < 3; ++i) {
        list[i].filePath = directory.filePath(QString::number(i));
        list[i].isTempFile = i != 1;
        if (i != 0)
            writeFile(list[i].filePath, "x");
    }
    DelTempFileFromList(list); // the first one is gone already, which is nobody's concern
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files), QStringList(QStringLiteral("1")));
    EXPECT_EQ(list.size(), 3u);
}
