#include "platform/CGdiToolBox.h"

#include <QBuffer>
#include <QImageReader>
#include <QMimeData>

#include <gtest/gtest.h>

namespace {

QByteArray png(QSize size)
{
    QImage image(size, QImage::Format_Mono);
    image.fill(0);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

} // namespace

TEST(LoadImageFromMemory, DecodesByContent)
{
    EXPECT_EQ(CGdiToolBox::LoadImageFromMemory(png(QSize(3, 5))).size(), QSize(3, 5));
}

TEST(LoadImageFromMemory, IsNullForWhatIsNoImage)
{
    EXPECT_TRUE(CGdiToolBox::LoadImageFromMemory(QByteArray()).isNull());
    EXPECT_TRUE(CGdiToolBox::LoadImageFromMemory("\x89PNG\r\n\x1a\n").isNull());
}

TEST(LoadImageFromMemory, RefusesTooManyPixelsAndLeavesTheProcessesLimit)
{
    const int before = QImageReader::allocationLimit();
    EXPECT_TRUE(CGdiToolBox::LoadImageFromMemory(png(QSize(8192, 4097))).isNull());
    EXPECT_EQ(CGdiToolBox::LoadImageFromMemory(png(QSize(8192, 4096))).size(), QSize(8192, 4096));
    EXPECT_EQ(QImageReader::allocationLimit(), before);
}

TEST(LoadBitmap, TakesPixelsUpToTheSameBound)
{
    QMimeData data;
    EXPECT_TRUE(CGdiToolBox::LoadBitmap(data).isNull());
    data.setImageData(QImage(7, 8, QImage::Format_RGB32));
    EXPECT_EQ(CGdiToolBox::LoadBitmap(data).size(), QSize(7, 8));
    data.setImageData(QImage(8192, 4097, QImage::Format_Mono));
    EXPECT_TRUE(CGdiToolBox::LoadBitmap(data).isNull());
}

TEST(PreMultiplyAlpha, MultipliesEachColourByItsAlphaOnce)
{
    QImage image(3, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, 0xFF8040C0);
    image.setPixel(1, 0, 0x808040C0);
    image.setPixel(2, 0, 0x00FFFFFF);
    const auto raw = [&](int x) {
        return reinterpret_cast<const QRgb*>(image.constScanLine(0))[x];
    };
    for (int times = 0; times < 2; ++times) {
        CGdiToolBox::PreMultiplyAlpha(image);
        EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(raw(0), 0xFF8040C0U);
        EXPECT_EQ(raw(1), 0x80402060U);
        EXPECT_EQ(raw(2), 0U);
    }
}

TEST(PreMultiplyAlpha, LeavesANullImageNull)
{
    QImage image;
    CGdiToolBox::PreMultiplyAlpha(image);
    EXPECT_TRUE(image.isNull());
}

TEST(RectCenter, CentresASizeInTheOldRectangle)
{
    const struct {
        QRect in;
        int width, height;
        QRect out;
    } cases[] = {
        {{6, 8, 32, 32}, 32, 32, {6, 8, 32, 32}},
        {{0, 0, 76, 7}, 7, 7, {34, 0, 7, 7}},
        {{10, 20, 10, 10}, 5, 4, {12, 23, 5, 4}},
        {{0, 0, 4, 4}, 10, 8, {-3, -2, 10, 8}},
        {{5, 5, 0, 0}, 0, 0, {5, 5, 0, 0}},
    };
    for (const auto& [in, width, height, out] : cases) {
        QRect rect = in;
        CGdiToolBox::RectCenter(rect, width, height);
        EXPECT_EQ(rect, out);
    }
}
