#pragma once

#include "support/Export.h"

#include <QString>

/// What kind of file an attachment is, as far as its card shows it. The numbers are fixed.
enum FILE_TYPE : int {
    FT_UNKNOW = 0,
    FT_WORD = 1,
    FT_EXCEL = 2,
    FT_PPT = 3,
    FT_TEXT = 4,
    FT_PDF = 5,
    FT_ZIP = 6,
    FT_IMAGE = 7, ///< images that the page cannot show, such as psd: those it can get no card
    FT_VIDEO = 8,
    FT_AUDIO = 9,
    FT_HTML = 10,
};

/// The type of a file by its extension, given without the dot and in any case. What is not in the
/// table of docs/card.md is FT_UNKNOW, the empty extension too.
NOMAR_EXPORT FILE_TYPE GetFileTypeByExt(const QString& ext);
