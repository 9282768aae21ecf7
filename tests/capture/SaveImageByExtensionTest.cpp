#include "capture/SaveImageByExtension.h"

#include "kit/Print.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class SavingByExtension : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QImage image{12, 8, QImage::Format_RGB32};

    void SetUp() override
    {
        image.fill(QColor(10, 20, 30));
        image.setPixelColor(3, 2, Qt::yellow);
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    QStringList files() const
    {
        return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    QByteArray content(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

} // namespace

TEST_F(SavingByExtension, TheNameDecidesOnTheFormat)
{
    const struct {
        const char* name;
        const char* start; ///< What files of the format begin with.
    } cases[] = {
        {"a.png", "\x89PNG"},
        {"a.PNG", "\x89PNG"},
        {"a.bmp", "BM"},
        {"a.jpg", "\xFF\xD8"},
        {"a.jpeg", "\xFF\xD8"},
        {"a.JpEg", "\xFF\xD8"},
        {"a.jpe", "\xFF\xD8"},
        {"a.dib", "BM"},
        {"a.png.bmp", "BM"},
        {"截图未命名.png", "\x89PNG"},
        {".png", "\x89PNG"},
        {"a b.c.png", "\x89PNG"},
    };
    for (const auto& [name, start] : cases) {
        const QString file = QString::fromUtf8(name);
        EXPECT_EQ(SaveImageByExtension(image, path(file)), 1) << name;
        EXPECT_TRUE(content(file).startsWith(start)) << name;
        EXPECT_EQ(QImage::fromData(content(file)).size(), image.size()) << name;
    }
}

TEST_F(SavingByExtension, PngAndBmpKeepEachPixel)
{
    for (const char* name : {"a.png", "a.bmp"}) {
        const QString file = path(QString::fromLatin1(name));
        ASSERT_EQ(SaveImageByExtension(image, file), 1);
        EXPECT_EQ(QImage(file).convertToFormat(QImage::Format_RGB32), image) << name;
    }
}

TEST_F(SavingByExtension, AnExtensionThatNoEncoderHasWritesNothing)
{
    for (const char* name :
        {"a", "a.", "a.txt", "a.png ", "a.pngx", "png", "a.jpeg)", "a.图", "a.*"})
        EXPECT_EQ(SaveImageByExtension(image, path(QString::fromUtf8(name))), 0) << name;
    EXPECT_TRUE(files().isEmpty()) << files().join(u' ').toStdString();
}

TEST_F(SavingByExtension, AFolderWithADotInItsNameIsNoExtension)
{
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("b.png")));
    EXPECT_EQ(SaveImageByExtension(image, path(QStringLiteral("b.png/file"))), 0);
    EXPECT_EQ(SaveImageByExtension(image, path(QStringLiteral("b.png"))), 0);
    EXPECT_EQ(SaveImageByExtension(image, path(QStringLiteral("none/a.png"))), 0);
    EXPECT_TRUE(QDir(path(QStringLiteral("b.png"))).isEmpty());
}

TEST_F(SavingByExtension, AFailedSaveLeavesTheFileAsItWas)
{
    QFile old(path(QStringLiteral("a.jpg")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    // More than the format can hold.
    EXPECT_EQ(SaveImageByExtension(QImage(70'000, 1, QImage::Format_RGB32), old.fileName()), 0);
    EXPECT_EQ(SaveImageByExtension(QImage(), old.fileName()), 0);
    EXPECT_EQ(content(QStringLiteral("a.jpg")), "old");
    EXPECT_EQ(files(), QStringList{QStringLiteral("a.jpg")});
}

TEST_F(SavingByExtension, AFileThatIsThereIsReplaced)
{
    QFile old(path(QStringLiteral("a.png")));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(100'000, 'x'));
    old.close();
    EXPECT_EQ(SaveImageByExtension(image, old.fileName()), 1);
    EXPECT_EQ(QImage(old.fileName()).size(), image.size());
    EXPECT_EQ(files(), QStringList{QStringLiteral("a.png")});
}
