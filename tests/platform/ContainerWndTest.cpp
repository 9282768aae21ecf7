#include "platform/ContainerWnd.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

class Container : public ContainerWnd {
public:
    std::vector<QRect> layouts;

protected:
    void AdjustLayout(const QRect& rect) override { layouts.push_back(rect); }
};

} // namespace

TEST(ContainerWnd, IsMadeAsAChildWithItsPlaceAndId)
{
    QWidget parent;
    ContainerWnd container;
    ASSERT_EQ(container.Create(&parent, QRect(3, 4, 50, 60), 17, WS_CHILD | WS_VISIBLE), 1);
    EXPECT_EQ(container.parentWidget(), &parent);
    EXPECT_EQ(container.geometry(), QRect(3, 4, 50, 60));
    EXPECT_EQ(container.property("id").toUInt(), 17U);
    EXPECT_FALSE(container.isHidden());
}

TEST(ContainerWnd, WithoutTheVisibleBitIsHidden)
{
    QWidget parent;
    ContainerWnd container;
    ASSERT_EQ(container.Create(&parent, QRect(0, 0, 5, 5), 1, WS_CHILD), 1);
    EXPECT_TRUE(container.isHidden());
}

TEST(ContainerWnd, IsNotMadeWithoutAParentOrTwice)
{
    QWidget parent, other;
    ContainerWnd container;
    EXPECT_EQ(container.Create(nullptr, QRect(), 1, WS_VISIBLE), 0);
    EXPECT_EQ(container.Create(&parent, QRect(), 1, WS_VISIBLE), 1);
    EXPECT_EQ(container.Create(&other, QRect(), 1, WS_VISIBLE), 0);
    EXPECT_EQ(container.parentWidget(), &parent);
}

TEST(ContainerWnd, LaysOutItsInsideAtEachNewSize)
{
    QWidget parent;
    parent.resize(300, 300);
    Container container;
    container.Create(&parent, QRect(10, 20, 100, 80), 1, WS_VISIBLE);
    parent.show();
    container.resize(120, 0);
    container.resize(120, 90);
    EXPECT_EQ(container.layouts,
        (std::vector<QRect>{QRect(0, 0, 100, 80), QRect(0, 0, 120, 0), QRect(0, 0, 120, 90)}));
    container.move(1, 1);
    EXPECT_EQ(container.layouts.size(), 3u);
}
