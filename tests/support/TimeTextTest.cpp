#include "support/TimeText.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <cstdlib>
#include <ctime>

namespace {

class FormatTime64Test : public testing::Test {
protected:
    void SetUp() override { setZone("UTC"); }
    void TearDown() override
    {
        ::unsetenv("TZ");
        ::tzset();
    }

    static void setZone(const char* zone)
    {
        ::setenv("TZ", zone, 1);
        ::tzset();
    }

    const QString m_format = QStringLiteral("%Y-%m-%d %H:%M:%S");
};

} // namespace

TEST_F(FormatTime64Test, PrintsLocalTime)
{
    EXPECT_EQ(FormatTime64(0, m_format), QStringLiteral("1970-01-01 00:00:00"));
    EXPECT_EQ(FormatTime64(951782400, m_format), QStringLiteral("2000-02-29 00:00:00"));
    setZone("CST-8");
    EXPECT_EQ(FormatTime64(0, m_format), QStringLiteral("1970-01-01 08:00:00"));
}

TEST_F(FormatTime64Test, KeepsOtherTextOfTheFormat)
{
    EXPECT_EQ(FormatTime64(0, QStringLiteral("年%Y 100%%")), QStringLiteral("年1970 100%"));
}

TEST_F(FormatTime64Test, ANullFormatGivesTheEmptyStringWhateverTheTime)
{
    EXPECT_EQ(FormatTime64(0, QString()), QString());
    EXPECT_EQ(FormatTime64(-1, QString()), QString());
}

TEST_F(FormatTime64Test, ATextThatDoesNotFitIsEmpty)
{
    EXPECT_EQ(FormatTime64(0, QString(127, u'x')).size(), 127);
    EXPECT_EQ(FormatTime64(0, QString(128, u'x')), QString());
    EXPECT_EQ(FormatTime64(0, QStringLiteral("😀").repeated(64)), QString());
}

TEST_F(FormatTime64Test, ATimeThatCannotBeConvertedRaises)
{
    EXPECT_EQ(FormatTime64(32535215999, m_format), QStringLiteral("3000-12-31 23:59:59"));
    EXPECT_THROW(FormatTime64(32535216000, m_format), InvalidTimeError);
    EXPECT_THROW(FormatTime64(-1, m_format), InvalidTimeError);
    EXPECT_THROW(FormatTime64(std::numeric_limits<qint64>::max(), m_format), InvalidTimeError);
    EXPECT_THROW(FormatTime64(std::numeric_limits<qint64>::min(), m_format), InvalidTimeError);
}

TEST(FormatNowTime, IsTheTimeOfTheCall)
{
    const QString format = QStringLiteral("%Y-%m-%d %H:%M:%S");
    const QString before = FormatTime64(std::time(nullptr), format);
    const QString now = FormatNowTime();
    const QString after = FormatTime64(std::time(nullptr), format);
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(FormatFileSize, LeavesAUnitOnlyWhenItIsExceeded)
{
    const std::vector<std::pair<quint64, const char*>> cases{{0, "0B"}, {1023, "1023B"},
        {1024, "1024B"}, {1025, "1.00KB"}, {1536, "1.50KB"}, {1048576, "1024.00KB"},
        {1048577, "1.00M"}, {1073741824, "1024.00M"}, {1073741825, "1.00G"},
        {quint64(5) << 30, "5.00G"}, {std::numeric_limits<quint64>::max(), "17179869184.00G"}};
    for (const auto& [size, text] : cases)
        EXPECT_EQ(FormatFileSize(size), QLatin1String(text)) << size;
}
