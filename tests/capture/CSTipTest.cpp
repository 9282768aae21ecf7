#include "capture/CSTip.h"

#include "capture/CaptureOwner.h"
#include "kit/Print.h"

#include <QPaintEngine>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

namespace {

/// A dialog whose picture and selection the test sets.
class Scene : public QWidget, public CaptureOwner {
public:
    QImage snapshot{640, 480, QImage::Format_RGB32};
    QImage shown{640, 480, QImage::Format_RGB32};
    CaptureRect selection;
    mutable QRect asked;

    Scene()
    {
        setWindowFlag(Qt::FramelessWindowHint);
        setGeometry(0, 0, 640, 480);
        snapshot.fill(Qt::gray);
        shown.fill(Qt::white);
    }
    const QImage& Snapshot() const override { return snapshot; }
    QSize ScreenSize() const override { return {640, 480}; }
    CaptureRect Selection() const override { return selection; }
    void PaintScene(QPainter& painter, const QRect& area) const override
    {
        asked = area;
        const QRect there = area & rect();
        painter.drawImage(there, shown, there);
    }
    void RepaintCaptureArea() override { }
    void OnSelectionRectChanged(const CaptureRect&) override { }
};

/// Keeps the texts that are drawn on it: all of one line, by the line's baseline.
class TextRecorder : public QPaintEngine, public QPaintDevice {
public:
    struct Line {
        QString text;
        int left = 0;
        QColor colour;
    };
    std::map<int, Line> lines;

    TextRecorder()
        : QPaintEngine(AllFeatures)
    {
    }
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& state) override
    {
        if (state.state() & DirtyPen)
            m_colour = state.pen().color();
    }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override { }
    void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override
    {
    }
    void drawPath(const QPainterPath&) override { }
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override { }
    void drawTextItem(const QPointF& at, const QTextItem& item) override
    {
        Line& line = lines[qRound(at.y())];
        if (line.text.isEmpty())
            line = {QString(), qRound(at.x()), m_colour};
        line.text += item.text();
    }
    Type type() const override { return User; }
    QPaintEngine* paintEngine() const override { return const_cast<TextRecorder*>(this); }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return 300;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        default:
            return 96;
        }
    }

private:
    QColor m_colour;
};

class Tip : public ::testing::Test {
protected:
    Scene scene;
    CSTip tip{&scene, &scene};

    void SetUp() override
    {
        scene.show();
        tip.Place();
        QCursor::setPos(320, 300);
    }
    void TearDown() override { QCursor::setPos(0, 0); }

    QImage drawn(qreal ratio = 1)
    {
        QImage image(QSize(260, 200) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        tip.DrawTip(painter, {0, 0, 260, 200});
        return image;
    }
    std::vector<TextRecorder::Line> texts()
    {
        TextRecorder recorder;
        {
            QPainter painter(&recorder);
            tip.DrawTip(painter, {0, 0, 260, 200});
        }
        std::vector<TextRecorder::Line> lines;
        for (const auto& [baseline, line] : recorder.lines)
            lines.push_back(line);
        return lines;
    }
    QString pixelText() { return texts().at(1).text; }
    QString sizeText() { return texts().at(2).text; }
};

bool isOf(const QImage& image, const QRect& area, const QColor& colour)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixel(x, y) != colour.rgb()) {
                ADD_FAILURE() << x << ", " << y << " is "
                              << image.pixelColor(x, y).name().toStdString();
                return false;
            }
        }
    }
    return true;
}

} // namespace

TEST_F(Tip, IsEmptyUntilItIsPlacedAndStandsInTheUpperLeftCornerThen)
{
    CSTip other(&scene, &scene);
    EXPECT_TRUE(other.size().isEmpty());
    EXPECT_TRUE(other.On());
    other.Place();
    EXPECT_EQ(other.geometry(), QRect(10, 10, 260, 200));
}

