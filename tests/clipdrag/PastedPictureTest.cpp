#include "clipdrag/PastedPicture.h"

#include "clipdrag/Board.h"
#include "kit/AddingFixture.h"

#include "support/FileMd5.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

QByteArray encoded(const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    board::picture().save(&buffer, format);
    return bytes;
}

QString dataOf(const QByteArray& bytes, const QString& type = QStringLiteral("image/png"))
{
    return QStringLiteral("data:%1;base64,").arg(type) + QString::fromLatin1(bytes.toBase64());
}

struct PastedPicture : Adding {
    std::vector<DropFileInfo> made;

    std::optional<DropFileInfo> read(const QString& source, const std::set<QString>& named = {})
    {
        auto record = clipdrag::ReadPastedPicture(source, named);
        if (record)
            made.push_back(*record);
        return record;
    }
    QString addressOf(const QString& path)
    {
        return QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    }
    QByteArray content(const DropFileInfo& record)
    {
        QFile in(record.filePath);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        return in.readAll();
    }
    ~PastedPicture() override
    {
        for (const DropFileInfo& record : made)
            QFile::remove(record.filePath);
    }
};

} // namespace

TEST_F(PastedPicture, DataOfAPictureIsKeptByteForByte)
{
    for (const char* format : {"PNG", "JPG", "BMP"}) {
        const QByteArray bytes = encoded(format);
        const auto record = read(dataOf(bytes));
        ASSERT_TRUE(record) << format;
        EXPECT_EQ(content(*record), bytes);
        EXPECT_TRUE(record->isTempFile);
        EXPECT_TRUE(record->filePath.startsWith(GetTempDir()));
    }
    EXPECT_EQ(made[0].fileExt, QStringLiteral("png"));
    EXPECT_EQ(made[1].fileExt, QStringLiteral("jpeg"));
}

TEST_F(PastedPicture, OtherFormatsBecomePng)
{
    const auto record = read(dataOf(encoded("PPM")));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->fileExt, QStringLiteral("png"));
    EXPECT_EQ(QImage(record->filePath).size(), board::picture().size());
}

TEST_F(PastedPicture, WrappedAndPercentEncodedDataIsRead)
{
    QString wrapped = dataOf(encoded("PNG"));
    wrapped.insert(60, QStringLiteral("\r\n "));
    EXPECT_TRUE(read(wrapped));
    EXPECT_TRUE(read(dataOf(encoded("PNG")).replace(u'=', QStringLiteral("%3D"))));
}

TEST_F(PastedPicture, WhatIsNoPictureIsRefused)
{
    const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                           "<script>alert(1)</script></svg>";
    for (const QString& source : {QString(), QStringLiteral("data:"),
             QStringLiteral("data:image/png;base64,"), QStringLiteral("data:image/png;base64,%%%"),
             QStringLiteral("data:image/png;base64,AAAA"), dataOf(encoded("PNG").first(20)),
             dataOf("text"), dataOf(encoded("PNG")) + QStringLiteral("*!"),
             dataOf(svg, QStringLiteral("image/svg+xml")), dataOf(svg),
             dataOf(encoded("PNG"), QStringLiteral("text/html")),
             QStringLiteral("https://example.org/a.png"), QStringLiteral("/etc/passwd")})
        EXPECT_FALSE(read(source)) << qPrintable(source.left(60));
}

TEST_F(PastedPicture, FileComesInOnlyIfTheClipboardNamesIt)
{
    const QString address = addressOf(file(QStringLiteral("a b.png"), encoded("PNG")));
    EXPECT_FALSE(read(address));
    ASSERT_TRUE(read(address, {address}));
    EXPECT_EQ(content(made.back()), encoded("PNG"));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("a b.png"))));
}

TEST_F(PastedPicture, FilesThatAreNoPicturesStayOutside)
{
    QFile::link(QStringLiteral("/etc/passwd"), dir.filePath(QStringLiteral("p.png")));
    const QString big = file(QStringLiteral("big.png"), encoded("PNG"));
    ASSERT_TRUE(QFile::resize(big, qint64(65) << 20));
    for (const QString& address :
        {QStringLiteral("file:///etc/passwd"), QStringLiteral("file:///../../etc/passwd"),
            addressOf(dir.filePath(QStringLiteral("p.png"))), addressOf(dir.path()), addressOf(big),
            addressOf(dir.filePath(QStringLiteral("missing.png"))),
            QStringLiteral("file:///dev/zero"), QStringLiteral("file://elsewhere/share/a.png"),
            QStringLiteral("file:///a%00.png"), QStringLiteral("file:")})
        EXPECT_FALSE(read(address, {address})) << qPrintable(address);
}

TEST_F(PastedPicture, ClipboardNamesThePicturesOfItsHtml)
{
    board::putHtml(QStringLiteral("<img src='file:///a.png'><!-- <img src='file:///no.png'> -->"
                                  "<v:imagedata src=\" file:///b.png\"/><a href='file:///c'>"));
    EXPECT_EQ(clipdrag::PicturesOnClipboard(),
        (std::set<QString>{QStringLiteral("file:///a.png"), QStringLiteral("file:///b.png")}));
}

TEST_F(PastedPicture, RequestIsAnsweredWithDigestsThenAttachmentsThenTheEnd)
{
    QStringList order;
    clipdrag::PastedPictures pictures(*adder, [&](const QString& kind, const QString& text) {
        order << kind + u' ' + text;
        if (kind == u"picturesDone") {
            EXPECT_EQ(page.count(QStringLiteral("AddPicToEditor")), 1);
        }
    });
    const QJsonObject request{{QStringLiteral("paste"), 3},
        {QStringLiteral("sources"),
            QJsonArray{QStringLiteral("data:image/png;base64,%%"), dataOf(encoded("PNG"))}}};
    pictures.import(QString::fromUtf8(QJsonDocument(request).toJson()));
    const QString digest = FileMd5(file(QStringLiteral("same.png"), encoded("PNG")));
    EXPECT_EQ(order,
        (QStringList{QStringLiteral("pictures {\"digests\":[\"\",\"%1\"],\"paste\":3}").arg(digest),
            QStringLiteral("picturesDone {\"paste\":3}")}));
    EXPECT_TRUE(QFile::exists(GetAttachmentDir() + u'/' + digest + QStringLiteral(".png")));
    EXPECT_TRUE(QDir(GetTempDir()).entryList({QStringLiteral("*.png")}, QDir::Files).isEmpty());
}

TEST_F(PastedPicture, RubbishIsIgnored)
{
    clipdrag::PastedPictures pictures(
        *adder, [](const QString& kind, const QString&) { ADD_FAILURE() << qPrintable(kind); });
    for (const char* request :
        {"", "[]", "{}", "{\"paste\":1}", "{\"paste\":\"1\",\"sources\":[]}", "\xff"})
        pictures.import(QString::fromUtf8(request));
}
