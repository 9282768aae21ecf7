#pragma once

#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "support/AppDirs.h"
#include "support/FileSizeLimit.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <sys/stat.h>

/// Imports of files into a store of their own.

inline const QString kNote = QStringLiteral("0123456789abcdef0123456789abcdef");
inline const QString kOther = QStringLiteral("fedcba9876543210fedcba9876543210");

inline struct stat statOf(const QString& path)
{
    struct stat info { };
    EXPECT_EQ(::stat(QFile::encodeName(path), &info), 0) << path.toStdString();
    return info;
}

class MoveAttFileTest : public testing::Test {
protected:
    MoveAttFileTest()
    {
        // Icons of the tests' own: those of the build need not stand beside this program.
        SetInstallDir(m_install.path());
        QDir(m_install.path()).mkdir(QStringLiteral("res"));
        QImage icon(32, 32, QImage::Format_RGB32);
        icon.fill(Qt::gray);
        for (const char* name : {"unknow", "text", "pdf"})
            icon.save(m_install.filePath(QStringLiteral("res/%1.bmp").arg(QLatin1String(name))));
    }
    ~MoveAttFileTest() override { SetInstallDir(QString()); }

    QString source(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_sources.path() + u'/' + name;
        writeFile(path, bytes);
        return path;
    }

    DropFileInfo record(const QString& name, const QByteArray& bytes)
    {
        const auto made = attachstore::RecordOfPath(source(name, bytes));
        EXPECT_TRUE(made);
        return made.value_or(DropFileInfo());
    }

    int import(const DropFileInfo& info, const QString& note = kNote)
    {
        m_result = {};
        return attachstore::MoveAttFile(note, info, m_result);
    }

    // That an import fails with just this line.
    void expectFailure(const DropFileInfo& info, const QString& line)
    {
        LoggedLines lines;
        EXPECT_EQ(import(info), 0);
        EXPECT_EQ(lines.take(), QStringList(line));
        expectNoTemporary();
    }

    // The same in a store that has no room for files above this size.
    void expectFailureWithRoomFor(rlim_t bytes, const DropFileInfo& info, const QString& line)
    {
        LoggedLines lines;
        {
            const FileSizeLimit limit(bytes); // which the log must not meet
            EXPECT_EQ(import(info), 0);
        }
        EXPECT_EQ(lines.take(), QStringList(line));
        expectNoTemporary();
    }

    void expectNoTemporary() const
    {
        for (const QString& name : m_store.names())
            EXPECT_FALSE(name.endsWith(QStringLiteral(".tmp"))) << name.toStdString();
    }

    QString working(const QString& name, const QString& note = kNote) const
    {
        return m_store.path(note + u'/' + name);
    }

    // What lies under digest names.
    QStringList digestNamed() const
    {
        QStringList names = m_store.names();
        names.removeAll(kNote);
        names.removeAll(kOther);
        return names;
    }

    // For tests without the rights of root.
    void openForEverybody()
    {
        for (const QString& path : {m_store.appDir(), m_install.path(), m_sources.path()})
            ASSERT_EQ(::chmod(QFile::encodeName(path), 0755), 0);
    }

    TestStore m_store;
    QTemporaryDir m_sources;
    QTemporaryDir m_install;
    MAF_RESULT m_result;
};
