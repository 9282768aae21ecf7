#include "capture/CursorFile.h"

#include "capture/IconFiles.h"

#include <QPixmap>

namespace {

const QString name = QStringLiteral("test.cur");

IconEntry entry(int x, int y)
{
    return {pngOf(coloured(32, Qt::red)), 32, x, y};
}

} // namespace

TEST(CursorFile, HasItsPictureAndHotSpot)
{
    OwnRes res;
    res.put(name, iconFileOf(2, {entry(3, 7), entry(0, 0)}));
    const auto cursor = LoadCursorFile(name);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->hotSpot(), QPoint(3, 7));
    EXPECT_EQ(cursor->pixmap().size(), QSize(32, 32));
    EXPECT_EQ(cursor->pixmap().toImage().pixelColor(1, 0), QColor(Qt::green));
}

TEST(CursorFile, OfABitmapHasItsHotSpotToo)
{
    OwnRes res;
    res.put(name, iconFileOf(2, {{dibOf(coloured(32, Qt::red)), 32, 16, 15}}));
    const auto cursor = LoadCursorFile(name);
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->hotSpot(), QPoint(16, 15));
}

TEST(CursorFile, MissingOrHostileGivesNothing)
{
    const QByteArray good = iconFileOf(2, {entry(3, 7)});
    const struct {
        const char* what;
        QByteArray file;
    } cases[] = {
        {"nothing", {}},
        {"an icon", iconFileOf(1, {entry(3, 7)})},
        {"no entries", iconFileOf(2, {})},
        {"cut", good.left(good.size() / 2)},
        {"a hot spot outside", iconFileOf(2, {entry(32, 0)})},
        {"a hot spot far outside", iconFileOf(2, {entry(65535, 65535)})},
    };
    EXPECT_FALSE(LoadCursorFile(name));
    for (const auto& [what, file] : cases) {
        OwnRes res;
        res.put(name, file);
        EXPECT_FALSE(LoadCursorFile(name)) << what;
    }
}

TEST(CursorFile, EachCursorOfTheCaptureIsThere)
{
    for (const char* file :
        {"size1_r.cur", "size2_r.cur", "size3_r.cur", "size4_r.cur", "move_r.cur"}) {
        const auto cursor = LoadCursorFile(QString::fromLatin1(file));
        ASSERT_TRUE(cursor) << file;
        EXPECT_EQ(cursor->hotSpot(), QPoint(16, 16)) << file;
        EXPECT_EQ(cursor->pixmap().size(), QSize(32, 32)) << file;
        // Dark in the middle, on a transparent ground.
        const QImage image = cursor->pixmap().toImage();
        EXPECT_LT(image.pixelColor(16, 16).lightness(), 60) << file;
        EXPECT_EQ(image.pixelColor(16, 16).alpha(), 255) << file;
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << file;
    }
    const auto arrow = LoadCursorFile(QStringLiteral("arrow_m.cur"));
    ASSERT_TRUE(arrow);
    EXPECT_EQ(arrow->hotSpot(), QPoint(4, 3));
}

TEST(CursorFile, EachResizeCursorPointsItsWay)
{
    const auto inkAt = [](const char* file, int x, int y) {
        return LoadCursorFile(QString::fromLatin1(file))
                   ->pixmap()
                   .toImage()
                   .pixelColor(x, y)
                   .alpha()
            > 0;
    };
    EXPECT_TRUE(inkAt("size1_r.cur", 22, 10)); // upper right
    EXPECT_FALSE(inkAt("size1_r.cur", 10, 10));
    EXPECT_TRUE(inkAt("size2_r.cur", 10, 10)); // upper left
    EXPECT_FALSE(inkAt("size2_r.cur", 22, 10));
    EXPECT_TRUE(inkAt("size3_r.cur", 8, 16)); // left
    EXPECT_FALSE(inkAt("size3_r.cur", 16, 8));
    EXPECT_TRUE(inkAt("size4_r.cur", 16, 8)); // top
    EXPECT_FALSE(inkAt("size4_r.cur", 8, 16));
    EXPECT_TRUE(inkAt("move_r.cur", 8, 16));
    EXPECT_TRUE(inkAt("move_r.cur", 16, 8));
}
