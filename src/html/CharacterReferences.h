#pragma once

#include <QString>
#include <QStringView>

namespace html {

// Where a piece of text stands decides how it reads.
enum class TextPlace {
    Data, // between tags: references count, NUL is dropped
    Foreign, // between tags of SVG and MathML: references count, NUL becomes U+FFFD
    Rcdata, // in title and textarea: references count, NUL becomes U+FFFD
    Rawtext, // in style, script …: no references, NUL becomes U+FFFD
    Cdata, // in a CDATA section: as Rawtext
    Attribute, // a value: as Rcdata, but a name without ';' before '=', a letter or a digit is text
};

// The text as the standard reads it: character references replaced (all named ones, those without
// semicolon too; numbers with the windows-1252 table), CRLF and CR read as LF. Lone surrogates
// become U+FFFD.
QString decodeText(QStringView raw, TextPlace place);

// decodeText gives the text itself, in whatever place.
bool readsAsItStands(QStringView raw);

// The value between double quotes, so written that decodeText(…, Attribute) gives it back. What no
// HTML text can hold, NUL and lone surrogates, becomes U+FFFD.
QString encodeAttributeValue(QStringView value);

} // namespace html
