#pragma once

#include "noteattach/ExData.h"

#include <QString>

/// Attachment elements as the page writes them.

inline QString exDataAttribute(const QString& origName)
{
    return noteattach::FormatOrigNameToJson(origName).replace(u'"', QStringLiteral("&quot;"));
}

/// An `img` whose `class` and `src` end in these names.
inline QString attachment(const QString& className, const QString& srcName, const QString& origName)
{
    return QStringLiteral("<img class=\"userdata\\attachment\\%1\" "
                          "src=\"../userdata\\attachment\\%2\" nm_exdata=\"%3\">")
        .arg(className, srcName, exDataAttribute(origName));
}
