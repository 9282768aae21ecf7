#pragma once

#include "attachfiles/SyncFileModifyArg.h"
#include "noteattach/ExData.h"
#include "notestore/NoteHtmlRW.h"
#include "support/FileMd5.h"
#include "support/Paths.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

/// Attachments whose files change, and notes that hold them.
namespace changing {

/// Gives the working copy a new content. The record that a sender would make of it.
inline SyncFileModifyArg changed(const QString& guid, const QString& name, const QByteArray& bytes)
{
    SyncFileModifyArg arg;
    arg.filePath = GetAttachFilePath(guid, QStringLiteral("x"), name);
    QFile file(arg.filePath);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(arg.filePath);
    file.write(bytes);
    file.close();
    arg.fileSize = qint32(bytes.size());
    arg.noteGuid = guid;
    arg.attachFile.origName = name;
    arg.fileMd5 = FileMd5(arg.filePath);
    return arg;
}

inline QString element(const QString& stored, const QString& shown, const QString& origName)
{
    return QStringLiteral("<img class=\"userdata\\attachment\\%1\" "
                          "src=\"../userdata\\attachment\\%2\" nm_exdata=\"%3\">")
        .arg(stored, shown,
            noteattach::FormatOrigNameToJson(origName).replace(u'"', QStringLiteral("&quot;")));
}

/// Files a text as a note's; its path.
inline QString filed(QString html)
{
    GetAttachmentDir();
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(html, record, &version), 1);
    return record.filePath;
}

inline QString textOf(const QString& notePath)
{
    QString text;
    NOTE_HTML_VER_NUMBER version;
    EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(notePath, text, &version), 1);
    return text;
}

inline QStringList storeFiles()
{
    return QDir(GetAttachmentDir()).entryList(QDir::Files, QDir::Name);
}

} // namespace changing
