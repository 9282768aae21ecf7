#pragma once

#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>

/// What the host has on its shelf and in its store, read from the outside.
class Records {
public:
    explicit Records(const QString& appDir);
    ~Records();

    /// First row of a query, all as text; empty if there is none.
    QStringList row(const QString& sql, const QVariantList& values = {});
    /// GUID of the note with that title; empty if there is none.
    QString note(const QString& title);
    /// Empty when the note's file is in the store, named by its digest, of the recorded size, and
    /// holds `text`; else what is wrong.
    QString faultOfNoteFile(const QString& guid, const QString& text);

    /// Writes to the shelf, for what a step has to prepare.
    bool change(const QString& sql, const QVariantList& values = {});

    QString storeDir() const { return m_appDir + QStringLiteral("/userdata/attachment"); }

private:
    const QString m_appDir;
    QSqlDatabase m_database;
};
