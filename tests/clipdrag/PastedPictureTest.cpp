#include "clipdrag/PastedPicture.h"

#include "clipdrag/Board.h"
#include "kit/AddingFixture.h"

#include "attachstore/EntryRules.h"
#include "support/FileMd5.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

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
    int shown = 3; ///< The number of the text in the page.
    clipdrag::PastedPictures::IsShown isShown = [this](int load) { return load == shown; };

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
    /// What the page is told when it asks for these.
    QStringList digestsOf(const QJsonArray& sources)
    {
        QStringList digests;
        const auto post = [&](const QString& kind, const QString& text) {
            const QJsonObject told = QJsonDocument::fromJson(text.toUtf8()).object();
            if (kind == u"pictures") {
                for (const QJsonValue& digest : told.value(u"digests").toArray())
                    digests << digest.toString();
            }
        };
        clipdrag::PastedPictures pictures(*adder, isShown, post);
        const QJsonObject request{{QStringLiteral("load"), 3}, {QStringLiteral("paste"), 1},
            {QStringLiteral("sources"), sources}};
        pictures.import(QString::fromUtf8(QJsonDocument(request).toJson()));
        return digests;
    }
    static QStringList temporaryFiles() { return QDir(GetTempDir()).entryList(QDir::Files); }
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
    const auto post = [&](const QString& kind, const QString& text) {
        order << kind + u' ' + text;
        if (kind == u"picturesDone") {
            EXPECT_EQ(page.count(QStringLiteral("AddPicToEditor")), 1);
        }
    };
    clipdrag::PastedPictures pictures(*adder, isShown, post);
    const QJsonObject request{{QStringLiteral("load"), shown}, {QStringLiteral("paste"), 3},
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

TEST_F(PastedPicture, OfMoreThanAThousandSourcesTheFirstThousandAreRead)
{
    const QString picture = dataOf(encoded("PNG"));
    QJsonArray sources;
    while (sources.size() < 999)
        sources.append(QStringLiteral("data:image/png;base64,%%"));
    sources.append(picture);
    sources.append(dataOf(encoded("BMP")));
    sources.append(picture);
    const QStringList digests = digestsOf(sources);
    ASSERT_EQ(digests.size(), 1002);
    EXPECT_FALSE(digests[999].isEmpty());
    EXPECT_EQ(digests[1000], QString());
    EXPECT_EQ(digests[1001], QString());
    EXPECT_EQ(page.count(QStringLiteral("AddPicToEditor")), 1);
}

TEST_F(PastedPicture, APictureThatNoNoteHasRoomForIsRefusedAloudAndMakesNoFile)
{
    const QStringList before = temporaryFiles();
    QByteArray bytes = encoded("PNG");
    bytes.append(qsizetype(attachstore::attachLimit) - bytes.size(), '\0');
    EXPECT_EQ(read(dataOf(bytes))->fileSize, attachstore::attachLimit) << "as much as there can be";
    bytes.append('\0');
    const auto record = clipdrag::ReadPastedPicture(dataOf(bytes), {});
    ASSERT_TRUE(record);
    EXPECT_EQ(record->filePath, QString());
    EXPECT_EQ(record->fileSize, attachstore::attachLimit + 1);
    EXPECT_FALSE(record->isTempFile);
    QFile::remove(made[0].filePath);

    EXPECT_EQ(digestsOf({dataOf(bytes)}), QStringList{QString()});
    EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("最大支持上传10M附件！")});
    EXPECT_TRUE(added().isEmpty());
    EXPECT_TRUE(log.take().isEmpty());
    EXPECT_EQ(temporaryFiles(), before);
}

TEST_F(PastedPicture, TheSizeOfWhatBecomesPngIsThatOfThePng)
{
    QImage plain(2000, 2000, QImage::Format_RGB32);
    plain.fill(Qt::red);
    QImage noise(plain.size(), QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < noise.height(); ++y)
        random.fillRange(reinterpret_cast<quint32*>(noise.scanLine(y)), noise.width());
    QStringList addresses;
    for (const QImage* image : {&plain, &noise}) {
        const QString path = dir.filePath(QStringLiteral("%1.ppm").arg(addresses.size()));
        ASSERT_TRUE(image->save(path, "PPM"));
        ASSERT_GT(QFileInfo(path).size(), qint64(attachstore::attachLimit));
        addresses << addressOf(path);
    }
    const std::set<QString> named(addresses.begin(), addresses.end());
    EXPECT_TRUE(QFile::exists(read(addresses[0], named)->filePath));
    const auto record = clipdrag::ReadPastedPicture(addresses[1], named);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->filePath, QString());
    EXPECT_GT(record->fileSize, attachstore::attachLimit);
}

TEST_F(PastedPicture, RubbishIsIgnored)
{
    clipdrag::PastedPictures pictures(*adder, isShown,
        [](const QString& kind, const QString&) { ADD_FAILURE() << qPrintable(kind); });
    for (const char* request :
        {"", "[]", "{}", "{\"load\":3,\"paste\":1}", "{\"load\":3,\"paste\":\"1\",\"sources\":[]}",
            "{\"paste\":1,\"sources\":[]}", "{\"load\":\"3\",\"paste\":1,\"sources\":[]}", "\xff"})
        pictures.import(QString::fromUtf8(request));
}

TEST_F(PastedPicture, OfATextThatHasGoneByNowComesIntoNoNote)
{
    shown = 4;
    const QStringList before = temporaryFiles();
    EXPECT_TRUE(digestsOf({dataOf(encoded("PNG"))}).isEmpty());
    EXPECT_TRUE(page.order.isEmpty());
    EXPECT_EQ(temporaryFiles(), before);
    shown = 3;
    EXPECT_EQ(digestsOf({dataOf(encoded("PNG"))}).size(), 1);
    EXPECT_EQ(added().size(), 1);
}
