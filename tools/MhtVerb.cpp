#include "Input.h"
#include "Output.h"
#include "Verbs.h"

#include "notestore/MhtExport.h"

namespace nmnote {

int mhtVerb(const Arguments& arguments)
{
    const auto note = readNote(arguments.operands[0]);
    if (!note)
        return Failed;
    const QString& out = arguments.operands[1];
    const auto toMht = arguments.embed ? notestore::NoteHtmlContentToMhtFileWithPictures
                                       : notestore::NoteHtmlContentToMhtFile;
    if (!toMht(note->html, out)) {
        complain(QStringLiteral("cannot write '%1'").arg(out));
        return Failed;
    }
    return Done;
}

} // namespace nmnote
