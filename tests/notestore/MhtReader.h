#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <vector>

// An MHT file as an independent reader sees it: Python's `email` package, in a process of its own.

struct MhtPart {
    QString type;
    QString charset;
    QMap<QString, QString> headers; // names in lower case
    QByteArray body; // decoded
};

struct MhtFile {
    QString type;
    QString rootType; // the parameter "type" of the multipart
    QMap<QString, QString> headers;
    QString aroundParts; // text in front of the first part and behind the last
    QStringList defects;
    int longestLine = 0;
    int bareLineEnds = 0; // CR and LF that are no CRLF
    int beyondAscii = 0; // bytes
    std::vector<MhtPart> parts;

    // The body of the first part, its line ends brought back to LF.
    QString html() const;
};

MhtFile readMht(const QString& path);
