#pragma once

#include <QHash>
#include <QMultiHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

/// A look through a whole store that changes nothing.
namespace nmnote {

/// One thing that was found.
struct Finding {
    enum Kind {
        Damaged, ///< a digest-named file that has another digest, or cannot be read
        Missing, ///< a reference of a note to a file that is not there
        Changed, ///< a picture's working copy is not the file that the note shows
        Leftover, ///< the temporary file of a save or an import that did not come to its end
    };
    Kind kind;
    QString file; ///< relative to the store; of a missing file its name
    QString detail;

    /// A working copy that is edited differs until the next save, and a save may be under way: only
    /// damage and what is missing are wrong.
    bool isWrong() const { return kind == Damaged || kind == Missing; }
};

class StoreCheck {
public:
    /// `store` is the directory that holds the digest-named files and the notes' folders.
    explicit StoreCheck(const QString& store);

    /// False if the directory cannot be read.
    bool run();

    const std::vector<Finding>& findings() const { return m_findings; } ///< in the order of names
    int fileCount() const { return m_fileCount; } ///< digest-named files
    int noteCount() const { return m_notes.size(); }

private:
    void lookAtFile(const QString& name);
    void lookAtFolder(const QString& folder);
    void lookAtNote(const QString& name);
    void lookAtPicture(const QString& note, const QString& name, const QString& origName);
    void lookAtAttachment(const QString& note, const QString& name, const QString& origName);
    void addMissing(const QString& note, const QString& name);
    void addOnce(const Finding& finding);
    QString pathOf(const QString& name) const;

    const QString m_store;
    std::vector<Finding> m_findings;
    int m_fileCount = 0;
    QStringList m_notes;
    QSet<QString> m_files; // at the top level
    QMultiHash<QString, QString> m_foldersOf; // original name to the folders that hold it
    QSet<QString> m_reported; // several notes or elements may want one file
};

} // namespace nmnote
