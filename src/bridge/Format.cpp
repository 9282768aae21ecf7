#include "bridge/Format.h"

#include <QDateTime>

#include <cmath>

namespace {

/// Day 0 of an automation date is 1899-12-30. The fraction of a negative value counts away from
/// midnight too: -1.25 is 6:00 on the day before day 0.
QString formatDate(double days)
{
    constexpr double first = -657434, last = 2958466; // The years 100 to 9999.
    if (!(days > first - 1 && days < last))
        return QStringLiteral("Invalid DateTime");
    const double whole = std::trunc(days);
    const double fraction = std::abs(days - whole);
    const auto seconds = qint64(std::llround(fraction * 86400));
    const QDateTime time =
        QDate(1899, 12, 30).startOfDay(Qt::UTC).addDays(qint64(whole)).addSecs(seconds);
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString formatDecimal(const DECIMAL& value)
{
    // Kept: the upper mantissa is ignored, and the low part is read as a signed number.
    const double low = qint32(value.lo32);
    const double number = (value.sign == 0x80 ? -low : low) / std::pow(10.0, value.scale);
    return QString::number(number, 'f', 4);
}

} // namespace

QString Format(const VARIANT& variant)
{
    switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return QString();
    case VT_I2:
        return QString::number(qint16(variant.llVal));
    case VT_UI2:
        return QString::number(quint16(variant.llVal));
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_VOID:
        // Kept: "%d" of the low 32 bits, unsigned and 64-bit types too.
        return QString::number(qint32(variant.llVal));
    case VT_R4:
        return QString::number(double(float(variant.dblVal)), 'f', 4);
    case VT_R8:
        return QString::number(variant.dblVal, 'f', 8);
    case VT_DECIMAL:
        return formatDecimal(variant.decVal);
    case VT_DATE:
        return formatDate(variant.dblVal);
    case VT_BSTR:
    case VT_LPSTR:
    case VT_LPWSTR:
        return variant.bstrVal;
    case VT_BOOL:
        return variant.llVal ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
    default:
        return QStringLiteral("UN_KNOW");
    }
}
