#pragma once

#include "kit/LogLines.h"
#include "kit/NotePageOf.h"
#include "kit/Print.h"
#include "kit/Recorders.h"

#include "attachfiles/Adder.h"
#include "attachstore/FileRecord.h"
#include "bridge/PageBridge.h"
#include "noteattach/ExData.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// An open note of its own in the store, an adder for it, and files to add.
struct Adding : ::testing::Test {
    OpenNote note;
    NotePageOf page;
    std::unique_ptr<PageBridge> bridge = std::make_unique<PageBridge>(note, page);
    RecordedBoxes boxes;
    RecordedProgress progress;
    std::unique_ptr<Adder> adder = std::make_unique<Adder>(note, *bridge, boxes, progress);
    QTemporaryDir dir;
    LogLines log;

    Adding()
    {
        GetAttachmentDir();
        note.m_curNoteGuid = CreateGuidString();
    }

    /// As when the host ends the control.
    void endControl()
    {
        adder.reset();
        bridge.reset();
    }

    /// A file on disk, outside of the store.
    QString file(const QString& name, const QByteArray& content = "content")
    {
        const QString path = dir.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile out(path);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly)) << qPrintable(path);
        out.write(content);
        return path;
    }
    static DropFileInfo record(const QString& path)
    {
        const auto made = attachstore::RecordOfPath(path);
        EXPECT_TRUE(made) << qPrintable(path);
        return made.value_or(DropFileInfo());
    }
    /// A record that says to be of that size; the file on disk is small.
    DropFileInfo sized(const QString& name, quint64 size)
    {
        DropFileInfo made = record(file(name, name.toUtf8()));
        made.fileSize = size;
        return made;
    }
    /// Puts an attachment into the page that brings the note's total to `total`.
    void noteWeighs(quint64 total)
    {
        note.m_attachSizeCache[QStringLiteral("old.doc")] = total + 1;
        page.html += element(QStringLiteral("old.doc"), QStringLiteral("old.doc"));
    }
    static QString element(const QString& stored, const QString& origName)
    {
        return QStringLiteral("<img class=\"userdata\\attachment\\%1\" nm_exdata=\"%2\">")
            .arg(stored,
                noteattach::FormatOrigNameToJson(origName).replace(u'"', QStringLiteral("&quot;")));
    }
    /// The original names that the page was told, in order.
    QStringList added() const
    {
        QStringList names;
        for (const Json::Value& fields : page.added())
            names << noteattach::GetOrigNameFromJson(fields["exdata"].asString());
        return names;
    }
    QDir noteFolder() const { return QDir(GetAttachmentDir() + u'/' + note.m_curNoteGuid); }
    /// The working copies of the note.
    QStringList copies() const
    {
        return noteFolder().entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }
    static QStringList storeFiles()
    {
        return QDir(GetAttachmentDir()).entryList(QDir::Files, QDir::Name);
    }
};

/// The same, for tests of the operation of that name.
class AddDropFileToEditor : public Adding { };
