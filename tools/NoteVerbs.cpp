#include "Input.h"
#include "Output.h"
#include "Verbs.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"

namespace nmnote {

int parseVerb(const Arguments& arguments)
{
    const auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    std::vector<NewAttachFile> records;
    if (!noteattach::ParseAttList(arguments.guid, note->html, records, nullptr)) {
        complain(QStringLiteral("cannot parse the note"));
        return Failed;
    }
    QStringList lines;
    for (const NewAttachFile& record : records)
        lines += jsonRecord(record);
    print(QStringLiteral("[") + lines.join(QStringLiteral(",\n ")) + QStringLiteral("]\n"));
    return Done;
}

int readVerb(const Arguments& arguments)
{
    const auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    print(QStringLiteral("{\"version\":%1,\"html\":").arg(static_cast<int>(note->version))
        + jsonString(note->html) + QStringLiteral("}\n"));
    return Done;
}

int textVerb(const Arguments& arguments)
{
    const auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    print(HtmlDocument(note->html).bodyText() + u'\n');
    return Done;
}

int saveVerb(const Arguments& arguments)
{
    auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    if (arguments.version)
        note->version = static_cast<NOTE_HTML_VER_NUMBER>(*arguments.version);
    NewAttachFile record;
    const QString store = GetAttachmentDir(); // made if it is missing
    if (!NoteHtmlRW::SaveHtmlTextToFile(note->html, record, &note->version)) {
        complain(QStringLiteral("cannot file the note into the store '%1'").arg(store));
        return Failed;
    }
    print(jsonRecord(record) + u'\n');
    return Done;
}

} // namespace nmnote
