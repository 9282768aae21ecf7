#include "Shelf.h"

#include "NoteText.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype lineLength = 160;

NoteSummary summaryOf(const QSqlQuery& row)
{
    return {row.value(0).toString(), row.value(1).toString(), row.value(2).toString(),
        QDateTime::fromMSecsSinceEpoch(row.value(3).toLongLong()), row.value(4).toBool(),
        row.value(5).toBool(), row.value(6).toInt(), row.value(7).toInt(),
        row.value(8).toLongLong()};
}

QString titleOf(const std::vector<NewAttachFile>& files, const QString& plainText)
{
    QString title = excerpt(firstLine(plainText), {}, lineLength);
    for (size_t i = 0; i < files.size() && title.isEmpty(); ++i)
        title = files[i].origName;
    return title;
}

// A null text would be NULL, and a lone surrogate would swallow what follows it.
QString wellFormed(const QVariant& value)
{
    const QString text = value.toString();
    if (text.isValidUtf16())
        return text.isNull() ? u""_s : text;
    return QString::fromStdU32String(text.toStdU32String());
}

QString quotedPhrase(QString term)
{
    return u'"' + term.replace(u'"', u"\"\""_s) + u'"';
}

QString likePattern(QString term)
{
    static const QRegularExpression special(u"([%_\\\\])"_s);
    return u'%' + term.replace(special, u"\\\\1"_s) + u'%';
}

} // namespace

Shelf::Shelf()
    : m_connection(QUuid::createUuid().toString())
{
    QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
}

Shelf::~Shelf()
{
    QSqlDatabase::removeDatabase(m_connection);
}

bool Shelf::open(const QString& path)
{
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    database.setDatabaseName(path);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=1000"_s);
    if (!database.open()) {
        m_error = database.lastError().databaseText();
        return false;
    }
    // FULL: what is committed is on the disk, with a write-ahead log too.
    return run(u"PRAGMA journal_mode = WAL"_s) && run(u"PRAGMA synchronous = FULL"_s)
        && run(u"PRAGMA foreign_keys = ON"_s) && inTransaction([this] { return makeTables(); });
}

bool Shelf::makeTables()
{
    QSqlQuery row = query(u"PRAGMA user_version"_s);
    const int version = row.next() ? row.value(0).toInt() : -1;
    row.finish();
    m_error = u"unknown version %1"_s.arg(version);
    QFile script(u":/shelf.sql"_s);
    const bool isCurrent = version == 2;
    bool ok = isCurrent || ((version == 0 || version == 1) && script.open(QIODevice::ReadOnly));
    if (ok && !isCurrent)
        for (const QString& sql : QString::fromUtf8(script.readAll()).split(u"\n\n"_s))
            ok = ok && run(sql);
    return ok;
}

QSqlQuery Shelf::query(const QString& sql, const QVariantList& values)
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    bool ok = query.prepare(sql);
    for (const QVariant& value : values)
        query.addBindValue(value.typeId() == QMetaType::QString ? wellFormed(value) : value);
    ok = ok && query.exec();
    if (!ok)
        m_error = query.lastError().databaseText();
    return query;
}

bool Shelf::run(const QString& sql, const QVariantList& values)
{
    return query(sql, values).isActive();
}

bool Shelf::inTransaction(const std::function<bool()>& steps)
{
    // IMMEDIATE: another program's lock is met here, and not in the middle.
    if (!run(u"BEGIN IMMEDIATE"_s))
        return false;
    if (steps() && run(u"COMMIT"_s))
        return true;
    const QString cause = m_error;
    run(u"ROLLBACK"_s);
    m_error = cause;
    return false;
}

bool Shelf::saveNote(
    const QString& guid, const std::vector<NewAttachFile>& files, const QString& plainText)
{
    const QString text = plainText.trimmed();
    const QString rest = text.mid(text.indexOf(u'\n') + 1, text.contains(u'\n') ? -1 : 0);
    const QVariantList line{titleOf(files, text), excerpt(rest, {}, lineLength), countWords(text),
        QDateTime::currentMSecsSinceEpoch(), guid};
    return inTransaction([&] {
        bool ok = run(u"INSERT OR IGNORE INTO note (guid) VALUES (?)"_s, {guid})
            && run(
                u"UPDATE note SET title = ?, excerpt = ?, words = ?, changed = ? WHERE guid = ?"_s,
                line)
            && run(u"INSERT OR REPLACE INTO note_text (rowid, plain_text)"
                   " SELECT id, ? FROM note WHERE guid = ?"_s,
                {plainText, guid})
            && run(u"DELETE FROM file WHERE guid = ?"_s, {guid});
        for (size_t i = 0; ok && i < files.size(); ++i) {
            const NewAttachFile& file = files[i];
            const QFileInfo disk(file.filePath);
            ok = run(u"INSERT INTO file VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
                {guid, qulonglong(i), file.origName, file.spareText, file.fileType, file.modifyTime,
                    file.fileExt, file.fileName, file.filePath, file.isSrcFile,
                    disk.isFile() ? disk.size() : QVariant()});
        }
        return ok;
    });
}

