#pragma once

#include "notestore/NoteHtmlVersion.h"

#include <QString>

#include <optional>

/// What verbs read.
namespace nmnote {

struct Note {
    QString html; ///< without the version marker
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
};

/// A note file. One that cannot be read gives nothing, and a complaint.
std::optional<Note> readNote(const QString& path);

} // namespace nmnote
