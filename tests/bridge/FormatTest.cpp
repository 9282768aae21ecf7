#include "bridge/Format.h"
#include "kit/Print.h"

#include <gtest/gtest.h>

namespace {

QString formatted(quint16 type, qint64 value)
{
    return Format(VARIANT::Integer(type, value));
}

VARIANT decimal(quint32 low, quint8 sign, quint8 scale, quint32 mid = 0)
{
    VARIANT value;
    value.vt = VT_DECIMAL;
    value.decVal = {scale, sign, 0, low, mid};
    return value;
}

} // namespace

TEST(Format, EmptyAndNullGiveTheEmptyText)
{
    EXPECT_EQ(Format(VARIANT()), QString());
    EXPECT_EQ(formatted(VT_NULL, 5), QString());
}

TEST(Format, SixteenBitTypesKeepTheirSign)
{
    EXPECT_EQ(formatted(VT_I2, -2), QStringLiteral("-2"));
    EXPECT_EQ(formatted(VT_UI2, 65534), QStringLiteral("65534"));
}

TEST(Format, SixtyFourBitsLoseTheirHighHalf)
{
    EXPECT_EQ(formatted(VT_I8, 4294967297), QStringLiteral("1"));
    EXPECT_EQ(formatted(VT_UI8, 4294967297), QStringLiteral("1"));
}

TEST(Format, UnsignedTypesPrintAsSigned)
{
    for (const quint16 type : {VT_UI4, VT_UINT, VT_UI8, VT_INT, VT_I4, VT_VOID})
        EXPECT_EQ(formatted(type, 0xFFFFFFFF), QStringLiteral("-1")) << type;
}

TEST(Format, RealsHaveFourAndEightDecimals)
{
    EXPECT_EQ(Format(VARIANT::Real(VT_R4, 1.5)), QStringLiteral("1.5000"));
    EXPECT_EQ(Format(VARIANT::Real(VT_R8, 0.1)), QStringLiteral("0.10000000"));
}

TEST(Format, ADecimalUsesItsLowPartOnly)
{
    EXPECT_EQ(Format(decimal(12345, 0, 2)), QStringLiteral("123.4500"));
    EXPECT_EQ(Format(decimal(12345, 0x80, 2)), QStringLiteral("-123.4500"));
    EXPECT_EQ(Format(decimal(1, 0, 0, 7)), QStringLiteral("1.0000"));
}

TEST(Format, ADatePrintsInLocalTime)
{
    EXPECT_EQ(Format(VARIANT::Real(VT_DATE, 0)), QStringLiteral("1899-12-30 00:00:00"));
    EXPECT_EQ(Format(VARIANT::Real(VT_DATE, 45292.75)), QStringLiteral("2024-01-01 18:00:00"));
    EXPECT_EQ(Format(VARIANT::Real(VT_DATE, -1.25)), QStringLiteral("1899-12-29 06:00:00"));
}

TEST(Format, ADateOutOfRangeIsInvalid)
{
    EXPECT_EQ(Format(VARIANT::Real(VT_DATE, 3e6)), QStringLiteral("Invalid DateTime"));
    EXPECT_EQ(Format(VARIANT::Real(VT_DATE, -1e9)), QStringLiteral("Invalid DateTime"));
    EXPECT_EQ(Format(VARIANT::Real(VT_DATE, qQNaN())), QStringLiteral("Invalid DateTime"));
}

TEST(Format, TruthValuesAreUpperCase)
{
    EXPECT_EQ(Format(VARIANT::Bool(false)), QStringLiteral("FALSE"));
    EXPECT_EQ(Format(VARIANT::Bool(true)), QStringLiteral("TRUE"));
    EXPECT_EQ(formatted(VT_BOOL, 1), QStringLiteral("TRUE"));
}

TEST(Format, TextComesAsItIs)
{
    EXPECT_EQ(Format(VARIANT::Text(QStringLiteral("笔记"))), QStringLiteral("笔记"));
    for (const quint16 type : {VT_LPSTR, VT_LPWSTR}) {
        VARIANT value = VARIANT::Text(QStringLiteral("a"));
        value.vt = type;
        EXPECT_EQ(Format(value), QStringLiteral("a"));
    }
}

TEST(Format, AnyOtherTypeIsUnknown)
{
    EXPECT_EQ(formatted(VT_CY, 1), QStringLiteral("UN_KNOW"));
    EXPECT_EQ(formatted(VT_BYREF | VT_I4, 1), QStringLiteral("UN_KNOW"));
    EXPECT_EQ(formatted(VT_BYREF | VT_BSTR, 1), QStringLiteral("UN_KNOW"));
}
