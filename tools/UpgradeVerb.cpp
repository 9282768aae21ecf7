#include "Input.h"
#include "Output.h"
#include "Verbs.h"

#include "notestore/HtmlFileUpgrade.h"

namespace nmnote {

// The text alone, without a line end of ours: what a save would file behind the marker.
int upgradeVerb(const Arguments& arguments)
{
    auto note = readNote(arguments.operands.first());
    if (!note)
        return Failed;
    if (note->version < NOTE_HTML_VER_2
        && !HtmlFileUpgradeMgr().DoUpgrade(
            note->html, note->version, NOTE_HTML_VER_2, note->html)) {
        complain(QStringLiteral("cannot upgrade the note"));
        return Failed;
    }
    print(note->html);
    return Done;
}

} // namespace nmnote