TEST_F(Tip, SwapsToTheOtherUpperCornerAndBack)
{
    tip.Swap();
    EXPECT_FALSE(tip.On());
    EXPECT_EQ(tip.geometry(), QRect(640 - 10 - 260, 10, 260, 200));
    tip.Swap();
    EXPECT_TRUE(tip.On());
    EXPECT_EQ(tip.geometry(), QRect(10, 10, 260, 200));
}

TEST_F(Tip, GoesFromUnderThePointerAndComesBackFromTheOtherCorner)
{
    QTest::mouseMove(&tip, QPoint(0, 0));
    EXPECT_FALSE(tip.On());
    QTest::mouseMove(&tip, QPoint(259, 199));
    EXPECT_TRUE(tip.On());
}

TEST_F(Tip, StaysWhileAHeldButtonMovesElsewhere)
{
    QTest::mousePress(&tip, Qt::LeftButton, {}, QPoint(5, 5));
    QMouseEvent outside(QEvent::MouseMove, QPointF(300, 5), QPointF(310, 15), Qt::NoButton,
        Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&tip, &outside);
    QTest::mouseRelease(&tip, Qt::LeftButton, {}, QPoint(300, 5));
    EXPECT_TRUE(tip.On());
}

TEST_F(Tip, KeepsItsMouseEventsFromTheDialog)
{
    struct Counter : QObject {
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::MouseButtonPress
                || event->type() == QEvent::MouseButtonRelease
                || event->type() == QEvent::MouseButtonDblClick
                || event->type() == QEvent::MouseMove;
            return false;
        }
    } counter;
    scene.installEventFilter(&counter);
    QTest::mouseDClick(&tip, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseClick(&tip, Qt::RightButton, {}, QPoint(5, 5));
    EXPECT_EQ(counter.count, 0);
}

TEST_F(Tip, HasAFrameOnALightGround)
{
    const QImage image = drawn();
    const QColor ground(252, 252, 252), frame(200, 200, 200);
    EXPECT_TRUE(isOf(image, QRect(0, 0, 260, 2), ground));
    EXPECT_TRUE(isOf(image, QRect(0, 198, 260, 2), ground));
    EXPECT_TRUE(isOf(image, QRect(0, 0, 2, 200), ground));
    EXPECT_TRUE(isOf(image, QRect(258, 0, 2, 200), ground));
    EXPECT_TRUE(isOf(image, QRect(2, 2, 256, 1), frame));
    EXPECT_TRUE(isOf(image, QRect(2, 2, 1, 23), frame));
    EXPECT_TRUE(isOf(image, QRect(257, 2, 1, 23), frame));
}

TEST_F(Tip, TitleBarDarkensRowByRow)
{
    const QImage image = drawn();
    for (int row = 0; row < 22; ++row) {
        const int grey = 252 - 40 * row / 22;
        EXPECT_TRUE(isOf(image, QRect(3, 3 + row, 4, 1), QColor(grey, grey, grey)));
        EXPECT_TRUE(isOf(image, QRect(100, 3 + row, 157, 1), QColor(grey, grey, grey)));
    }
    EXPECT_EQ(image.pixelColor(256, 24), QColor(214, 214, 214));
}

TEST_F(Tip, TextsStandInTheirPlacesAndColours)
{
    const auto lines = texts();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].text, QStringLiteral("截图"));
    EXPECT_EQ(lines[0].left, 7);
    EXPECT_EQ(lines[0].colour, QColor(68, 68, 68));
    EXPECT_EQ(lines[1].text, QStringLiteral("像素RGB值：(160,160,160)"));
    EXPECT_EQ(lines[1].left, 6);
    EXPECT_EQ(lines[1].colour, QColor(250, 250, 250));
    EXPECT_EQ(lines[2].text, QStringLiteral("矩形大小：(0,0)"));
    EXPECT_EQ(lines[2].left, 6);
    EXPECT_EQ(lines[2].colour, QColor(255, 255, 132));
}

