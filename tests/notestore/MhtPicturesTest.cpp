// The MHT file that carries its pictures, read by Python's `email`.

#include "notestore/MhtExport.h"

#include "notestore/MhtReader.h"
#include "notestore/StorePictures.h"
#include "support/FailingNew.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace notestore;

namespace {

QByteArray picture(const char* format, QRgb colour = qRgb(200, 30, 40))
{
    QImage image(24, 16, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

QString shown(const QString& name)
{
    return QStringLiteral("<img src=\"../userdata\\attachment\\%1\">").arg(name);
}

// A line of what the system tells of this process's memory.
qint64 residentKilobytes(const char* line)
{
    const QByteArray status = readFile(QStringLiteral("/proc/self/status"));
    return status.sliced(status.indexOf(line) + qsizetype(std::strlen(line)))
        .trimmed()
        .split(' ')
        .first()
        .toLongLong();
}

bool forgetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1;
}

class MhtPictures : public testing::Test {
protected:
    MhtFile exported(const QString& html)
    {
        EXPECT_EQ(NoteHtmlContentToMhtFileWithPictures(html, path), 1);
        MhtFile file = readMht(path);
        EXPECT_EQ(file.defects, QStringList());
        EXPECT_LE(file.longestLine, 76);
        EXPECT_EQ(file.bareLineEnds, 0);
        EXPECT_EQ(file.aroundParts, QString());
        return file;
    }

    QString store(const QString& name, const QByteArray& bytes)
    {
        m_store.write(name, bytes);
        return name;
    }

    TestStore m_store;
    QTemporaryDir m_there;
    const QString path = m_there.filePath(QStringLiteral("note.mht"));
};

// The addresses that the images of a text refer to.
QStringList sources(const QString& html)
{
    static const QRegularExpression src(QStringLiteral("src=\"([^\"]*)\""));
    QStringList found;
    for (auto it = src.globalMatch(html); it.hasNext();)
        found += it.next().captured(1);
    return found;
}

// The part that a `cid:` address names, by the rule of RFC 2392.
const MhtPart* partOf(const MhtFile& file, const QString& address)
{
    for (const MhtPart& part : file.parts) {
        const QString id = part.headers[QStringLiteral("content-id")];
        if (!id.isEmpty() && address == QStringLiteral("cid:") + id.sliced(1, id.size() - 2))
            return &part;
    }
    return nullptr;
}

} // namespace

TEST_F(MhtPictures, EachPictureOfTheStoreStandsInTheFileAndIsReferredToByItsId)
{
    const std::vector<std::pair<const char*, QString>> kinds{{"PNG", QStringLiteral("image/png")},
        {"JPG", QStringLiteral("image/jpeg")}, {"BMP", QStringLiteral("image/bmp")}};
    QString html = QStringLiteral("<p>图 ");
    std::vector<QByteArray> bytes;
    for (const auto& [format, type] : kinds) {
        bytes.push_back(picture(format));
        // A wrong extension: what it is tells the content.
        html += shown(store(QString::fromLatin1(format) + QStringLiteral(".dat"), bytes.back()));
    }
    const MhtFile file = exported(html);
    ASSERT_EQ(file.parts.size(), 1 + kinds.size());
    EXPECT_EQ(file.parts[0].type, QStringLiteral("text/html"));
    const QStringList addresses = sources(file.html());
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const MhtPart* const part = partOf(file, addresses.value(qsizetype(i)));
        ASSERT_EQ(part, &file.parts[i + 1]);
        EXPECT_EQ(part->type, kinds[i].second);
        EXPECT_TRUE(part->body == bytes[i]);
        EXPECT_EQ(
            part->headers[QStringLiteral("content-transfer-encoding")], QStringLiteral("base64"));
        EXPECT_EQ(part->headers[QStringLiteral("content-location")],
            QStringLiteral("file:///picture%1.%2").arg(i).arg(kinds[i].second.section(u'/', 1)));
    }
}

