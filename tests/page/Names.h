// What every test file here begins with.
#pragma once

#include <QString>

#include <ostream>

using namespace Qt::StringLiterals;

// Readable failures.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
