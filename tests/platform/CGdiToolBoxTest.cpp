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