TEST_F(MhtPictures, GifAndWebpArePicturesToo)
{
    const QByteArray gif =
        QByteArray::fromBase64("R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7");
    const QByteArray webp =
        QByteArray::fromBase64("UklGRhoAAABXRUJQVlA4TA0AAAAvAAAAEAcQERGIiP4HAA==");
    const MhtFile file = exported(
        shown(store(QStringLiteral("a.gif"), gif)) + shown(store(QStringLiteral("b"), webp)));
    ASSERT_EQ(file.parts.size(), 3u);
    EXPECT_EQ(file.parts[1].type, QStringLiteral("image/gif"));
    EXPECT_EQ(file.parts[2].type, QStringLiteral("image/webp"));
    EXPECT_EQ(file.parts[2].body, webp);
}

TEST_F(MhtPictures, APictureThatIsShownTwiceIsThereOnce)
{
    const QString name = store(QStringLiteral("a.png"), picture("PNG"));
    const MhtFile file = exported(shown(name) + QStringLiteral("<p>") + shown(name));
    EXPECT_EQ(file.parts.size(), 2u);
    const QStringList addresses = sources(file.html());
    ASSERT_EQ(addresses.size(), 2);
    EXPECT_EQ(addresses[0], addresses[1]);
}

TEST_F(MhtPictures, TheRestOfTheElementStaysAsItIs)
{
    const QString name = store(QStringLiteral("a.png"), picture("PNG"));
    const QString html = QStringLiteral("<p>a<IMG class='userdata\\attachment\\a.png' src='%1' "
                                        "data-ke-src='%1' nm_exdata=\"{}\" alt></P>");
    const MhtFile file = exported(html.arg(QStringLiteral("../userdata\\attachment\\a.png")));
    static const QRegularExpression address(QStringLiteral("src=\"cid:[^\"]*\""));
    QString text = file.html();
    text.replace(address, QStringLiteral("src='../userdata\\attachment\\a.png'"));
    EXPECT_EQ(text, html.arg(QStringLiteral("../userdata\\attachment\\a.png")));
}

TEST_F(MhtPictures, TwoExportsDoNotShareIds)
{
    const QString html = shown(store(QStringLiteral("a.png"), picture("PNG")));
    EXPECT_NE(sources(exported(html).html()), sources(exported(html).html()));
}

TEST_F(MhtPictures, WhatIsMissingUnsafeOrNoPictureStaysTheReferenceItWas)
{
    store(QStringLiteral("note.html"), "<!--{\"ver_number\":2}-->secret");
    store(QStringLiteral("text.png"), "BMW is a car maker");
    store(QStringLiteral("empty.png"), "");
    store(QStringLiteral("a.png"), picture("PNG"));
    QDir(m_store.store()).mkdir(QStringLiteral("dir.png"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(m_store.path(QStringLiteral("fifo.png"))), 0600), 0);
    writeFile(m_store.appDir() + QStringLiteral("outside.png"), picture("PNG"));
    const QStringList kept{QStringLiteral("../userdata\\attachment\\none.png"),
        QStringLiteral("../userdata\\attachment\\note.html"),
        QStringLiteral("../userdata\\attachment\\text.png"),
        QStringLiteral("../userdata\\attachment\\empty.png"),
        QStringLiteral("../userdata\\attachment\\dir.png"),
        QStringLiteral("../userdata\\attachment\\fifo.png"),
        QStringLiteral("../userdata\\attachment\\.."), QStringLiteral("../userdata\\attachment\\"),
        QStringLiteral("../userdata\\attachment\\..\\..\\outside.png"),
        QStringLiteral("../outside.png"), QStringLiteral("a.png"), QStringLiteral("x/a.png"),
        QStringLiteral("https://example.org/userdata/attachment/a.png"),
        QStringLiteral(" HTTP:userdata/attachment/a.png"),
        QStringLiteral("//host/userdata/attachment/a.png"),
        QStringLiteral("\\\\host\\userdata\\attachment\\a.png"),
        QStringLiteral("data:image/png;base64,AAAA/userdata/attachment/a.png"),
        QStringLiteral("javascript:alert(1)"), QString()};
    QString html = QStringLiteral("<html><head></head><body>");
    for (const QString& src : kept)
        html += QStringLiteral("<img src=\"%1\">").arg(src);
    html += QStringLiteral("<img><img class=\"userdata\\attachment\\a.png\">");
    const MhtFile file = exported(html);
    EXPECT_EQ(file.parts.size(), 1u);
    EXPECT_EQ(file.html(), html); // byte for byte, the head too
}

