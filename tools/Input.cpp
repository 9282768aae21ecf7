#include "Input.h"

#include "Output.h"

#include "notestore/NoteHtmlRW.h"

namespace nmnote {

std::optional<Note> readNote(const QString& path)
{
    Note note;
    if (NoteHtmlRW::ReadHtmlTextFromFile(path, note.html, &note.version))
        return note;
    complain(QStringLiteral("cannot read the note file '%1'").arg(path));
    return std::nullopt;
}

} // namespace nmnote
