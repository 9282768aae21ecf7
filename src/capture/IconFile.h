#pragma once

#include <QImage>

/// The icon of that name in the `res` directory, at the size of its first picture. On a screen of
/// higher density it is the picture that has enough pixels for that size, or else the largest, with
/// its device pixel ratio set. Null if the file is missing or holds no icon.
QImage LoadIconFile(const QString& resName);
