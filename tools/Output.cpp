#include "Output.h"

#include "support/Utf8.h"

#include <QStringList>

#include <cstdio>

namespace nmnote {
namespace {

// Not through the narrow form, which would end at a NUL.
void write(std::FILE* stream, QStringView text)
{
    char piece[16 * 1024];
    while (!text.isEmpty())
        std::fwrite(piece, 1, EncodeUtf8(text, piece, sizeof piece), stream);
}

QString escaped(QChar unit)
{
    switch (unit.unicode()) {
    case u'"':
        return QStringLiteral("\\\"");
    case u'\\':
        return QStringLiteral("\\\\");
    case u'\n':
        return QStringLiteral("\\n");
    case u'\r':
        return QStringLiteral("\\r");
    case u'\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QChar(u'0'));
    }
}

bool needsEscape(QChar unit)
{
    return unit.unicode() < 0x20 || unit.unicode() == 0x7F || unit == u'"' || unit == u'\\';
}

} // namespace

void print(const QString& text)
{
    write(stdout, text);
}

void complain(const QString& text)
{
    write(stderr, QStringLiteral("nmnote: ") + text + u'\n');
}

bool flushOutput()
{
    return std::fflush(stdout) == 0 && !std::ferror(stdout);
}

QString jsonString(const QString& text)
{
    QString json = QStringLiteral("\"");
    json.reserve(text.size() + 2);
    for (const QChar unit : text) {
        if (needsEscape(unit))
            json += escaped(unit);
        else
            json += unit;
    }
    return json + u'"';
}

QString jsonRecord(const NewAttachFile& record)
{
    const auto field = [](const char* name, const QString& value) {
        return jsonString(QLatin1String(name)) + u':' + value;
    };
    const QStringList fields{field("origName", jsonString(record.origName)),
        field("spareText", jsonString(record.spareText)),
        field("fileType", QString::number(record.fileType)),
        field("modifyTime", jsonString(record.modifyTime)),
        field("fileExt", jsonString(record.fileExt)),
        field("fileName", jsonString(record.fileName)),
        field("filePath", jsonString(record.filePath)),
        field("isSrcFile", QString::number(record.isSrcFile))};
    return u'{' + fields.join(u',') + u'}';
}

} // namespace nmnote
