#include "notestore/NoteFile.h"

#include "support/DiskFile.h"
#include "support/Json.h"
#include "support/Text.h"
#include "support/Utf8.h"

#include <memory>

namespace notestore {
namespace {

constexpr std::size_t kPiece = 256 * 1024;

const QString kMarkerStart = QStringLiteral("<!--");
const QString kMarkerEnd = QStringLiteral("-->");

QString marker(NOTE_HTML_VER_NUMBER version)
{
    const QString json = QStringLiteral("{\"ver_number\":%1}").arg(static_cast<int>(version));
    return kMarkerStart + json + kMarkerEnd;
}

// Encoded as it is written: the whole text never stands in memory a second time.
int writeText(OutputFile& file, QStringView text)
{
    text = UntilNul(text);
    const auto piece = std::make_unique<char[]>(kPiece);
    while (!text.isEmpty()) {
        const std::size_t length = EncodeUtf8(text, piece.get(), kPiece);
        if (const int error = file.write(piece.get(), length))
            return error;
    }
    return 0;
}

} // namespace

int WriteHtmlFile(
    OutputFile& file, const QString& path, const QString& html, NOTE_HTML_VER_NUMBER version)
{
    return !file.createNew(path) && !writeText(file, marker(version)) && !writeText(file, html);
}

void ParseVerNumber(const QString& json, NOTE_HTML_VER_NUMBER* version)
{
    if (const auto object = JsonObject::parse(json))
        *version = static_cast<NOTE_HTML_VER_NUMBER>(object->integer("ver_number"));
}

QString TakeMarker(QString text, NOTE_HTML_VER_NUMBER* version)
{
    *version = NOTE_HTML_VER_0;
    if (!text.startsWith(kMarkerStart))
        return text;
    const qsizetype end = text.indexOf(kMarkerEnd);
    // An end right behind the start makes no marker, and "<!-->" has its end inside the start.
    if (end <= kMarkerStart.size())
        return text;
    ParseVerNumber(text.sliced(kMarkerStart.size(), end - kMarkerStart.size()), version);
    text.remove(0, end + kMarkerEnd.size()); // in place: no second text of that size
    return text;
}

} // namespace notestore
