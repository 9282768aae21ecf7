#include "support/TimeText.h"

#include <ctime>
#include <cwchar>
#include <iterator>

namespace {

constexpr qint64 kLastTime = 32535215999; // 3000-12-31 23:59:59 UTC
constexpr qsizetype kLongestText = 127;

std::tm localTime(qint64 time)
{
    const std::time_t seconds = static_cast<std::time_t>(time);
    std::tm local{};
    if (time < 0 || time > kLastTime || !localtime_r(&seconds, &local))
        throw InvalidTimeError("time without a local form");
    return local;
}

} // namespace

QString FormatTime64(qint64 time, const QString& format)
{
    if (format.isNull())
        return {};
    const std::tm local = localTime(time);
    wchar_t text[kLongestText + 1];
    const std::size_t length =
        std::wcsftime(text, std::size(text), format.toStdWString().c_str(), &local);
    const QString result = QString::fromWCharArray(text, static_cast<qsizetype>(length));
    return result.size() <= kLongestText ? result : QString();
}

QString FormatNowTime()
{
    return FormatTime64(std::time(nullptr), QStringLiteral("%Y-%m-%d %H:%M:%S"));
}

QString FormatFileSize(quint64 size)
{
    const auto scaled = [size](quint64 unit, const char* format) {
        return QString::asprintf(
            format, static_cast<double>(size) * (1.0 / static_cast<double>(unit)));
    };
    // Kept: a unit is left only when it is exceeded, "1024B"; cards and notes show sizes this way.
    if (size > 0x40000000)
        return scaled(0x40000000, "%.2fG");
    if (size > 0x100000)
        return scaled(0x100000, "%.2fM");
    if (size > 0x400)
        return scaled(0x400, "%.2fKB");
    return QString::asprintf("%dB", static_cast<int>(size));
}
