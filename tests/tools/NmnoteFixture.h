#pragma once

#include "support/FileMd5.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

/// Runs of nmnote in a store of their own.

struct Ran {
    int code;
    QString out;
    QString err;
};

class NmnoteTest : public testing::Test {
protected:
    Ran run(QStringList arguments)
    {
        QProcess process;
        process.start(QStringLiteral(NOMAR_NMNOTE), arguments);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
    }

    Ran runHere(const QStringList& arguments)
    {
        return run(QStringList{QStringLiteral("--app-dir"), m_store.appDir()} + arguments);
    }

    QString file(const QByteArray& bytes)
    {
        const QString path = m_other.filePath(QStringLiteral("note.html"));
        writeFile(path, bytes);
        return path;
    }

    // Puts a file into the store under its digest; returns its name.
    QString filed(const QByteArray& bytes, const QString& extension)
    {
        const QString path = m_store.write(QStringLiteral("new"), bytes);
        const QString name = FileMd5(path) + extension;
        EXPECT_TRUE(QFile::rename(path, m_store.path(name)));
        return name;
    }

    QString filedNote(const QString& html)
    {
        return filed("<!--{\"ver_number\":2}-->" + html.toUtf8(), QStringLiteral(".html"));
    }

    QString working(const QString& folder, const QString& name, const QByteArray& bytes)
    {
        QDir(m_store.store()).mkdir(folder);
        return m_store.write(folder + u'/' + name, bytes);
    }

    TestStore m_store;
    QTemporaryDir m_other;
};

inline QJsonDocument json(const Ran& ran)
{
    EXPECT_EQ(ran.code, 0) << ran.err.toStdString();
    return QJsonDocument::fromJson(ran.out.toUtf8());
}
