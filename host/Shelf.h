#pragma once

#include <nomareditor/NewAttachFile.h>

#include <QDateTime>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <map>
#include <optional>
#include <vector>

/// One note as a list shows it.
struct NoteSummary {
    QString guid;
    QString title; // first line of the text, else the first attachment's name, else empty
    QString excerpt; // what follows; under a search, the text around the hit
    QDateTime changed;
    bool readOnly = false;
    bool binned = false;
    int words = 0;
    int attachments = 0;
    qint64 bytes = 0; // the note file and all that it shows or carries, as found on disk
};

/// The host's memory of its notes in one SQLite file: the list of files that each save handed over,
/// their sizes, and the plain text with an index for search. The notes' HTML is in the control's
/// store; what is here is what a host must keep to open it again.
///
/// Each change is one transaction, on the disk when the operation returns true. False: nothing has
/// changed, and errorText() tells why in the database's words. For use by one thread.
class Shelf {
public:
    Shelf();
    ~Shelf();

    /// Makes the file if it is missing, and raises one of an older version. False: no shelf, a
    /// newer version's, or not to be written.
    bool open(const QString& path);
    QString errorText() const { return m_error; }

    /// Takes over what OnSaveNote hands out: `files` in their order, field by field, each with its
    /// size as it is on disk now. A note file that this save replaces becomes a leftover; any other
    /// file that is no longer in the list stays the note's, since the edit may be undone.
    bool saveNote(
        const QString& guid, const std::vector<NewAttachFile>& files, const QString& plainText);

    /// The list as the last save handed it over.
    std::vector<NewAttachFile> files(const QString& guid);
    /// For LoadEditor: names of the note's HTML files, and sizes by name of those that were there.
    std::vector<QString> htmlFiles(const QString& guid);
    std::map<QString, quint64> fileSizes(const QString& guid);

    enum class Place { List, Bin };
    /// Notes, the last changed first; under a search those whose text has every one of its words,
    /// anywhere and in either case.
    std::vector<NoteSummary> notes(Place place, const QString& search = {});
    std::optional<NoteSummary> note(const QString& guid);

    bool setReadOnly(const QString& guid, bool readOnly);
    bool setBinned(const QString& guid, bool binned);
    int binCount();
    /// Forgets the notes in the bin. What no other note has or had of their files, those that an
    /// edit took out included, becomes leftovers.
    bool emptyBin();

    /// Calls `remove` with the path of each file that no note refers to any more, and forgets those
    /// for which it returns true. The others come again: a host that stops half-way leaves nothing.
    void dropLeftovers(const std::function<bool(const QString& path)>& remove);

private:
    Q_DISABLE_COPY_MOVE(Shelf)
    bool inTransaction(const std::function<bool()>& steps);
    bool makeTables();
    QSqlQuery query(const QString& sql, const QVariantList& values = {});
    bool run(const QString& sql, const QVariantList& values = {});

    const QString m_connection;
    QString m_error;
};
