#pragma once

#include "noteattach/ModifyTimes.h"
#include "support/TimeText.h"

#include <QString>

#include <map>

class INmEditorNotify;

/// The note that is open, as native code knows it. A plain record: copying it copies all of it.
struct OpenNote {
    INmEditorNotify* m_notify = nullptr; ///< The host, not owned.
    int m_maxChars = 3000; ///< The limit that the page last accepted.
    int m_readOnly = 0; ///< The mode that the page last accepted.
    QString m_curNoteGuid; ///< Empty while no note is open.

    /// Stored file name to size in bytes: what the size limit counts.
    std::map<QString, quint64> m_attachSizeCache;
    /// Adds sizes; a name that is there keeps its own.
    void InitAttachFileSize(const std::map<QString, quint64>& sizes)
    {
        m_attachSizeCache.insert(sizes.begin(), sizes.end());
    }
    /// Record key to time text: when attachments came in or changed.
    noteattach::AttachModifyCache m_attachModifyCache;
    /// Sets the time of the record of these two names; `origName` may be empty.
    void RecordAttachModifyTime(
        const QString& fileName, const QString& origName, const QString& modifyTime)
    {
        m_attachModifyCache[fileName + origName] = modifyTime;
    }
    /// A stored file came in now. A name that is empty or known changes neither book.
    void EnterAttachFile(const QString& fileName, const QString& origName, quint64 size)
    {
        if (!fileName.isEmpty() && m_attachSizeCache.emplace(fileName, size).second)
            RecordAttachModifyTime(fileName, origName, FormatNowTime());
    }

    /// The note's HTML as the page last told it: what is put back into a page that has died.
    QString m_draft;
    /// Grows with each text that is put into the page, so that an operation that has waited can see
    /// whether it still works on the same note.
    quint64 m_loads = 0;
};
