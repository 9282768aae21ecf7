#include "capture/STIconButton.h"

#include "kit/Print.h"
#include "kit/Wait.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr QColor back(216, 241, 255);
constexpr QColor lit(167, 222, 253);

QImage icon(int width, int height, qreal ratio = 1)
{
    QImage image(QSize(width, height) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    image.setDevicePixelRatio(ratio);
    return image;
}

/// Counts the keys that no child took.
class KeyCounter : public QWidget {
public:
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent*) override { ++presses; }
};

class IconButton : public ::testing::Test {
protected:
    KeyCounter window;
    STIconButton button{&window};
    int clicks = 0;

    void SetUp() override
    {
        QCursor::setPos(700, 700);
        window.resize(100, 100);
        button.setGeometry(40, 40, 18, 18);
        QObject::connect(&button, &QAbstractButton::clicked, [this] { ++clicks; });
        window.show();
        window.activateWindow();
        ASSERT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
    }

    QImage shot() { return button.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// What DrawIcon alone paints on a black ground.
    QImage drawn(const CaptureRect& rect, STIconButton::State state)
    {
        QImage image(rect.right + 6, rect.bottom + 6, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        button.DrawIcon(painter, rect, state);
        return image;
    }
    void hover()
    {
        QTest::mouseMove(&button, QPoint(9, 9));
        ASSERT_TRUE(waitFor([&] { return button.CurrentState() == STIconButton::Hover; }));
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &event);
    }
};

QRect boundsOf(const QImage& image, const QColor& colour)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == colour)
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

} // namespace

TEST_F(IconButton, WithoutAnIconShowsItsBackgroundAlone)
{
    EXPECT_EQ(boundsOf(shot(), back), QRect(0, 0, 18, 18));
    hover();
    EXPECT_EQ(boundsOf(shot(), back), QRect(0, 0, 18, 18));
    QImage plain(24, 24, QImage::Format_RGB32);
    plain.fill(Qt::black);
    EXPECT_EQ(drawn({0, 0, 18, 18}, STIconButton::Pressed), plain);
}

TEST_F(IconButton, IconStandsInTheMiddleAtItsOwnSize)
{
    button.SetIcon(icon(16, 16));
    EXPECT_EQ(boundsOf(shot(), Qt::red), QRect(1, 1, 16, 16));
    EXPECT_EQ(boundsOf(shot(), back), QRect(0, 0, 18, 18));
    button.SetIcon(icon(10, 6));
    EXPECT_EQ(boundsOf(shot(), Qt::red), QRect(4, 6, 10, 6));
    // An odd difference: half of it, truncated.
    button.SetIcon(icon(15, 11));
    EXPECT_EQ(boundsOf(shot(), Qt::red), QRect(1, 3, 15, 11));
    // Larger than the button: from its corner.
    button.SetIcon(icon(30, 30));
    EXPECT_EQ(
        boundsOf(drawn({2, 3, 20, 21}, STIconButton::Normal), Qt::red).topLeft(), QPoint(2, 3));
}

TEST_F(IconButton, IconOfHigherDensityTakesTheSameRoom)
{
    button.SetIcon(icon(16, 16, 2));
    EXPECT_EQ(boundsOf(shot(), Qt::red), QRect(1, 1, 16, 16));
    EXPECT_EQ(button.sizeHint(), QSize(16, 16));
}

TEST_F(IconButton, LightsUpUnderThePointerAndWhenPressedOnly)
{
    button.SetIcon(icon(4, 4));
    // 4 around the icon in the middle of 18 by 18.
    for (const auto state : {STIconButton::Hover, STIconButton::Pressed})
        EXPECT_EQ(boundsOf(drawn({0, 0, 18, 18}, state), lit), QRect(3, 3, 12, 12));
    const QImage normal = drawn({0, 0, 18, 18}, STIconButton::Normal);
    EXPECT_TRUE(boundsOf(normal, lit).isNull());
    EXPECT_EQ(drawn({0, 0, 18, 18}, STIconButton::Focus), normal);
    EXPECT_EQ(drawn({0, 0, 18, 18}, STIconButton::Disabled), normal);
}

TEST_F(IconButton, PressedIconIsShiftedByOne)
{
    button.SetIcon(icon(16, 16));
    EXPECT_EQ(boundsOf(drawn({0, 0, 18, 18}, STIconButton::Hover), Qt::red), QRect(1, 1, 16, 16));
    EXPECT_EQ(boundsOf(drawn({0, 0, 18, 18}, STIconButton::Pressed), Qt::red), QRect(2, 2, 16, 16));
}

TEST_F(IconButton, StatesComeInTheirOrder)
{
    EXPECT_EQ(button.CurrentState(), STIconButton::Normal);
    button.setFocus();
    EXPECT_EQ(button.CurrentState(), STIconButton::Focus);
    hover();
    QTest::mousePress(&button, Qt::LeftButton);
    EXPECT_EQ(button.CurrentState(), STIconButton::Pressed);
    button.setEnabled(false);
    EXPECT_EQ(button.CurrentState(), STIconButton::Disabled);
    EXPECT_EQ(int(STIconButton::Normal), 0);
    EXPECT_EQ(int(STIconButton::Disabled), 4);
}

TEST_F(IconButton, HoverEndsWhenThePointerLeaves)
{
    button.SetTooltipText(QStringLiteral("复制截图"));
    EXPECT_TRUE(button.toolTip().isEmpty());
    hover();
    EXPECT_EQ(button.toolTip(), QStringLiteral("复制截图"));
    leave();
    EXPECT_EQ(button.CurrentState(), STIconButton::Normal);
    EXPECT_TRUE(button.toolTip().isEmpty());
    hover();
    EXPECT_EQ(button.toolTip(), QStringLiteral("复制截图"));
}

TEST_F(IconButton, APointerThatPassesByDoesNotHover)
{
    QTest::mouseMove(&button, QPoint(9, 9));
    leave();
    bool later = false;
    QTimer::singleShot(20, &button, [&] { later = true; });
    ASSERT_TRUE(waitFor([&] { return later; }));
    EXPECT_EQ(button.CurrentState(), STIconButton::Normal);
}

TEST_F(IconButton, ThatComesUpUnderAPointerHovers)
{
    QEnterEvent event(QPointF(9, 9), QPointF(9, 9), QPointF(49, 49));
    QCoreApplication::sendEvent(&button, &event);
    EXPECT_TRUE(waitFor([&] { return button.CurrentState() == STIconButton::Hover; }));
    button.hide();
    EXPECT_EQ(button.CurrentState(), STIconButton::Normal);
}

TEST_F(IconButton, IsClickedByTheLeftButtonAlone)
{
    QTest::mouseClick(&button, Qt::RightButton);
    EXPECT_EQ(clicks, 0);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(button.hasFocus());
}

TEST_F(IconButton, TheSpaceBarOnAFocusedButtonDoesNothing)
{
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Space);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(window.presses, 0);
    EXPECT_FALSE(button.isDown());
}

TEST_F(IconButton, OtherKeysAreTheDialogs)
{
    button.setFocus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Select, Qt::Key_Left})
        QTest::keyClick(&button, key);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(window.presses, 4);
}
