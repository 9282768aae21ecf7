#pragma once

#include "clipdrag/CopyLogicResult.h"
#include "noteattach/NewAttachFile.h"

#include <vector>

class Adder;
class Boxes;
class SameNote;
struct DropFileInfo;
struct OpenNote;

/// Ctrl+V, ahead of the browser: files, an image and attachments that the clipboard holds come into
/// the note through the store, and the browser pastes what is left to it.
///
/// The long results are those of a key: `S_OK` uses it up, with `E_NOTIMPL` the browser pastes what
/// the clipboard holds by then. Page calls, message boxes and dialogs are waited for; if the host
/// opens another note meanwhile, the key is used up and nothing is pasted into either.
class Paste {
public:
    /// Nothing is owned.
    Paste(OpenNote& note, Adder& adder, Boxes& boxes);

    /// Looks at the clipboard: files first, then an image, then HTML.
    long DoCtrlV();
    /// Makes attachments of the clipboard's files, or of its image.
    long DoCopyClipboardFile();
    /// Takes over the attachments that the clipboard's HTML refers to.
    long DoCopyClipboardHtml();

    /// Imports the attachments of `attList`, as copies under names that are free in the open note,
    /// and appends what they became to `result`. 1, or 0 at the first that fails; what was done
    /// before stays. An attachment without a file, or with an empty one, ends it ahead of any
    /// import and without a message. A note that would weigh too much by them, or whose weight is
    /// not known, is told to the user.
    int DoCopyLogic(const std::vector<NewAttachFile>& attList, CopyLogicResult& result);

private:
    bool mayEnter(quint32 weight, const SameNote& same);

    OpenNote& m_note;
    Adder& m_adder;
    Boxes& m_boxes;
};