TEST_F(MhtPictures, TheStoreIsMeantByEitherSlashAndByAnyNameInAnAttachment)
{
    store(QStringLiteral("a.png"), picture("PNG"));
    for (const QString& html : {QStringLiteral("<img src='../userdata/attachment/a.png'>"),
             QStringLiteral("<img src='file:///C:/x/userdata/attachment/a.png'>"),
             QStringLiteral("<img src='C:\\x\\userdata\\attachment\\a.png'>"),
             QStringLiteral("<img src='a.png' nm_exdata='{}'>"),
             QStringLiteral("<img src=' x/a.png ' nm_exdata>")})
        EXPECT_EQ(exported(html).parts.size(), 2u) << html.toStdString();
}

TEST_F(MhtPictures, MorePicturesThanFilesMayBeOpenAreNoTrouble)
{
    rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit tight{64, before.rlim_max};
    QString html;
    for (int i = 0; i < 300; ++i)
        html += shown(store(QString::number(i), picture("PNG", QRgb(0xFF000000 + i))));
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
    const int result = NoteHtmlContentToMhtFileWithPictures(html, path);
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(result, 1);
    const MhtFile file = readMht(path);
    ASSERT_EQ(file.parts.size(), 301u);
    EXPECT_EQ(file.parts[300].body, picture("PNG", QRgb(0xFF000000 + 299)));
}

TEST_F(MhtPictures, MemoryDoesNotGrowWithAPicture)
{
    constexpr qint64 size = 200 << 20;
    store(QStringLiteral("a.bmp"), picture("BMP"));
    ASSERT_EQ(::truncate(QFile::encodeName(m_store.path(QStringLiteral("a.bmp"))), size), 0);
    const qint64 before = residentKilobytes("VmRSS:");
    ASSERT_TRUE(forgetPeak());
    ASSERT_EQ(NoteHtmlContentToMhtFileWithPictures(shown(QStringLiteral("a.bmp")), path), 1);
    EXPECT_LT(residentKilobytes("VmHWM:") - before, 20 * 1024);
    EXPECT_GT(QFileInfo(path).size(), size / 3 * 4);
}

TEST_F(MhtPictures, AFullDiskInThePicturesLeavesTheEarlierFile)
{
    writeFile(path, "earlier");
    const QString html =
        shown(store(QStringLiteral("a.bmp"), picture("BMP") + QByteArray(1 << 20, 'x')));
    LoggedLines lines;
    lines.makeRoom();
    int result;
    {
        const FileSizeLimit limit(200'000);
        result = NoteHtmlContentToMhtFileWithPictures(html, path);
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(lines.take(), QStringList(QStringLiteral("[ERROR:] HtmlToMht发生错误，错误信息: ")));
    EXPECT_EQ(readFile(path), "earlier");
    EXPECT_EQ(QDir(m_there.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(MhtPictures, AFailureOnTheWayIsLoggedAndLeavesTheEarlierFile)
{
    writeFile(path, "earlier");
    const QString html = shown(store(QStringLiteral("a.png"), picture("PNG")));
    int failures = 0;
    for (long allowed = 0; allowed < 300; ++allowed) {
        LoggedLines lines;
        lines.makeRoom();
        int result;
        {
            const FailingNew failing(allowed);
            result = NoteHtmlContentToMhtFileWithPictures(html, path);
        }
        const QStringList logged = lines.take();
        if (result)
            break;
        ++failures;
        EXPECT_EQ(logged, QStringList(QStringLiteral("[ERROR:] HtmlToMht 发送未知错误！")))
            << allowed;
        EXPECT_EQ(readFile(path), "earlier");
    }
    EXPECT_GT(failures, 5);
    EXPECT_EQ(readMht(path).parts.size(), 2u);
}
