#include "Input.h"
#include "Output.h"
#include "Verbs.h"

#include "noteattach/AttachList.h"
#include "noteattach/Rewrite.h"

namespace nmnote {

int namesVerb(const Arguments& arguments)
{
    const auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    std::vector<QString> names;
    if (!noteattach::ParseAttOrigFileNameList(note->html, names)) {
        complain(QStringLiteral("cannot parse the note"));
        return Failed;
    }
    QStringList lines;
    for (const QString& name : names)
        lines += jsonString(name);
    print(QStringLiteral("[") + lines.join(QStringLiteral(",\n ")) + QStringLiteral("]\n"));
    return Done;
}

int rewriteVerb(const Arguments& arguments)
{
    const auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    QString body;
    QString text;
    if (!noteattach::UpdateHtmlAttachAttr(
            note->html, arguments.orig, arguments.classValue, arguments.srcValue, body, text)) {
        complain(QStringLiteral("the note has no body"));
        return Failed;
    }
    print(body);
    return Done;
}

} // namespace nmnote