std::vector<NewAttachFile> Shelf::files(const QString& guid)
{
    QSqlQuery row = query(u"SELECT * FROM file WHERE guid = ? ORDER BY position"_s, {guid});
    std::vector<NewAttachFile> files;
    while (row.next())
        files.push_back({row.value(2).toString(), row.value(3).toString(), row.value(4).toInt(),
            row.value(5).toString(), row.value(6).toString(), row.value(7).toString(),
            row.value(8).toString(), row.value(9).toInt()});
    return files;
}

std::vector<QString> Shelf::htmlFiles(const QString& guid)
{
    std::vector<QString> names;
    for (const NewAttachFile& file : files(guid))
        if (file.fileType == 0)
            names.push_back(file.fileName);
    return names;
}

std::map<QString, quint64> Shelf::fileSizes(const QString& guid)
{
    std::map<QString, quint64> sizes;
    QSqlQuery row = query(u"SELECT * FROM file WHERE guid = ? AND size IS NOT NULL"_s, {guid});
    while (row.next())
        sizes.emplace(row.value(7).toString(), row.value(10).toULongLong());
    return sizes;
}

std::vector<NoteSummary> Shelf::notes(Place place, const QString& search)
{
    static const QRegularExpression gap( // a NUL would end the expression
        u"[\\s\\x00]+"_s, QRegularExpression::UseUnicodePropertiesOption);
    const QStringList terms = search.split(gap, Qt::SkipEmptyParts).mid(0, 40);
    QString sql = u"SELECT summary.*, plain_text FROM summary"
                  " JOIN note_text ON note_text.rowid = id WHERE binned = ?"_s;
    QVariantList values{place == Place::Bin};
    QString phrases;
    for (const QString& term : terms) {
        // The index answers from three characters on; shorter terms are looked for in the texts.
        if (term.toUcs4().size() >= 3) {
            phrases += quotedPhrase(term) + u' ';
        } else {
            sql += u" AND plain_text LIKE ? ESCAPE '\\'"_s;
            values += likePattern(term);
        }
    }
    if (!phrases.isEmpty()) {
        sql += u" AND note_text MATCH ?"_s;
        values += phrases;
    }
    if (terms.isEmpty())
        sql = u"SELECT * FROM summary WHERE binned = ?"_s;
    QSqlQuery row = query(sql + u" ORDER BY changed DESC, id DESC"_s, values);
    std::vector<NoteSummary> notes;
    while (row.next()) {
        notes.push_back(summaryOf(row));
        if (!terms.isEmpty())
            notes.back().excerpt = excerpt(row.value(10).toString(), terms, lineLength);
    }
    return notes;
}

std::optional<NoteSummary> Shelf::note(const QString& guid)
{
    QSqlQuery row = query(u"SELECT * FROM summary WHERE guid = ?"_s, {guid});
    return row.next() ? std::optional(summaryOf(row)) : std::nullopt;
}

bool Shelf::setReadOnly(const QString& guid, bool readOnly)
{
    return run(u"UPDATE note SET read_only = ? WHERE guid = ?"_s, {readOnly, guid});
}

bool Shelf::setBinned(const QString& guid, bool binned)
{
    return run(u"UPDATE note SET binned = ? WHERE guid = ?"_s, {binned, guid});
}

int Shelf::binCount()
{
    QSqlQuery row = query(u"SELECT count(*) FROM note WHERE binned"_s);
    return row.next() ? row.value(0).toInt() : 0;
}

bool Shelf::emptyBin()
{
    return run(u"DELETE FROM note WHERE binned"_s);
}

void Shelf::dropLeftovers(const std::function<bool(const QString&)>& remove)
{
    QSqlQuery row = query(u"SELECT file_path FROM leftover"
                          " WHERE file_path NOT IN (SELECT file_path FROM file)"
                          " AND file_path NOT IN (SELECT file_path FROM former)"_s);
    QVariantList paths;
    while (row.next())
        paths += row.value(0);
    for (const QVariant& path : paths)
        if (remove(path.toString()))
            run(u"DELETE FROM leftover WHERE file_path = ?"_s, {path});
}
