#pragma once

#include "Shelf.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A shelf and a store in a directory of their own.
class TestShelf : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(storeDir()));
        ASSERT_TRUE(shelf.open(databasePath())) << qPrintable(shelf.errorText());
    }

    QString databasePath() const { return dir.filePath(QStringLiteral("shelf.sqlite")); }
    QString storeDir() const { return dir.filePath(QStringLiteral("userdata/attachment")); }

    /// Writes a file into the store and returns its path.
    QString put(const QString& name, const QByteArray& content = "x") const
    {
        const QString path = storeDir() + u'/' + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }

    static NewAttachFile record(
        int fileType, const QString& name, const QString& path, const QString& origName = {})
    {
        NewAttachFile file;
        file.fileType = fileType;
        file.fileName = name;
        file.filePath = path;
        file.origName = origName;
        file.isSrcFile = fileType == 1;
        return file;
    }

    /// Saves a note whose HTML file is `html`.
    bool save(
        const QString& guid, const QString& text, const QString& html = QStringLiteral("a.html"))
    {
        return shelf.saveNote(guid, {record(0, html, put(html))}, text);
    }

    QStringList found(const QString& search)
    {
        QStringList guids;
        for (const NoteSummary& note : shelf.notes(Shelf::Place::List, search))
            guids += note.guid;
        guids.sort();
        return guids;
    }

    QTemporaryDir dir;
    Shelf shelf;
};
