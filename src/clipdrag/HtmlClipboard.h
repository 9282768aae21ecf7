#pragma once

#include <QString>

#include <string>
#include <vector>

/// The desktop's clipboard as the rest of the component uses it: HTML in and out, a list of files
/// out. Knows nothing of notes.
///
/// To be called on the user-interface thread. Nothing is logged or shown; a failure is the result
/// false, and no exception leaves here. Where there is no QGuiApplication there is no clipboard,
/// and each operation fails. What is put up replaces everything the clipboard held, and is lost
/// when this process ends, unless the desktop keeps it.
class CHtmlClipboard {
public:
    CHtmlClipboard() = delete;

    /// The HTML that the clipboard holds, in UTF-8, as clipdrag::HtmlFragment takes it. True if
    /// `fragment` was assigned; otherwise it is as it was.
    static bool GetHtmlFragment(std::string& fragment);

    /// Puts up `text`, the HTML of a fragment in UTF-8, as clipdrag::HtmlFlavours offers it. False
    /// if the text is too large for the format; the clipboard is then as it was.
    static bool SetHtmlText(const std::string& text);

    /// Puts up files to be copied, as clipdrag::FileFlavours offers them. False for an empty list,
    /// and for a path that can be no file's; the clipboard is then as it was.
    static bool SetFileDropList(const std::vector<QString>& paths);
};
