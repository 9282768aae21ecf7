#pragma once

#include "noteattach/NewAttachFile.h"
#include "support/Export.h"

#include <QString>

#include <vector>

/// What a host implements. All calls come on the thread of the user interface. The library never
/// owns the object: the host keeps it alive as long as the control exists.
class NOMAR_EXPORT INmEditorNotify {
public:
    virtual ~INmEditorNotify();

    /// The open note has changed and its file has been written. `files[0]` is the note's HTML file
    /// (`fileType` 0), the files that the note refers to follow; `modifyTime` of each is filled.
    /// `plainText` is the note's text as a person reads it.
    /// A non-zero result means that the host has taken the note over; with zero the same note is
    /// handed over again at the next occasion.
    virtual int OnSaveNote(
        const QString& noteGuid, std::vector<NewAttachFile>& files, const QString& plainText) = 0;

    /// The user double-clicked an attachment. `fileName` is its name in the store, `origName` the
    /// name the file had, which may be empty. The result is ignored.
    virtual int OnOpenAttachment(
        const QString& noteGuid, const QString& fileName, const QString& origName) = 0;
};
