#pragma once

#include <QStringList>

class Adder;
class Boxes;
class FileDialog;
class ImportProgress;
class NotePage;
class SameNote;

/// The way in by the file dialog.
class FileChooser {
public:
    /// Nothing is owned.
    FileChooser(
        NotePage& page, Adder& adder, Boxes& boxes, FileDialog& dialog, ImportProgress& progress);

    /// Asks for files and adds them one by one, so that each is held against the note as the one
    /// before left it, limit, message and name. Then the page gets the focus. A file that is being
    /// edited (`ExclusiveOpen.h`) or cannot be opened is told to the user and ends the whole
    /// matter: those before it stay added, those behind it are not tried, and the focus stays.
    void OnAddAttachment();

private:
    /// False: a file was told to the user, and the rest of the selection is given up.
    bool addAll(const QStringList& paths, const SameNote& same);
    bool addOne(const QString& path);

    NotePage& m_page;
    Adder& m_adder;
    Boxes& m_boxes;
    FileDialog& m_dialog;
    ImportProgress& m_progress;
};
