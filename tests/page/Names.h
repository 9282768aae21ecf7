// Short literals for tests that are made of text.
#pragma once

#include <QString>

#include <ostream>

inline QString operator""_s(const char* text, size_t length)
{
    return QString::fromUtf8(text, qsizetype(length));
}

// Readable failures.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
