// A note file of arbitrary bytes: its text and version, and again from what a save of them would
// hold.

#include "Require.h"

#include "notestore/HtmlFileUpgrade.h"
#include "notestore/NoteFile.h"
#include "support/Text.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString file = AnsiToWide(std::string(reinterpret_cast<const char*>(data), size));
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    const QString text = notestore::TakeMarker(file, &version);
    require(file.endsWith(text));

    NOTE_HTML_VER_NUMBER again = {};
    const QString marked = QStringLiteral("<!--{\"ver_number\":2}-->") + text;
    require(notestore::TakeMarker(marked, &again) == text);
    require(again == NOTE_HTML_VER_2);

    // What has been upgraded has nothing left to upgrade.
    QString upgraded, twice;
    HtmlVer_1_To_2 step;
    if (step.DoUpgrade(text, upgraded)) {
        require(step.DoUpgrade(upgraded, twice));
        require(twice == upgraded);
    }
    return 0;
}
