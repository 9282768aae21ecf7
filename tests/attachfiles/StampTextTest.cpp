#include "attachfiles/StampText.h"

#include <gtest/gtest.h>

#include <limits>

TEST(StampTextTest, AStampComesBackFromItsText)
{
    for (const FileStamp stamp : {FileStamp{0, 0}, FileStamp{7, -1},
             FileStamp{std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}})
        EXPECT_EQ(StampOfText(StampText(stamp)), stamp);
}

TEST(StampTextTest, AnythingElseIsNone)
{
    for (const char* text : {"", " ", "1", "1 ", " 1", "1 2 3", "a b", "1 99999999999999999999"})
        EXPECT_EQ(StampOfText(QLatin1StringView(text)), std::nullopt) << text;
}
