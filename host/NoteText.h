#pragma once

#include <QStringList>

/// First line that has something to read; empty if there is none.
QString firstLine(const QString& text);

/// One line of at most `length` characters for a list: the text around the first of `terms` that
/// occurs, else its beginning.
QString excerpt(const QString& text, const QStringList& terms, qsizetype length);

/// Words as a person counts them: each Chinese character is one, and each run of letters and
/// digits.
int countWords(const QString& text);
