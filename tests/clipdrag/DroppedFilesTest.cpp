#include "clipdrag/DroppedFiles.h"

#include "kit/LogLines.h"
#include "kit/Print.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QMimeData>
#include <QRegularExpression>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class DroppedFiles : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QMimeData data;
    std::vector<DropFileInfo> files;

    QString file(const QString& name, const QByteArray& content = "content")
    {
        const QString path = dir.filePath(name);
        QFile out(path);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly)) << qPrintable(path);
        out.write(content);
        return path;
    }
    void offer(const QStringList& paths)
    {
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
    }
    void offerAddresses(const QByteArray& list)
    {
        data.setData(QStringLiteral("text/uri-list"), list);
    }
    QStringList listed()
    {
        files.clear();
        clipdrag::GetFileList(data, files);
        QStringList names;
        for (const DropFileInfo& record : files)
            names << record.fileName;
        return names;
    }
    static QByteArray encoded(const QImage& image, const char* format)
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format)) << format;
        return buffer.data();
    }
    static QImage picture(QSize size = QSize(40, 30))
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        return image;
    }
    QSize savedSize() const { return QImageReader(files.at(0).filePath).size(); }
};

/// What the process has taken of memory at the most since `reset`, in bytes.
class PeakMemory {
public:
    static void reset()
    {
        QFile file(QStringLiteral("/proc/self/clear_refs"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("5");
    }
    static qint64 now() { return field("VmRSS:"); }
    static qint64 peak() { return field("VmHWM:"); }

private:
    static qint64 field(const char* name)
    {
        QFile file(QStringLiteral("/proc/self/status"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith(name))
                return line.mid(qsizetype(std::strlen(name)))
                           .simplified()
                           .split(' ')[0]
                           .toLongLong()
                    * 1024;
        }
        return 0;
    }
};

} // namespace

// --- File lists ---

TEST_F(DroppedFiles, ComeInTheOrderOfTheList)
{
    offer(
        {file(QStringLiteral("b.TXT")), file(QStringLiteral("a")), file(QStringLiteral("c.x.y"))});
    EXPECT_EQ(listed(),
        QStringList({QStringLiteral("b.TXT"), QStringLiteral("a"), QStringLiteral("c.x.y")}));
    EXPECT_EQ(files[0].fileExt, QStringLiteral("txt"));
    EXPECT_EQ(files[1].fileExt, QStringLiteral("unknow"));
    EXPECT_EQ(files[0].filePath, dir.filePath(QStringLiteral("b.TXT")));
    EXPECT_EQ(files[0].origName, files[0].fileName);
    EXPECT_EQ(files[0].fileSize, 7u);
    EXPECT_FALSE(files[0].isTempFile);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d$"))
                    .match(files[0].fileTime)
                    .hasMatch());
}

TEST_F(DroppedFiles, AreAppended)
{
    offer({file(QStringLiteral("a"))});
    files.resize(1);
    clipdrag::GetFileList(data, files);
    EXPECT_EQ(files.size(), 2u);
}

TEST_F(DroppedFiles, AFolderHasARecordAndItsContentsNone)
{
    QDir(dir.path()).mkpath(QStringLiteral("folder/inner"));
    offer({dir.filePath(QStringLiteral("folder"))});
    ASSERT_EQ(listed(), QStringList{QStringLiteral("folder")});
    EXPECT_TRUE(files[0].isFolder);
    EXPECT_EQ(files[0].fileExt, QStringLiteral("dir"));
    EXPECT_EQ(files[0].fileSize, std::numeric_limits<quint64>::max());
    EXPECT_TRUE(files[0].origName.isEmpty());
}

TEST_F(DroppedFiles, ALinkToAFolderIsAFolder)
{
    ASSERT_TRUE(QFile::link(dir.path(), dir.filePath(QStringLiteral("link"))));
    offer({dir.filePath(QStringLiteral("link"))});
    ASSERT_EQ(listed(), QStringList{QStringLiteral("link")});
    EXPECT_TRUE(files[0].isFolder);
}

