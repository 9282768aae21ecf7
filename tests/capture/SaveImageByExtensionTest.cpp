#include "capture/SaveImageByExtension.h"

#include "kit/Print.h"
#include "support/FileSizeLimit.h"
#include "support/WithoutRoot.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

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
    /// A file with that content, writable for anyone.
    QString put(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        EXPECT_EQ(::fchmod(file.handle(), 0666), 0);
        return file.fileName();
    }
    void letNewFilesIn(bool allowed) const
    {
        ASSERT_EQ(::chmod(QFile::encodeName(dir.path()), allowed ? 0755 : 0555), 0);
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
    const QString old = put(QStringLiteral("a.jpg"), "old");
    // More than the format can hold.
    EXPECT_EQ(SaveImageByExtension(QImage(70'000, 1, QImage::Format_RGB32), old), 0);
    EXPECT_EQ(SaveImageByExtension(QImage(), old), 0);
    {
        const FileSizeLimit full(16);
        EXPECT_EQ(SaveImageByExtension(image, old), 0);
    }
    EXPECT_EQ(content(QStringLiteral("a.jpg")), "old");
    EXPECT_EQ(files(), QStringList{QStringLiteral("a.jpg")});
}

TEST_F(SavingByExtension, AFileThatIsThereIsReplaced)
{
    const QString old = put(QStringLiteral("a.png"), QByteArray(100'000, 'x'));
    EXPECT_EQ(SaveImageByExtension(image, old), 1);
    EXPECT_EQ(QImage(old).size(), image.size());
    EXPECT_EQ(files(), QStringList{QStringLiteral("a.png")});
}

TEST_F(SavingByExtension, AWritableFileIsReplacedInAFolderThatTakesNoNewFiles)
{
    const QString old = put(QStringLiteral("a.png"), QByteArray(100'000, 'x'));
    const QString jpeg = put(QStringLiteral("b.jpg"), "old");
    letNewFilesIn(false);
    {
        const WithoutRoot rights;
        EXPECT_EQ(SaveImageByExtension(image, old), 1);
        EXPECT_EQ(SaveImageByExtension(image, path(QStringLiteral("new.png"))), 0);
        // What cannot be packed leaves a file as it was in such a folder too.
        EXPECT_EQ(SaveImageByExtension(QImage(70'000, 1, QImage::Format_RGB32), jpeg), 0);
    }
    letNewFilesIn(true);
    EXPECT_EQ(QImage(old).convertToFormat(QImage::Format_RGB32), image);
    EXPECT_EQ(content(QStringLiteral("b.jpg")), "old");
    EXPECT_EQ(files(), (QStringList{QStringLiteral("a.png"), QStringLiteral("b.jpg")}));
}

TEST_F(SavingByExtension, AFullDiskIsAFailureInSuchAFolderToo)
{
    const QString old = put(QStringLiteral("a.png"), "old");
    letNewFilesIn(false);
    {
        const WithoutRoot rights;
        const FileSizeLimit full(16);
        EXPECT_EQ(SaveImageByExtension(image, old), 0);
    }
    letNewFilesIn(true);
    EXPECT_EQ(content(QStringLiteral("a.png")).size(), 16);
}
