#include "capture/IconFile.h"

#include "capture/IconDirectory.h"
#include "capture/IconFiles.h"

#include <QtEndian>

namespace {

const QString name = QStringLiteral("test.ico");

/// A file with its bytes at an offset changed.
QByteArray with(QByteArray file, qsizetype offset, quint32 number, int bytes)
{
    return file.replace(offset, bytes, little(number, bytes));
}

/// A PNG that says to be of another size, its check sum right.
QByteArray pngOfSize(quint32 width, quint32 height)
{
    QByteArray png = pngOf(coloured(16, Qt::red));
    constexpr int type = 12, size = 16, checkSum = 29;
    qToBigEndian(width, png.data() + size);
    qToBigEndian(height, png.data() + size + 4);
    quint32 sum = ~0u;
    for (int i = type; i < checkSum; ++i) {
        sum ^= quint8(png[i]);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320 : 0);
    }
    qToBigEndian(~sum, png.data() + checkSum);
    return png;
}

} // namespace

TEST(IconFile, FirstPictureIsTheIcon)
{
    OwnRes res;
    res.put(name,
        iconFileOf(1, {{pngOf(coloured(16, Qt::red)), 16}, {pngOf(coloured(32, Qt::blue)), 32}}));
    const QImage icon = LoadIconFile(name);
    EXPECT_EQ(icon.size(), QSize(16, 16));
    EXPECT_EQ(icon.devicePixelRatio(), 1);
    EXPECT_EQ(icon.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(1, 0), QColor(Qt::green));
}

TEST(IconFile, BitmapsAreReadWithTheirTransparency)
{
    OwnRes res;
    QImage image = coloured(16, Qt::red);
    image.setPixelColor(2, 2, QColor(0, 0, 0, 0));
    res.put(name, iconFileOf(1, {{dibOf(image), 16}}));
    const QImage icon = LoadIconFile(name);
    ASSERT_EQ(icon.size(), QSize(16, 16));
    EXPECT_EQ(icon.pixelColor(1, 0), QColor(Qt::green));
    EXPECT_EQ(icon.pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(2, 2).alpha(), 0);
}

TEST(IconFile, AnIconOf256Pixels)
{
    OwnRes res;
    res.put(name, iconFileOf(1, {{dibOf(coloured(256, Qt::red)), 0}}));
    EXPECT_EQ(LoadIconFile(name).size(), QSize(256, 256));
}

TEST(IconFile, AMissingFileIsNoIcon)
{
    OwnRes res;
    EXPECT_TRUE(LoadIconFile(name).isNull());
    EXPECT_TRUE(LoadIconFile(QString()).isNull());
}

TEST(IconFile, HostileFilesAreNoIcons)
{
    const QByteArray good = iconFileOf(1, {{pngOf(coloured(16, Qt::red)), 16}});
    const QByteArray bitmap = iconFileOf(1, {{dibOf(coloured(16, Qt::red)), 16}});
    constexpr int dib = 22;
    const struct {
        const char* what;
        QByteArray file;
    } cases[] = {
        {"nothing", {}},
        {"text", "this is no icon at all, but a text of some length"},
        {"only a header", good.left(6)},
        {"no entries", iconFileOf(1, {})},
        {"cut in the directory", good.left(12)},
        {"cut in the picture", good.left(good.size() - 4)},
        {"a cursor", iconFileOf(2, {{pngOf(coloured(16, Qt::red)), 16}})},
        {"more entries than there are", with(good, 4, 65535, 2)},
        {"a length beyond the file", with(good, 14, 0xFFFFFFFF, 4)},
        {"an offset beyond the file", with(good, 18, 0xFFFFFFFF, 4)},
        {"length and offset that wrap around", with(with(good, 14, 0xFFFFFFF0, 4), 18, 0x20, 4)},
        {"an empty picture", with(good, 14, 0, 4)},
        {"a huge PNG", iconFileOf(1, {{pngOfSize(20'000, 20'000), 16}})},
        {"a PNG that is just too wide", iconFileOf(1, {{pngOfSize(257, 16), 16}})},
        {"a huge bitmap", with(bitmap, dib + 4, 0x7FFFFFFF, 4)},
        {"a bitmap of negative width", with(bitmap, dib + 4, 0xFFFFFFF0, 4)},
        {"a bitmap without height", with(bitmap, dib + 8, 0, 4)},
        {"a bitmap cut in its pixels",
            iconFileOf(1, {{dibOf(coloured(16, Qt::red)).left(100), 16}})},
        {"a bitmap of an odd depth", with(bitmap, dib + 14, 77, 2)},
        {"a good picture beside a broken one",
            iconFileOf(1, {{pngOf(coloured(16, Qt::red)), 16}, {"junk", 32}})},
        {"more than a mebibyte", good + QByteArray(1024 * 1024, '\0')},
    };
    for (const auto& [what, file] : cases) {
        OwnRes res;
        res.put(name, file);
        EXPECT_TRUE(LoadIconFile(name).isNull()) << what;
    }
}

TEST(IconFile, EachIconOfTheToolbarIsThere)
{
    for (const char* icon : {"copy.ico", "saveas.ico", "exit.ico", "complete.ico"}) {
        const QImage image = LoadIconFile(QString::fromLatin1(icon));
        EXPECT_EQ(image.size(), QSize(16, 16)) << icon;
        const auto all =
            capture::ReadIconDirectory(QString::fromLatin1(icon), capture::IconKind::Icon);
        EXPECT_EQ(all.size(), 4u) << icon;
        for (const capture::PackedIcon& packed : all)
            EXPECT_FALSE(capture::UnpackIcon(packed).isNull()) << icon;
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << icon;
    }
}