TEST_F(Tip, EachTextIsSeenWithinItsRows)
{
    const QImage image = drawn();
    const auto hasInk = [&](const QRect& rows, const QColor& ground) {
        for (int y = rows.top(); y <= rows.bottom(); ++y)
            for (int x = rows.left(); x <= rows.right(); ++x)
                if (std::abs(image.pixelColor(x, y).green() - ground.green()) > 60)
                    return true;
        return false;
    };
    const QColor bar(55, 173, 223);
    EXPECT_TRUE(hasInk(QRect(7, 3, 40, 22), QColor(232, 232, 232)));
    EXPECT_TRUE(hasInk(QRect(6, 167, 100, 14), bar));
    EXPECT_TRUE(hasInk(QRect(6, 181, 100, 14), bar));
    // The rest is the bar's.
    EXPECT_TRUE(isOf(image, QRect(2, 167, 4, 31), bar));
    EXPECT_TRUE(isOf(image, QRect(2, 196, 256, 2), bar));
    EXPECT_TRUE(isOf(image, QRect(220, 167, 38, 31), bar));
}

TEST_F(Tip, ColourTextShowsGreenTwiceAndBlueNever)
{
    scene.snapshot.setPixelColor(320, 300, QColor(1, 2, 3));
    EXPECT_EQ(pixelText(), QStringLiteral("像素RGB值：(1,2,2)"));
    scene.snapshot.setPixelColor(320, 300, Qt::blue);
    EXPECT_EQ(pixelText(), QStringLiteral("像素RGB值：(0,0,0)"));
}

TEST_F(Tip, ColourIsOfTheFrozenScreenAlsoUnderTheTipItself)
{
    scene.snapshot.setPixelColor(20, 20, QColor(9, 8, 7));
    QCursor::setPos(20, 20);
    EXPECT_EQ(pixelText(), QStringLiteral("像素RGB值：(9,8,8)"));
}

TEST_F(Tip, ColourOutsideOfThePictureShowsAsWhite)
{
    scene.snapshot = scene.snapshot.copy(0, 0, 320, 480);
    EXPECT_EQ(pixelText(), QStringLiteral("像素RGB值：(255,255,255)"));
    scene.snapshot = QImage();
    EXPECT_EQ(pixelText(), QStringLiteral("像素RGB值：(255,255,255)"));
}

TEST_F(Tip, ColourIsOfTheDevicePixelOnAScreenOfHigherDensity)
{
    for (const qreal ratio : {1.5, 2.0}) {
        scene.snapshot = QImage(QSize(640, 480) * ratio, QImage::Format_RGB32);
        scene.snapshot.fill(Qt::black);
        scene.snapshot.setPixelColor(int(320 * ratio), int(300 * ratio), QColor(4, 5, 6));
        scene.snapshot.setDevicePixelRatio(ratio);
        EXPECT_EQ(pixelText(), QStringLiteral("像素RGB值：(4,5,5)"));
    }
}

TEST_F(Tip, SizeOfAnInvertedSelectionIsPositive)
{
    scene.selection = {200, 150, 90, 100};
    EXPECT_EQ(sizeText(), QStringLiteral("矩形大小：(110,50)"));
}

TEST_F(Tip, MagnifierShowsTheDialogAroundThePointerTwice)
{
    for (int y = 0; y < 480; ++y)
        for (int x = 0; x < 640; ++x)
            scene.shown.setPixelColor(x, y, QColor(x % 256, y % 256, x / 256));
    const QImage image = drawn();
    EXPECT_EQ(scene.asked, QRect(320 - 64, 300 - 35, 128, 70));
    for (int y = 0; y < 142; ++y) {
        for (int x = 0; x < 256; ++x) {
            if ((x >= 126 && x < 130) || (y >= 69 && y < 73))
                continue; // the crosshair
            const QColor found = image.pixelColor(2 + x, 25 + y);
            ASSERT_EQ(found.red() + 256 * found.blue(), 256 + x / 2) << x;
            // 70 rows on 142.
            ASSERT_LE(std::abs(found.green() + 256 - (265 + y * 70 / 142)), 1) << y;
        }
    }
    // It ends where title and information begin.
    EXPECT_EQ(image.pixelColor(250, 24), QColor(214, 214, 214));
    EXPECT_EQ(image.pixelColor(250, 167), QColor(55, 173, 223));
}

