#include "capture/WindowAside.h"

#include "kit/Wait.h"

#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

TEST(WindowAside, HidesTheWindowForItsLifetime)
{
    QWidget window;
    window.setGeometry(120, 90, 200, 100);
    window.show();
    const QRect place = window.geometry();
    {
        const WindowAside aside(&window);
        EXPECT_FALSE(window.isVisible());
        EXPECT_FALSE(window.windowHandle()->isExposed());
    }
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.geometry(), place);
    EXPECT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
}

TEST(WindowAside, AMaximizedWindowComesBackMaximized)
{
    QWidget window;
    window.showMaximized();
    {
        const WindowAside aside(&window);
        EXPECT_FALSE(window.isVisible());
    }
    EXPECT_TRUE(window.isMaximized());
}

TEST(WindowAside, WithoutAWindowDoesNothing)
{
    const WindowAside aside(nullptr);
}

TEST(WindowAside, OutlivesTheWindow)
{
    auto window = std::make_unique<QWidget>();
    window->show();
    const WindowAside aside(window.get());
    window.reset();
}

TEST(WindowAside, OfAWindowThatIsAHiddenOneShowsItAfterwards)
{
    QWidget window;
    {
        const WindowAside aside(&window);
        EXPECT_FALSE(window.isVisible());
    }
    EXPECT_TRUE(window.isVisible());
}
