#pragma once

// The notes that the benchmarks measure on: paragraphs of Chinese and English mixed, one attachment
// per 2 KB, half of them pictures and half other files with their card. The same size gives the
// same note, byte for byte.

#include <QByteArray>
#include <QString>

namespace bench {

/// The HTML of a note, UTF-8, at least \a bytes long and at most one paragraph longer.
QByteArray sampleNote(qsizetype bytes);

/// The same note as UTF-16 text; \a bytes still counts the UTF-8 form.
QString sampleNoteText(qsizetype bytes);

/// The attachment element number \a index as it stands in a note. Numbers differ in digest and in
/// name; an even one is a picture, an odd one another file.
QByteArray sampleAttachment(int index);

} // namespace bench
