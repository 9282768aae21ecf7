#pragma once

#include <QDebug>
#include <QString>
#include <QStringList>

#include <ostream>

// How failed expectations show the text types. Found by argument-dependent lookup, so the functions
// stand where the types do.

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& list, std::ostream* out)
{
    *out << '[' << list.join(u'|').toStdString() << ']';
}
