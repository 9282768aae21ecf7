#pragma once

#include <QFont>

/// Sets the size of `font` by the height of its cell, in pixels, as texts of a told height are: to
/// the whole pixel size at which ascent and descent, unrounded, come nearest to it. At least 1.
void SetCellHeight(QFont& font, int cellHeight);