TEST_F(DroppedFiles, WhatCannotBeReadIsSkippedWithoutAWord)
{
    const QString fifo = dir.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const QString dangling = dir.filePath(QStringLiteral("dangling"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/at/all"), dangling));
    offer({dir.filePath(QStringLiteral("missing")), fifo, dangling, QStringLiteral("/dev/zero"),
        file(QStringLiteral("a"))});
    LogLines log;
    EXPECT_EQ(listed(), QStringList{QStringLiteral("a")});
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(DroppedFiles, OddNamesComeThrough)
{
    const QStringList names = {QStringLiteral("line\nbreak"), QStringLiteral("-rf"),
        QStringLiteral("100% #1?.txt"), QStringLiteral("\u202Egpj.exe"), QStringLiteral("😀.md"),
        QString(255, u'n')};
    QStringList paths;
    for (const QString& name : names)
        paths << file(name);
    offer(paths);
    EXPECT_EQ(listed(), names);
}

TEST_F(DroppedFiles, ANameThatIsNotUtf8IsSkipped)
{
    const QByteArray name = QFile::encodeName(dir.path()) + "/\xff\xfe";
    const int made = ::creat(name.constData(), 0600);
    if (made < 0)
        GTEST_SKIP() << "the file system takes no such name";
    ::close(made);
    offerAddresses("file://" + QFile::encodeName(dir.path()) + "/%FF%FE\r\nfile://"
        + QFile::encodeName(file(QStringLiteral("a"))) + "\r\n");
    EXPECT_EQ(listed(), QStringList{QStringLiteral("a")});
    ::unlink(name.constData()); // Qt could not.
}

TEST_F(DroppedFiles, AddressesMayNameThisMachine)
{
    const QByteArray path = QFile::encodeName(file(QStringLiteral("a")));
    offerAddresses("# a comment\r\nfile://localhost" + path + "\r\nfile://"
        + QSysInfo::machineHostName().toUtf8() + path + "\r\nfile:" + path + "\r\n");
    EXPECT_EQ(listed().size(), 3);
}

TEST_F(DroppedFiles, OtherAddressesAreNone)
{
    offerAddresses("https://example.org/a.png\r\nmailto:a@example.org\r\nrubbish\r\n");
    EXPECT_TRUE(listed().isEmpty());
    offerAddresses("file://" + QFile::encodeName(file(QStringLiteral("a"))) + "%00.txt");
    EXPECT_TRUE(listed().isEmpty());
}

TEST_F(DroppedFiles, AListIsPresentWithOneLocalAddress)
{
    EXPECT_FALSE(clipdrag::HasFileList(data));
    offerAddresses("https://example.org/a.png\r\n");
    EXPECT_FALSE(clipdrag::HasFileList(data));
    offerAddresses("https://example.org/a.png\r\nfile:///nowhere/at/all\r\n");
    EXPECT_TRUE(clipdrag::HasFileList(data));
}

// --- Images ---

struct ImageCase {
    const char* type;
    const char* format;
};

class OfferedImage : public DroppedFiles, public ::testing::WithParamInterface<ImageCase> { };

TEST_P(OfferedImage, BecomesATemporaryJpeg)
{
    data.setData(QString::fromLatin1(GetParam().type), encoded(picture(), GetParam().format));
    clipdrag::GetImage(data, files);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[0-9a-f]{32}\\.jpg$"))
                    .match(files[0].origName)
                    .hasMatch())
        << qPrintable(files[0].origName);
    EXPECT_EQ(files[0].fileName, files[0].origName);
    EXPECT_EQ(files[0].fileExt, QStringLiteral("jpg"));
    EXPECT_TRUE(files[0].isTempFile);
    EXPECT_EQ(savedSize(), QSize(40, 30));
}

INSTANTIATE_TEST_SUITE_P(DroppedFiles, OfferedImage,
    ::testing::Values(ImageCase{"image/png", "PNG"}, ImageCase{"image/jpeg", "JPG"},
        ImageCase{"image/bmp", "BMP"}));

TEST_F(DroppedFiles, AnImageAsPixelsComesLast)
{
    data.setImageData(picture(QSize(50, 60)));
    clipdrag::GetImage(data, files);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(savedSize(), QSize(50, 60));

    files.clear();
    data.setData(QStringLiteral("image/png"), encoded(picture(), "PNG"));
    clipdrag::GetImage(data, files);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(savedSize(), QSize(40, 30));
}

TEST_F(DroppedFiles, BrokenBytesMakeNoRecord)
{
    QByteArray png = encoded(picture(), "PNG");
    png.truncate(png.size() / 3);
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no image"), png}) {
        data.setData(QStringLiteral("image/png"), bytes);
        clipdrag::GetImage(data, files);
        EXPECT_TRUE(files.empty()) << bytes.size();
    }
}

TEST_F(DroppedFiles, BehindBrokenBytesTheNextFormatIsTried)
{
    data.setData(QStringLiteral("image/png"), "no image");
    data.setData(QStringLiteral("image/bmp"), encoded(picture(), "BMP"));
    clipdrag::GetImage(data, files);
    EXPECT_EQ(files.size(), 1u);
}

TEST_F(DroppedFiles, AHugeImageTakesNoMemoryAndMakesNoRecord)
{
    QByteArray bytes;
    {
        QImage huge(30000, 30000, QImage::Format_Mono);
        ASSERT_FALSE(huge.isNull());
        huge.fill(0);
        bytes = encoded(huge, "PNG");
    }
    QBuffer buffer(&bytes);
    ASSERT_EQ(QImageReader(&buffer).size(), QSize(30000, 30000));
    data.setData(QStringLiteral("image/png"), bytes);
    PeakMemory::reset();
    const qint64 before = PeakMemory::now();
    clipdrag::GetImage(data, files);
    EXPECT_TRUE(files.empty());
    EXPECT_LT(PeakMemory::peak() - before, qint64(256) << 20);
}

TEST_F(DroppedFiles, TheLargestImageThatComesInStaysUnderTheMemoryBound)
{
    QByteArray bytes;
    {
        QImage large(7680, 4320, QImage::Format_ARGB32); // Transparent, so that it is flattened.
        large.fill(Qt::transparent);
        bytes = encoded(large, "PNG");
    }
    data.setData(QStringLiteral("image/png"), bytes);
    PeakMemory::reset();
    const qint64 before = PeakMemory::now();
    clipdrag::GetImage(data, files);
    EXPECT_EQ(files.size(), 1u);
    EXPECT_LE(PeakMemory::peak() - before, qint64(264) << 20);
}

TEST_F(DroppedFiles, NoImageMakesNoRecord)
{
    data.setText(QStringLiteral("text"));
    clipdrag::GetImage(data, files);
    EXPECT_TRUE(files.empty());
}

// --- The clipboard ---

class ClipboardFiles : public DroppedFiles {
protected:
    void onClipboard(QMimeData* offered)
    {
        QGuiApplication::clipboard()->setMimeData(offered);
        clipdrag::GetFileListFromClipboard(files);
    }
};

TEST_F(ClipboardFiles, AFileListComesBeforeAnImage)
{
    auto* offered = new QMimeData;
    offered->setUrls({QUrl::fromLocalFile(file(QStringLiteral("a.txt")))});
    offered->setImageData(picture());
    onClipboard(offered);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].fileName, QStringLiteral("a.txt"));
}

TEST_F(ClipboardFiles, AnUnreadableListHidesAnImage)
{
    auto* offered = new QMimeData;
    offered->setUrls({QUrl::fromLocalFile(QStringLiteral("/nowhere/at/all"))});
    offered->setImageData(picture());
    onClipboard(offered);
    EXPECT_TRUE(files.empty());
}

TEST_F(ClipboardFiles, AnImageBecomesATemporaryFile)
{
    auto* offered = new QMimeData;
    offered->setImageData(picture());
    onClipboard(offered);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_TRUE(files[0].isTempFile);
}

TEST_F(ClipboardFiles, TextIsNoFile)
{
    auto* offered = new QMimeData;
    offered->setText(QStringLiteral("/etc/passwd"));
    onClipboard(offered);
    EXPECT_TRUE(files.empty());
}