TEST_F(Tip, CrosshairKeepsOfEachPixelWhatItsColourHas)
{
    const QImage white = drawn();
    const QColor cross(250, 0, 0);
    EXPECT_TRUE(isOf(white, QRect(3, 94, 125, 4), cross));
    EXPECT_TRUE(isOf(white, QRect(132, 94, 125, 4), cross));
    EXPECT_TRUE(isOf(white, QRect(128, 26, 4, 68), cross));
    EXPECT_TRUE(isOf(white, QRect(128, 98, 4, 68), cross));
    // A pixel short of each edge.
    EXPECT_TRUE(isOf(white, QRect(2, 94, 1, 4), Qt::white));
    EXPECT_TRUE(isOf(white, QRect(257, 94, 1, 4), Qt::white));
    EXPECT_TRUE(isOf(white, QRect(128, 25, 4, 1), Qt::white));
    EXPECT_TRUE(isOf(white, QRect(128, 166, 4, 1), Qt::white));
    // The crossing.
    EXPECT_TRUE(isOf(white, QRect(128, 94, 4, 4), Qt::white));

    scene.shown.fill(QColor(0x0F, 0xFF, 0x80));
    EXPECT_TRUE(isOf(drawn(), QRect(3, 94, 125, 4), QColor(0x0F & 250, 0, 0)));
    scene.shown.fill(QColor(0, 0xFF, 0));
    EXPECT_TRUE(isOf(drawn(), QRect(3, 94, 125, 4), Qt::black));
}

TEST_F(Tip, MagnifierIsBlackBeyondTheEdgeOfTheScreen)
{
    QCursor::setPos(639, 479);
    const QImage image = drawn();
    EXPECT_TRUE(isOf(image, QRect(2, 25, 120, 60), Qt::white));
    EXPECT_TRUE(isOf(image, QRect(140, 25, 118, 60), Qt::black));
    EXPECT_TRUE(isOf(image, QRect(140, 110, 118, 57), Qt::black));
}

TEST_F(Tip, MagnifierShowsWhatStandsOnTheDialogToo)
{
    QWidget bar(&scene);
    bar.setAutoFillBackground(true);
    bar.setPalette(QColor(10, 200, 30));
    bar.setGeometry(320 - 64, 300 - 35, 32, 16);
    EXPECT_TRUE(isOf(drawn(), QRect(2, 25, 60, 20), Qt::white)); // not shown yet
    bar.show();
    EXPECT_TRUE(isOf(drawn(), QRect(2, 25, 63, 30), QColor(10, 200, 30)));
    EXPECT_EQ(drawn().pixelColor(70, 30), QColor(Qt::white));
}

TEST_F(Tip, MagnifierShowsTheTipItselfAsItWasLast)
{
    scene.shown.fill(Qt::blue);
    tip.grab(); // has been on the screen
    QCursor::setPos(275, 30); // 5 to the right of it
    // From 211 on, so 59 columns of it are seen, the last two of them ground.
    const QImage image = drawn();
    EXPECT_EQ(image.pixelColor(2 + 2 * 58, 60), QColor(252, 252, 252));
    EXPECT_EQ(image.pixelColor(2 + 2 * 59, 60), QColor(Qt::blue));
}

TEST_F(Tip, IsDrawnInDevicePixels)
{
    for (int x = 0; x < 640; ++x)
        for (int y = 0; y < 480; ++y)
            scene.shown.setPixelColor(x, y, x % 2 ? Qt::white : Qt::blue);
    const QImage image = drawn(2);
    EXPECT_TRUE(isOf(image, QRect(4, 4, 512, 2), QColor(200, 200, 200)));
    EXPECT_TRUE(isOf(image, QRect(4, 80, 4, 1), Qt::blue));
    EXPECT_TRUE(isOf(image, QRect(8, 80, 4, 1), Qt::white));
    EXPECT_TRUE(isOf(image, QRect(256, 188, 8, 8), Qt::white));
}

TEST_F(Tip, PaintsItselfInOnePiece)
{
    const QImage shot = tip.grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(shot, drawn());
}
