#pragma once

#include <QString>

#include <vector>

namespace html {

// A tag in the text, and what must be known of it to take it out.
struct Piece {
    qsizetype begin = 0;
    qsizetype end = 0;
    bool behindPre = false; // stands right behind a start tag that swallows a line feed
    bool endsForeign = false; // it was this tag that ended svg or math
};

// What one reading of a document finds. Positions count UTF-16 units of the text.
struct ScanResult {
    bool hasBody = true; // false for a document of frames
    qsizetype bodyBegin = 0; // where the body's inside starts; it reaches to the end of the text
    std::vector<Piece> elements; // the start tags of the elements asked for, in document order
    std::vector<Piece> cuts; // what belongs to no body, in order, before bodyBegin too
    QString plainText; // if it was asked for
};

} // namespace html
