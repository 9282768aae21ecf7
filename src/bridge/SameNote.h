#pragma once

#include "bridge/OpenNote.h"

#include <memory>

/// Taken before an operation waits (for the page, a box, a dialog), and asked behind the wait: the
/// host may have opened another note meanwhile, given this one another text, or ended the control.
class SameNote {
public:
    /// `life` lives as long as the note's record.
    SameNote(const OpenNote& note, std::weak_ptr<const void> life)
        : m_note(&note)
        , m_life(std::move(life))
        , m_guid(note.m_curNoteGuid)
        , m_loads(note.m_loads)
    {
    }

    /// False: the control is gone, and with it all that belongs to it.
    bool isAlive() const { return !m_life.expired(); }
    /// Whether the same note is still open with the same text but for what the user did to it.
    explicit operator bool() const
    {
        return isAlive() && m_note->m_curNoteGuid == m_guid && m_note->m_loads == m_loads;
    }
    /// Of the note that was open.
    const QString& guid() const { return m_guid; }

private:
    const OpenNote* m_note;
    std::weak_ptr<const void> m_life;
    QString m_guid;
    quint64 m_loads;
};
