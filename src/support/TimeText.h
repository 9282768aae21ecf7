#pragma once

#include <QString>

#include <stdexcept>

/// Times and sizes as text.

/// Thrown by FormatTime64 alone, for a time that has no local form (what E_INVALIDARG stands for).
class InvalidTimeError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// A time in seconds since 1970 UTC as local time, by a format of strftime. Empty if the format is
/// null (QString()), and if the text would be longer than 127 units. Throws InvalidTimeError for a
/// time before 1970 or after the year 3000.
QString FormatTime64(qint64 time, const QString& format);

/// Now as "%Y-%m-%d %H:%M:%S".
QString FormatNowTime();

/// A size in bytes for people: "512B", "1.00KB", "1024.00M", "1.50G". A unit is left only when it
/// is exceeded, so exactly 1024 bytes are "1024B".
QString FormatFileSize(quint64 size);
