#include "Output.h"
#include "Verbs.h"

#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "support/FileMd5.h"
#include "support/Paths.h"

#include <optional>

namespace nmnote {
namespace {

struct Imported {
    DropFileInfo source;
    MAF_RESULT result;
};

// The file and what its import yields, with the names of the result's fields.
QString json(const Imported& imported)
{
    const auto field = [](const char* name, const QString& value) {
        return jsonString(QLatin1String(name)) + u':' + value;
    };
    const MAF_RESULT& result = imported.result;
    const QStringList fields{field("file", jsonString(imported.source.filePath)),
        field("attPath", jsonString(result.attPath)), field("attName", jsonString(result.attName)),
        field("picPath", jsonString(result.picPath)), field("picName", jsonString(result.picName)),
        field("picSize", QString::number(result.picSize))};
    return u'{' + fields.join(u',') + u'}';
}

std::optional<Imported> import(const QString& note, const QString& path)
{
    const auto record = attachstore::RecordOfPath(path);
    if (!record) {
        complain(QStringLiteral("cannot read '%1'").arg(path));
        return std::nullopt;
    }
    if (record->isFolder) {
        complain(QStringLiteral("'%1' is a folder").arg(path));
        return std::nullopt;
    }
    Imported imported{*record, {}};
    if (!attachstore::MoveAttFile(note, imported.source, imported.result)) {
        complain(QStringLiteral("cannot import '%1'; the log says why").arg(path));
        return std::nullopt;
    }
    return imported;
}

// A file that was there under that name stays, which may not be what was meant.
void warnOfOtherContent(const QString& note, const Imported& imported)
{
    const QString& name = imported.source.origName;
    const QString kept = GetAttachFilePath(note, imported.result.attName, name);
    if (!imported.result.attName.startsWith(FileMd5(kept) + u'.'))
        complain(QStringLiteral("the note has another '%1' already, which stays").arg(name));
}

} // namespace

int importVerb(const Arguments& arguments)
{
    if (arguments.note.isEmpty() || !IsSafeFileName(arguments.note)) {
        complain(QStringLiteral("'%1' cannot be the GUID of a note").arg(arguments.note));
        return BadUse;
    }
    QStringList results;
    int code = Done;
    for (const QString& path : arguments.operands) {
        if (const auto imported = import(arguments.note, path)) {
            results += json(*imported);
            warnOfOtherContent(arguments.note, *imported);
        } else {
            code = Failed;
        }
    }
    print(u'[' + results.join(QStringLiteral(",\n ")) + QStringLiteral("]\n"));
    return code;
}

} // namespace nmnote
