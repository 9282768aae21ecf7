#pragma once

#include "html/ScanResult.h"

#include <QString>
#include <QStringView>

namespace html {

// Reads `html` once and lists the elements of the name `tag`, a known name or another in lower
// case. Time is linear in the text. The rules are those told in HtmlDocument.h.
ScanResult scanDocument(QStringView html, QLatin1StringView tag);
// The same, with the plain text of the body. Takes several times as long.
ScanResult scanPlainText(QStringView html, QLatin1StringView tag);

} // namespace html
