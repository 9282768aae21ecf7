#include "Output.h"
#include "Verbs.h"

#include "attachstore/ChangedFile.h"
#include "attachstore/ClosedNote.h"
#include "attachstore/WorkingCopy.h"
#include "support/FileMd5.h"
#include "support/TimeText.h"

#include <QFileInfo>

#include <optional>

namespace nmnote {
namespace {

std::optional<attachstore::ChangedFile> changedFile(const QString& path, const QString& name)
{
    attachstore::ChangedFile file{path, 0, name, {}, FileStamp::of(path)};
    qint64 length = 0;
    file.md5 = FileMd5(path, &length);
    if (file.md5.isEmpty() || !file.stamp || file.stamp->size != length)
        return std::nullopt;
    file.size = static_cast<qint32>(length);
    return file;
}

int report(attachstore::NoteRewrite result, const Arguments& arguments, const QString& name,
    const std::vector<NewAttachFile>& files)
{
    switch (result) {
    case attachstore::NoteRewrite::Failed:
        complain(QStringLiteral("cannot change '%1'; the log says why").arg(arguments.note));
        return Failed;
    case attachstore::NoteRewrite::NoSuchAttachment:
        complain(QStringLiteral("'%1' has no attachment '%2'").arg(arguments.note, name));
        return Failed;
    case attachstore::NoteRewrite::Unchanged:
    case attachstore::NoteRewrite::Filed:
        break;
    }
    QStringList lines;
    for (const NewAttachFile& file : files)
        lines += jsonRecord(file);
    print(u'[' + lines.join(QStringLiteral(",\n ")) + QStringLiteral("]\n"));
    return Done;
}

} // namespace

int syncVerb(const Arguments& arguments)
{
    const QString path = QFileInfo(arguments.attachment).absoluteFilePath();
    QString guid, name;
    attachstore::GetAttachInfoFromPath(path, guid, name);
    if (guid.isEmpty() || name.isEmpty()) {
        complain(QStringLiteral("'%1' is no attachment in a note's folder of the store").arg(path));
        return BadUse;
    }
    // An empty path would stand for a note whose file nobody knows.
    if (arguments.note.isEmpty() || !QFileInfo(arguments.note).isFile()) {
        complain(QStringLiteral("cannot read '%1'").arg(arguments.note));
        return Failed;
    }
    const auto file = changedFile(path, name);
    if (!file) {
        complain(QStringLiteral("cannot read '%1'").arg(path));
        return Failed;
    }
    attachstore::NewImage image{name, attachstore::HashNameOf(*file), {}, FormatNowTime()};
    if (!attachstore::GenerateThumbPic(*file, image.thumbName)) {
        complain(QStringLiteral("cannot make the new image; the log says why"));
        return Failed;
    }
    std::vector<NewAttachFile> files;
    QString text;
    const auto result = attachstore::RewriteClosedNote(arguments.note, guid, image, files, text);
    return report(result, arguments, name, files);
}

} // namespace nmnote
