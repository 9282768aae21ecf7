#include "Records.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QSqlRecord>

using namespace Qt::StringLiterals;

Records::Records(const QString& appDir)
    : m_appDir(appDir)
    , m_database(QSqlDatabase::addDatabase(u"QSQLITE"_s, u"records"_s))
{
    m_database.setDatabaseName(appDir + u"/shelf.sqlite"_s);
}

Records::~Records()
{
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(u"records"_s);
}

static bool run(QSqlQuery& query, const QString& sql, const QVariantList& values)
{
    query.prepare(sql);
    for (const QVariant& value : values)
        query.addBindValue(value);
    return query.exec();
}

QStringList Records::row(const QString& sql, const QVariantList& values)
{
    if (!m_database.isOpen() && !m_database.open())
        return {};
    QSqlQuery query(m_database);
    QStringList texts;
    if (run(query, sql, values) && query.next())
        for (int i = 0; i < query.record().count(); ++i)
            texts += query.value(i).toString();
    return texts;
}

bool Records::change(const QString& sql, const QVariantList& values)
{
    QSqlQuery query(m_database);
    return (m_database.isOpen() || m_database.open()) && run(query, sql, values);
}

QString Records::note(const QString& title)
{
    return row(u"SELECT guid FROM note WHERE title = ?"_s, {title}).value(0);
}

QString Records::faultOfNoteFile(const QString& guid, const QString& text)
{
    const QStringList record = row(
        u"SELECT file_name, file_path, size, modify_time FROM file WHERE guid = ? AND position = 0"_s,
        {guid});
    if (record.size() != 4)
        return u"the shelf has no file of the note"_s;
    QFile file(record[1]);
    if (QFileInfo(file).path() != storeDir() || QFileInfo(file).fileName() != record[0])
        return record[1] + u" is not in the store"_s;
    if (!file.open(QIODevice::ReadOnly))
        return record[1] + u" cannot be read"_s;
    const QByteArray content = file.readAll();
    const QByteArray digest = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    if (QString::fromLatin1(digest) != QFileInfo(file).completeBaseName())
        return record[0] + u" is not named by its digest"_s;
    if (record[2].toLongLong() != content.size())
        return u"the shelf has the size "_s + record[2];
    if (record[3].isEmpty())
        return u"the shelf has no time of the file"_s;
    return content.contains(text.toUtf8()) ? QString() : record[0] + u" does not hold "_s + text;
}
