#pragma once

#include <QLocale>
#include <QString>

/// The one of two texts that suits the desktop's language: Chinese, or English for all others.
inline QString InLanguage(const char* english, const char* chinese)
{
    return QString::fromUtf8(QLocale().language() == QLocale::Chinese ? chinese : english);
}
