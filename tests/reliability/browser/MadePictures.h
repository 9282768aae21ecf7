#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// Files of pictures that no program should have to decode.
struct MadePicture {
    QString name; ///< With the extension of its format.
    QByteArray bytes;
};

/// Small files that say to be huge, and some whose parts unpack to a thousand times their size.
std::vector<MadePicture> pictureBombs();

/// Good files of every format that can be written here, cut off at several places.
std::vector<MadePicture> cutPictures();
